/*
 * zvc_multishot.h - rates and image controls of the multi-shot modes
 *
 * Unless its comment says otherwise a function is one exchange, with the results of zvc_commands.h; a write sends the
 * low byte of what it is given. A read whose answer is too short is ZV_ERR_INVALID_PARAM, and so is a null output, for
 * which nothing is sent. A value above a function's limit is ZV_ERR_INVALID_PARAM, and nothing is sent; a
 * negative value is not refused.
 */
#ifndef ZVC_MULTISHOT_H
#define ZVC_MULTISHOT_H

#include "zvc_commands.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Puts the manual image controls of the multi-shot modes back. */
ZV_API int32_t zvc_multishot_vellix_reset(zvc_msg_q_context_t *context);

/*
 * The time lapse rate: 0 is 0.5 seconds, 1 1, 2 2, 3 5, 4 10, 5 30, 6 60 seconds, 7 2 minutes, 8 5, 9 30, 10 60
 * minutes, 11 3 seconds. Limit 11.
 */
ZV_API int32_t zvc_multishot_timelapse_rate_set(zvc_msg_q_context_t *context, int32_t rate);

/*
 * The night lapse rate: 0 is 10 seconds, 1 15, 2 20, 3 30 seconds, 4 1 minute, 5 2, 6 5, 7 30, 8 60 minutes, 9 Auto,
 * 10 4 seconds, 11 5 seconds. Limit 13: the codes 12 and 13 go out, though they have no interval here.
 */
ZV_API int32_t zvc_multishot_nightlapse_rate_set(zvc_msg_q_context_t *context, int32_t rate);
ZV_API int32_t zvc_multishot_nightlapse_rate_get(zvc_msg_q_context_t *context, int32_t *rate);

/* The upper and the lower ISO limit: 0 is 800, 1 400, 2 200, 3 100, 4 1600, 5 3200. Limit 5. */
ZV_API int32_t zvc_multishot_vellix_iso_get(zvc_msg_q_context_t *context, int32_t *iso);
ZV_API int32_t zvc_multishot_vellix_iso_set(zvc_msg_q_context_t *context, int32_t iso);
ZV_API int32_t zvc_multishot_vellix_iso_min_get(zvc_msg_q_context_t *context, int32_t *iso);
ZV_API int32_t zvc_multishot_vellix_iso_min_set(zvc_msg_q_context_t *context, int32_t iso);

/*
 * To be called before a new exposure time is written; `exposure` is its code (0 is Auto, 1 2 seconds, 2 5, 3 10, 4 15,
 * 5 20, 6 30, 7 0.5, 8 1 second), `rate` the present night lapse rate code. A rate whose interval is longer than the
 * exposure stays, and nothing is sent; any other is set to Auto, also when it is Auto already. Any other code of either
 * is ZV_ERR_INVALID_PARAM, and nothing is sent.
 */
ZV_API int32_t zvc_multishot_nightlapse_rate_best_fit(zvc_msg_q_context_t *context, int32_t exposure, int32_t rate);

/*
 * To be called before a new exposure time is written. Reads the white balance and logs one that cannot be read or that
 * is none. The multi-shot modes keep their white balance whatever the exposure: nothing is written, `exposure` has no
 * effect, and the result is 0 in every case.
 */
ZV_API int32_t zvc_multishot_set_white_balance_best_fit(zvc_msg_q_context_t *context, uint8_t exposure);

#ifdef __cplusplus
}
#endif

#endif
