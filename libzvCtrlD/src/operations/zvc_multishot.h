/*
 * zvc_multishot.h - rates and image controls of the multi-shot modes
 *
 * See "Camera commands" in zvc_commands.h for what is true of every function here. A value above a function's limit is
 * ZV_ERR_INVALID_PARAM, and nothing is sent; a negative value is not refused.
 */
#ifndef ZVCTRL_ZVC_MULTISHOT_H
#define ZVCTRL_ZVC_MULTISHOT_H

#include "zvc_commands.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Resets the manual image controls of the multi-shot modes. */
ZV_API int32_t zvc_multishot_vellix_reset(zvc_msg_q_context_t *context);

/*
 * The time lapse rate. Limit 11.
 *
 *     code        0   1  2  3   4   5   6    7    8     9    10  11
 *     seconds   0.5   1  2  5  10  30  60  120  300  1800  3600   3
 */
ZV_API int32_t zvc_multishot_timelapse_rate_set(zvc_msg_q_context_t *context, int32_t rate);

/*
 * The night lapse rate. Limit 13: the codes 12 and 13 are sent, though no interval is known for them.
 *
 *     code       0   1   2   3   4    5    6     7     8     9  10  11
 *     seconds   10  15  20  30  60  120  300  1800  3600  Auto   4   5
 */
ZV_API int32_t zvc_multishot_nightlapse_rate_set(zvc_msg_q_context_t *context, int32_t rate);
ZV_API int32_t zvc_multishot_nightlapse_rate_get(zvc_msg_q_context_t *context, int32_t *rate);

/* The upper and the lower ISO limit, with the codes of the photo modes (zvc_photo.h). Limit 5. */
ZV_API int32_t zvc_multishot_vellix_iso_get(zvc_msg_q_context_t *context, int32_t *iso);
ZV_API int32_t zvc_multishot_vellix_iso_set(zvc_msg_q_context_t *context, int32_t iso);
ZV_API int32_t zvc_multishot_vellix_iso_min_get(zvc_msg_q_context_t *context, int32_t *iso);
ZV_API int32_t zvc_multishot_vellix_iso_min_set(zvc_msg_q_context_t *context, int32_t iso);

/*
 * To be called before a new exposure time is written; `exposure` is its code, `rate` the code of the present night
 * lapse rate. A rate whose interval is longer than the exposure stays, and nothing is sent; any other is set to Auto,
 * also when it is Auto already. Another code of either is ZV_ERR_INVALID_PARAM, and nothing is sent.
 *
 *     exposure      0  1  2   3   4   5   6    7  8
 *     seconds    Auto  2  5  10  15  20  30  0.5  1
 */
ZV_API int32_t zvc_multishot_nightlapse_rate_best_fit(zvc_msg_q_context_t *context, int32_t exposure, int32_t rate);

/*
 * To be called before a new exposure time is written. Reads the white balance, and logs one that cannot be read or is
 * out of range. The multi-shot modes keep their white balance whatever the exposure: nothing is written, `exposure` has
 * no effect, and the result is 0 in every case.
 */
ZV_API int32_t zvc_multishot_set_white_balance_best_fit(zvc_msg_q_context_t *context, uint8_t exposure);

#ifdef __cplusplus
}
#endif

#endif
