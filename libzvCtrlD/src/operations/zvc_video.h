/*
 * zvc_video.h - video format, video parameters and stream parameters
 *
 * See "Camera commands" in zvc_commands.h for what is true of every function here.
 */
#ifndef ZVCTRL_ZVC_VIDEO_H
#define ZVCTRL_ZVC_VIDEO_H

#include "zvc_commands.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Video format -------------------------------------------------------------------------------------------------
 * Resolution, frame rate and field of view are the camera's own numbers, each in a byte. Those of the settings'
 * options:
 *
 *     resolution, up to 30   1 4K, 4 2.7K, 6 2.7K 4:3, 9 1080, 18 4K 4:3, 24 5.3K, 26 5.3K 8:7, 28 4K 8:7, 29 4K 9:16,
 *                            30 1080 9:16
 *     frame rate, up to 14   0 240, 1 120, 2 100, 5 60, 6 50, 8 30, 9 25, 10 24, 13 200
 *     field of view, up to 11
 */
enum {
    FOV_WIDE = 0,
    FOV_NARROW = 2,
    FOV_ORBISCAPE = 3,
    FOV_LINEAR = 4,
    FOV_MAX_ORBISCAPE = 7,
    FOV_LINEAR_PLUS_HORIZON_LEVELING = 8,
    FOV_ARCASCAPE = 9,
    FOV_LINEAR_PLUS_HORIZON_LOCK = 10,
    FOV_MAX_ARCASCAPE = 11,
};

/*
 * Sets the resolution, and with it the frame rate and field of view that the camera offers there: `fps` if it is
 * offered, otherwise the first rate offered; `fov` if nothing is offered, otherwise the first entry, in the camera's
 * order, that is `fov` or the other horizon field of view with the camera's consent, otherwise the first one offered.
 * One write carries all three, as the last step: a failure before it leaves the camera as it was, and a refused write
 * changes nothing.
 *
 * Up to six reads, two queries, a query for each offered field of view, and the write, each an exchange of at most 10
 * seconds. ZV_ERR_INVALID_PARAM is a malformed answer, an empty list of frame rates, or a value above the limits of
 * zvc_video_set_res_fps_fov_camera. Only the video format must be readable: what else cannot be read of the camera's
 * situation (flat mode, lens, user interface mode, profile) counts as 0, the user interface mode as Pro. An adapter of
 * the program's own (zvc_commands_zvx.h) that answers a query with ZV_ERR_NOT_SUPPORTED gets the three values
 * unfiltered.
 */
ZV_API int32_t zvc_video_set_res_fps_fov(zvc_msg_q_context_t *context, int32_t res, int32_t fps, int32_t fov);

/* Sets the three values as they are. A value above 30, 14 or 11 is ZV_ERR_INVALID_PARAM, and nothing is sent. */
ZV_API int32_t zvc_video_set_res_fps_fov_camera(zvc_msg_q_context_t *context, int32_t res, int32_t fps, int32_t fov);

/* The same, for the easy presets. */
ZV_API int32_t zvc_video_set_easy_res_fps_fov(zvc_msg_q_context_t *context, uint32_t res, uint32_t fps, uint32_t fov);

/*
 * Brings the present format back to a resolution that the present mode offers: the present one if it is offered,
 * otherwise the smallest number below it, otherwise the first one offered; with the present frame rate and field of
 * view it goes through zvc_video_set_res_fps_fov in any case. Two exchanges more than that function.
 * ZV_ERR_INVALID_PARAM, and nothing written, when the camera offers no resolution at all.
 */
ZV_API int32_t zvc_video_reset_to_valid_res_fps_fov(zvc_msg_q_context_t *context);

/*
 * The resolutions that the camera offers under its current settings, in its order. `list` holds 255 bytes, the most
 * that the camera can answer; `*count` may be 0.
 */
ZV_API int32_t zvc_get_res_list(zvc_msg_q_context_t *context, uint8_t *list, uint16_t *count);

