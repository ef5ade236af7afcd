/*
 * utils.h - for the services that link the library: becoming a daemon, a storage card's id, and text
 *
 * The functions are independent of each other and keep no state.
 */
#ifndef ZVCTRL_UTILS_H
#define ZVCTRL_UTILS_H

#include "zvDbg.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Turns the process into a daemon, in a session of its own, with the working directory "/" and no umask. The caller
 * goes on as the child; the parent ends with exit(0). A process whose parent is process 1 is one already: nothing is
 * done. Returns 0, or -1 with errno when fork failed or the working directory could not be set.
 */
ZV_API int32_t daemon_init(void);

/*
 * The same. With `coreDump` not 0 the daemon may dump core, without a limit, and its working directory is
 * "/tmp/fuse_b/"; it also says so on standard output.
 */
ZV_API int32_t daemon_init_ext(int32_t coreDump);

#define ZV_CARD_ID_SIZE 32 /* the least room, in bytes, for a card's id */

/*
 * The id of the store `card`, 1 for the second one: a decimal number of up to 30 digits that is kept on the store, in
 * the file MISC/card. A store without an id gets one, made of a random number (srand is called); so does one whose file
 * is empty or does not begin with a line of digits. The line feed is not part of the id, and only the first 30
 * characters of a longer line count. A file that is no regular one holds no id and makes room for a new one; one that
 * is a symbolic link is left alone and cannot be read or written.
 *
 * Returns 0, or -1 when `id` is null, when the folder or the file cannot be made or written, and when the random
 * numbers fail; then `id` is "0", and a file that was not written whole is gone.
 */
ZV_API int32_t getCardIDStrFromCard(char *id, int32_t card);

/* The same for the first store. */
ZV_API int32_t getCardIDStr(char *id);

/* 1 when the first `length` characters of `id`, up to its end, are all digits, and also when there are none; else 0. */
ZV_API int32_t validateCardID(const char *id, uint32_t length);

/*
 * Decodes the percent escapes of `url` in place; `*length` is its length, and then the new one. An escape is a "%" and
 * two characters, which are not tested to be hexadecimal digits; one that the text's end cuts off ends the text. A "+"
 * stays. Nothing is changed when either pointer is null.
 */
ZV_API void unescapeUrl(char *url, uint32_t *length);

/*
 * The first character that is neither a blank nor a tab, in place; null when `text` is null or holds nothing else. The
 * end of the text is left as it is.
 */
ZV_API char *trim(const char *text);

/* 1 when the marker file "/tmp/fuse_d/messages.txt" exists, else 0. */
ZV_API int32_t messages_txt_exists(void);

#ifdef __cplusplus
}
#endif

#endif
