/*
 * camera_interface.h - setting writes by id, and the easy preset resolvers
 *
 * The way from a client's request to the camera, with the caller's snapshots `settings` and `status`:
 *
 * ```c
 * #include <zvctrl/camera_settings.h>
 *
 * static int32_t write_option(zvc_msg_q_context_t *context, uint32_t model, uint32_t setting, uint32_t id,
 *                             const appc_setup_all_settings *settings, const appc_system_all_status *status)
 * {
 *     uint32_t count = 0;
 *     const settings_id_entry_t *rows = camera_settings_id_table(model, &count);
 *     if (!optionIdExists(model, setting, id) || setting >= count) {
 *         return ZV_ERR_INVALID_PARAM;
 *     }
 *     return camera_if_settings_set_value_int(context, (int32_t)setting, rows[setting].group_id,
 *                                             rows[setting].action_id, getOptionValueById(model, setting, id),
 *                                             rows[setting].value_size, settings, status);
 * }
 * ```
 *
 * The lookups are in camera_settings.h; a setting for which bypassPresetEditStart is false is written within a preset
 * edit (ZVCONTROL_PRESET_EDIT_START, zvcontrol_if.h).
 */
#ifndef ZVCTRL_CAMERA_INTERFACE_H
#define ZVCTRL_CAMERA_INTERFACE_H

#include "camera_status.h"
#include "zvc_commands.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Sends `payload` of `size` bytes to a group and action: 1 to ZVMSG_MAX less 46 less the length of the context's
 * mbox_name, which is 1447 for "/to_web". More ends the process (assertion), and less is ZV_ERR_INVALID_PARAM. Returns
 * the result of the exchange.
 */
ZV_API int32_t camera_if_settings_set_value(zvc_msg_q_context_t *context, int32_t group, int32_t action,
                                            const uint8_t *payload, int32_t size);

/*
 * Changes a setting. `value` is the firmware's value of the option, not its id, and for id 168 a time
 * (camera_schedule.h); `group`, `action` and `size` (bytes of the value) are those of the setting's row in the setting
 * tables. `settings` and `status` are the caller's present snapshots, on which the decisions rest: `settings` is needed
 * for the ids 13, 31, 102, 114 to 118, 121, 154 and 176, `status` for 112, 121, 149 and 164.
 *
 * A setting without a rule of its own goes out as it is, 1, 2 or otherwise 4 bytes of it, most significant first, to
 * `group` and `action`.
 *
 * Up to three exchanges of at most 10 seconds each, of which the first carries the context's asource. A failing step
 * ends the sequence, except for the ids 13 and 102, where the mode is written even if the limit failed; what an earlier
 * step has changed stays. Returns 0, which a camera that is switched off gives, too; a code of the exchange
 * (zvc_commands.h); or
 *
 *     ZV_ERR                ids 114 to 118: `settings` is null, or the flat mode has no such control
 *     ZV_ERR_INVALID_PARAM  id 168: hour above 23 or minute above 59; id 176: no such speed; ids 149 and 164 while the
 *                           sound cage's microphone status is 3, when the camera takes neither; id 31: an exposure
 *                           time or a present night lapse rate, such as 12 or 13, that
 *                           zvc_multishot_nightlapse_rate_best_fit does not know; a setting that is written as it is,
 *                           whose row has no group or action; a value above the limit of its camera operation, except
 *                           for that ISO limit; an id that needs a snapshot that is null
 *
 * for which nothing is sent, so that rtos_error_code is still that of the call before: reset the context first where it
 * is to be read. After one exchange, a read, come ZV_ERR for id 19 to Auto while the camera's white balance is none
 * that is known, and ZV_ERR_INVALID_PARAM for an answer that has no valid form.
 */
ZV_API int32_t camera_if_settings_set_value_int(zvc_msg_q_context_t *context, int32_t setting_id, int32_t group,
                                                int32_t action, uint32_t value, int32_t size,
                                                const appc_setup_all_settings *settings,
                                                const appc_system_all_status *status);

/*
 * The resolution that an easy video preset has for a frame rate, a field of view (numbers as in zvc_video.h) and an
 * aspect ratio (1 16:9, 3 8:7, 4 9:16). A combination that the preset does not have is logged, and `*res` stays as it
 * is.
 * Any thread may call.
 */
ZV_API void easy_5_3k_video_get_res(uint32_t *res, uint32_t fps, uint32_t fov, uint32_t aspect_ratio);
ZV_API void easy_4k_video_get_res(uint32_t *res, uint32_t fps, uint32_t fov, uint32_t aspect_ratio);
ZV_API void easy_1080p_video_get_res(uint32_t *res, uint32_t fps, uint32_t fov, uint32_t aspect_ratio);

#ifdef __cplusplus
}
#endif

#endif
