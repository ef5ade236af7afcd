/*
 * zvc_photo.h - image controls of the photo modes
 *
 * See "Camera commands" in zvc_commands.h for what is true of every function here. A value above a function's limit is
 * ZV_ERR_INVALID_PARAM, and nothing is sent; a negative value is not refused.
 */
#ifndef ZVCTRL_ZVC_PHOTO_H
#define ZVCTRL_ZVC_PHOTO_H

#include "zvc_commands.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Resets the manual image controls of the photo modes. */
ZV_API int32_t zvc_photo_vellix_reset(zvc_msg_q_context_t *context);

/* The ISO number of a code 0 to 5, 400 for any other. No exchange; any thread may call. */
ZV_API int32_t zvc_photo_vellix_iso_number(int32_t iso);

/*
 * The upper and the lower ISO limit. Limit 5.
 *
 *     code    0    1    2    3     4     5
 *     ISO   800  400  200  100  1600  3200
 */
ZV_API int32_t zvc_photo_vellix_iso_get(zvc_msg_q_context_t *context, int32_t *iso);
ZV_API int32_t zvc_photo_vellix_iso_set(zvc_msg_q_context_t *context, int32_t iso);
ZV_API int32_t zvc_photo_vellix_iso_min_get(zvc_msg_q_context_t *context, int32_t *iso);
ZV_API int32_t zvc_photo_vellix_iso_min_set(zvc_msg_q_context_t *context, int32_t iso);

/*
 * To be called before a new exposure time is written; `exposure` is its code, 0 for Auto. A fixed exposure time and an
 * Auto white balance exclude each other: the white balance is then set to 5500K. A manual one stays. A white balance
 * that cannot be read counts as Auto. Two exchanges at most. Returns 0, the failure of the write, or, when the read
 * failed and nothing was to be written, the failure of the read: ZV_ERR for a value that is no white balance.
 */
ZV_API int32_t zvc_photo_set_white_balance_best_fit(zvc_msg_q_context_t *context, uint8_t exposure);

#ifdef __cplusplus
}
#endif

#endif
