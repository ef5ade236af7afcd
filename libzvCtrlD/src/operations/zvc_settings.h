/*
 * zvc_settings.h - the on-screen controls
 *
 * Unless its comment says otherwise a function is one exchange, with the results of zvc_commands.h; a write sends the
 * low byte of what it is given. A read whose answer is too short is ZV_ERR_INVALID_PARAM, and so is a null output, for
 * which nothing is sent.
 */
#ifndef ZVC_SETTINGS_H
#define ZVC_SETTINGS_H

#include "zvc_commands.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Puts a control on the screen: `control_type_id` is the place, 0 to 3 for the four shortcuts, `onscreen_control_type`
 * what stands there.
 */
ZV_API int32_t zvc_settings_set_onscreen_control(zvc_msg_q_context_t *context, int32_t onscreen_control_type,
                                                 int32_t control_type_id);

/* Both bytes of the camera's answer, signed. */
ZV_API int32_t zvc_settings_get_onscreen_control(zvc_msg_q_context_t *context, int8_t *first, int8_t *second);

#ifdef __cplusplus
}
#endif

#endif