ZV_API int32_t zvc_video_get_res_fps_fov(zvc_msg_q_context_t *context, int32_t *res, int32_t *fps, int32_t *fov);

/*
 * Resolution, frame rate and shutter (the exposure time code) out of the settings record, as signed bytes. Outputs that
 * are null are left out; the others are -1 after a failure. An answer that does not reach the shutter is
 * ZV_ERR_INVALID_PARAM.
 */
ZV_API int32_t zvc_video_get_current_res_fps_shutter(zvc_msg_q_context_t *context, int32_t *res, int32_t *fps,
                                                     int32_t *shutter);

/* The flat mode out of the settings record, as a signed byte. */
ZV_API int32_t zvc_video_get_current_flat_mode(zvc_msg_q_context_t *context, int32_t *flat_mode);

/* One value alone, unfiltered. */
ZV_API int32_t zvc_video_set_res(zvc_msg_q_context_t *context, int32_t res);
ZV_API int32_t zvc_video_set_fps(zvc_msg_q_context_t *context, int32_t fps);
ZV_API int32_t zvc_video_set_fov(zvc_msg_q_context_t *context, int32_t fov);

/* ---- Image controls --------------------------------------------------------------------------------------------- */

/* Resets the manual image controls of the video modes. */
ZV_API int32_t zvc_video_vellix_reset(zvc_msg_q_context_t *context);

/* The ISO number of a code 0 to 8, 400 for any other. No exchange; any thread may call. */
ZV_API int32_t zvc_video_vellix_iso_number(int32_t iso);

/*
 * The upper and the lower ISO limit. A code above 9 is ZV_ERR_INVALID_PARAM, and nothing is sent; a negative one is not
 * refused.
 *
 *     code     0     1    2     3    4     5     6    7    8     9
 *     ISO   6400  1600  400  3200  800  1200  1000  200  100  Auto
 */
ZV_API int32_t zvc_video_vellix_iso_get(zvc_msg_q_context_t *context, int32_t *iso);
ZV_API int32_t zvc_video_vellix_iso_set(zvc_msg_q_context_t *context, int32_t iso);
ZV_API int32_t zvc_video_vellix_iso_min_get(zvc_msg_q_context_t *context, int32_t *iso);
ZV_API int32_t zvc_video_vellix_iso_min_set(zvc_msg_q_context_t *context, int32_t iso);

/* 0 for the Auto value, 1 for a fixed ISO limit. */
ZV_API int32_t zvc_video_vellix_iso_mode_set(zvc_msg_q_context_t *context, int32_t mode);

/* 0 Standard, 1 HDR, 2 Log. */
ZV_API int32_t zvc_video_get_video_profile(zvc_msg_q_context_t *context, uint32_t *profile);

/* 0 Standard, 1 High. */
ZV_API int32_t zvc_video_set_video_bit_rate(zvc_msg_q_context_t *context, uint32_t rate);
ZV_API int32_t zvc_video_get_video_bit_rate(zvc_msg_q_context_t *context, uint32_t *rate);

/* 0 8-Bit, 2 10-Bit. */
ZV_API int32_t zvc_video_set_video_bit_depth(zvc_msg_q_context_t *context, uint32_t depth);
ZV_API int32_t zvc_video_get_video_bit_depth(zvc_msg_q_context_t *context, uint32_t *depth);

/* ---- Live stream --------------------------------------------------------------------------------------------------
 * The low byte of the value is sent; its unit is the firmware's.
 */
ZV_API int32_t zvc_stream_set_gop_size(zvc_msg_q_context_t *context, int32_t value);
ZV_API int32_t zvc_stream_set_idr_interval(zvc_msg_q_context_t *context, int32_t value);
ZV_API int32_t zvc_stream_set_bit_rate(zvc_msg_q_context_t *context, int32_t value);

#ifdef __cplusplus
}
#endif

#endif
