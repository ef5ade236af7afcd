/*
 * zvHex.h - bytes as text, for the log and for a caller's buffer, and the labels of the message trace
 *
 * 16 bytes per line, in groups of four, with the printable text beside them. Nothing here keeps state; any thread may
 * call.
 */
#ifndef ZVCTRL_ZVHEX_H
#define ZVCTRL_ZVHEX_H

#include "zvDbg.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * The message trace: the directions in which a message can go, each with its label of 12 characters and its bit of
 * g_debug. A send traces its message when bit 0x100 of g_debug_level is set and its direction's bit is in g_debug.
 * Direction 0 and the end row have no bit; the end row has no label.
 */
#define ZV_TRACE_ROWS 30
extern ZV_API const char *const s_dmsgstr[ZV_TRACE_ROWS];
extern ZV_API const uint32_t s_dmsghex[ZV_TRACE_ROWS];

/*
 * Dumps `length` bytes into `dest` of `size` bytes, in lines of prefix, address, bytes and text. Lines begin at
 * multiples of 16 and show the low 32 bits of the real address. Repeated lines are left out, with three full stops in
 * their place where more follows. With `length` 0 the text is the end address alone. Text that does not fit is cut;
 * `dest` is always terminated, and untouched only where `size` is 0. Returns the characters in `dest`, without the
 * terminator.
 */
ZV_API int32_t snhexdump(char *dest, uint32_t size, const uint8_t *data, uint32_t length, const char *prefix);

/* The same with lines that begin at `data`, and addresses that count from 0. */
ZV_API int32_t snhexdump0(char *dest, uint32_t size, const uint8_t *data, uint32_t length, const char *prefix);

/* Either, the first when `aligned` is not 0. */
ZV_API int32_t _snhexdump(char *dest, uint32_t size, const uint8_t *data, uint32_t length, int32_t aligned,
                          const char *prefix);

/*
 * Formats one line of hexprint: prefix, `*address` rounded down to a multiple of 16, 16 columns from `*index` on, and
 * their text; columns outside 0 to `length` - 1 are blank. Advances `*address` and `*index` by 16. A line takes 76
 * bytes with a prefix of up to 12 characters, and is cut at `size`. Returns the characters in `dest`.
 */
ZV_API int32_t hexline(char *dest, int32_t size, const char *prefix, uint32_t *address, int32_t *index,
                       const uint8_t *data, int32_t length);

/*
 * Dumps to the log at INFO, after an empty line. `address` is the one of the first byte. Of a long message the middle
 * is left out, unless bit 0x200 of g_debug_level is set.
 */
ZV_API void hexprint(const char *prefix, uint32_t address, const uint8_t *data, int32_t length);

/*
 * Dumps to the log at INFO without addresses and text. The groups of four end with the last byte; `address` is not
 * used.
 */
ZV_API void hexprint_noaddr(const char *prefix, uint32_t address, const uint8_t *data, int32_t length);

#ifdef __cplusplus
}
#endif

#endif
