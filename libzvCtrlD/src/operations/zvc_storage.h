/*
 * zvc_storage.h - the media on the card
 *
 * Each function is one exchange, with the results of zvc_commands.h; one that takes a path asks for the model number
 * before it (zvc_state_get_model_number). A deletion that the camera refuses is the result of the exchange.
 */
#ifndef ZVCTRL_ZVC_STORAGE_H
#define ZVCTRL_ZVC_STORAGE_H

#include "zvc_commands.h"

#ifdef __cplusplus
extern "C" {
#endif

ZV_API int32_t zvc_storage_delete_all(zvc_msg_q_context_t *context);
ZV_API int32_t zvc_storage_delete_last(zvc_msg_q_context_t *context);

/* The longest name of a file, in characters. */
#define STORAGE_NAME_MAX 255

/*
 * Deletes or tags one file or one group. `name` is relative to the media folder, such as "100ABCDE/CLIP0001.MP4", with
 * either slash and one leading slash or none, and ends at its terminating 0; `name_len` is its length as the caller
 * sees it, at most STORAGE_NAME_MAX. ZV_ERR_INVALID_PARAM, and nothing sent, for a longer or a null name.
 */
ZV_API int32_t zvc_storage_delete_file(zvc_msg_q_context_t *context, const char *name, uint32_t name_len);
ZV_API int32_t zvc_storage_delete_group(zvc_msg_q_context_t *context, const char *name, uint32_t name_len);

/* Sets (`enable` 1) or removes (0) a tag at `offset` in the file, in milliseconds. */
ZV_API int32_t zvc_storage_tag_file(zvc_msg_q_context_t *context, const char *name, uint32_t name_len, uint32_t offset,
                                    uint32_t enable);

/* One entry of a delete list: 23 bytes. A name of 22 characters has no terminating 0. */
typedef struct {
    uint8_t flag;  /* goes out as 1 unless it is 0; the firmware's to read */
    char name[22]; /* a folder of eight characters, one separator, the file's name: "100ABCDE/CLIP0001.MP4" */
} file_list_item_t;

#define FILE_LIST_MAX 30

/*
 * Deletes the files of a list. Only the first 30 are sent; the count field keeps the full number, and the result does
 * not report the cut. A caller with more files calls once for every 30. ZV_ERR_INVALID_PARAM, and nothing sent, for a
 * null list with a count other than 0.
 */
ZV_API int32_t zvc_storage_delete_list(zvc_msg_q_context_t *context, const file_list_item_t *list, uint32_t count);

/*
 * Whether the card has room for a loop: 0, or ZV_ERR when it has not or `looping` is not 0 to 4. ZV_ERR_INVALID_PARAM
 * when the camera's answer is too short.
 *
 *     looping           0  1   2   3    4
 *     minutes of it   Max  5  20  60  120
 */
ZV_API int32_t zvc_storage_looping_sd_check(zvc_msg_q_context_t *context, uint8_t looping);

#ifdef __cplusplus
}
#endif

#endif
