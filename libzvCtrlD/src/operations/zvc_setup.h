/*
 * zvc_setup.h - the mains frequency
 *
 * The other commands of the setup are in zvc_commands.h.
 */
#ifndef ZVCTRL_ZVC_SETUP_H
#define ZVCTRL_ZVC_SETUP_H

#include "zvc_commands.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * The video format, which follows the mains frequency: 0 for 60 Hz, 1 for 50 Hz. One exchange, with the results of
 * zvc_commands.h; ZV_ERR_INVALID_PARAM for an empty answer or a null `format`.
 */
ZV_API int32_t zvc_setup_get_video_format(zvc_msg_q_context_t *context, uint32_t *format);

#ifdef __cplusplus
}
#endif

#endif
