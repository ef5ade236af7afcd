/*
 * zvc_fwupdate.h - the stages of an over-the-air firmware update
 */
#ifndef ZVCTRL_ZVC_FWUPDATE_H
#define ZVCTRL_ZVC_FWUPDATE_H

#include "zvc_commands.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The download begins, or is given up. Stored with the camera system information; nothing is sent, and `context` may be
 * null. Returns 0, or -1 when it could not be stored. */
ZV_API int32_t zvc_fwupdate_download_start(zvc_msg_q_context_t *context);
ZV_API int32_t zvc_fwupdate_download_cancel(zvc_msg_q_context_t *context);

/*
 * The download is complete; the camera asks the user before it goes on when `user_prompt` is true. One exchange, with
 * the results of zvc_commands.h.
 */
ZV_API int32_t zvc_fwupdate_download_done(zvc_msg_q_context_t *context, bool user_prompt);

/* Begins to flash. One exchange, with the results of zvc_commands.h. */
ZV_API int32_t zvc_fwupdate_flashing_start(zvc_msg_q_context_t *context);

#ifdef __cplusplus
}
#endif

#endif
