/*
 * zvc_settings.h - the on-screen controls
 *
 * See "Camera commands" in zvc_commands.h for what is true of every function here.
 */
#ifndef ZVCTRL_ZVC_SETTINGS_H
#define ZVCTRL_ZVC_SETTINGS_H

#include "zvc_commands.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Shows a control on the screen: `control_type_id` is the place, 0 to 3 for the four shortcuts, `onscreen_control_type`
 * the control.
 */
ZV_API int32_t zvc_settings_set_onscreen_control(zvc_msg_q_context_t *context, int32_t onscreen_control_type,
                                                 int32_t control_type_id);

/* Both bytes of the camera's answer, signed. */
ZV_API int32_t zvc_settings_get_onscreen_control(zvc_msg_q_context_t *context, int8_t *first, int8_t *second);

#ifdef __cplusplus
}
#endif

#endif
