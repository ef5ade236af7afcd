/*
 * zvc_broadcast.h - the broadcast service
 *
 * See "Camera commands" in zvc_commands.h for what is true of every function here.
 *
 * The service runs in the firmware, which alone judges the values: what they mean, and in which unit, is the
 * firmware's.
 */
#ifndef ZVCTRL_ZVC_BROADCAST_H
#define ZVCTRL_ZVC_BROADCAST_H

#include "zvc_commands.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * The window size as the firmware numbers it: 0 the camera's own choice, 4 480, 7 720, 12 1080. The set here takes the
 * numbers 0 to 9 alone, so that a read may give a 12 which it refuses; 1080 is reached by writing setting 47
 * (camera_interface.h).
 */
typedef int32_t zvc_broadcast_window_size_t;
#define ZVC_BROADCAST_WINDOW_SIZE_MAX 9

/* The firmware's own records, passed on as they come. */
typedef struct zvc_broadcast_settings {
    uint8_t bytes[20];
} zvc_broadcast_settings;

typedef struct zvc_broadcast_status {
    uint8_t bytes[12];
} zvc_broadcast_status;

ZV_API int32_t zvc_broadcast_set_default_sub_mode(zvc_msg_q_context_t *context, int32_t sub_mode);
ZV_API int32_t zvc_broadcast_get_default_sub_mode(zvc_msg_q_context_t *context, uint32_t *sub_mode);

/* The format of the broadcast, and of the recording that is made of it; numbers as in zvc_video.h. */
ZV_API int32_t zvc_broadcast_set_res_fps_fov(zvc_msg_q_context_t *context, int32_t res, int32_t fps, int32_t fov);
ZV_API int32_t zvc_broadcast_get_res_fps_fov(zvc_msg_q_context_t *context, int32_t *res, int32_t *fps, int32_t *fov);
ZV_API int32_t zvc_broadcast_set_record_res_fps_fov(zvc_msg_q_context_t *context, int32_t res, int32_t fps,
                                                    int32_t fov);
ZV_API int32_t zvc_broadcast_get_record_res_fps_fov(zvc_msg_q_context_t *context, int32_t *res, int32_t *fps,
                                                    int32_t *fov);

/* Starts and stops the service. The start's value, a byte, is the firmware's to read. */
ZV_API int32_t zvc_broadcast_set_start(zvc_msg_q_context_t *context, int32_t value);
ZV_API int32_t zvc_broadcast_set_stop(zvc_msg_q_context_t *context);
ZV_API int32_t zvc_broadcast_set_enable(zvc_msg_q_context_t *context, uint32_t enable);
ZV_API int32_t zvc_broadcast_get_enable(zvc_msg_q_context_t *context, uint32_t *enable);

/* The encoder, as 32-bit numbers. GOP size and IDR interval come back as one byte. */
ZV_API int32_t zvc_broadcast_set_gop_size(zvc_msg_q_context_t *context, uint32_t size);
ZV_API int32_t zvc_broadcast_get_gop_size(zvc_msg_q_context_t *context, uint32_t *size);
ZV_API int32_t zvc_broadcast_set_idr_interval(zvc_msg_q_context_t *context, uint32_t interval);
ZV_API int32_t zvc_broadcast_get_idr_interval(zvc_msg_q_context_t *context, uint32_t *interval);
ZV_API int32_t zvc_broadcast_set_bit_rate(zvc_msg_q_context_t *context, uint32_t rate);
ZV_API int32_t zvc_broadcast_get_bit_rate(zvc_msg_q_context_t *context, uint32_t *rate);

/* A size outside 0 to 9 is ZV_ERR_INVALID_PARAM, and nothing is sent; a read hands on what the camera answers. */
ZV_API int32_t zvc_broadcast_set_window_size(zvc_msg_q_context_t *context, zvc_broadcast_window_size_t size);
ZV_API int32_t zvc_broadcast_get_window_size(zvc_msg_q_context_t *context, zvc_broadcast_window_size_t *size);

ZV_API int32_t zvc_broadcast_get_progress_counter(zvc_msg_q_context_t *context, uint32_t *counter);
ZV_API int32_t zvc_broadcast_get_settings(zvc_msg_q_context_t *context, zvc_broadcast_settings *settings);
ZV_API int32_t zvc_broadcast_get_status(zvc_msg_q_context_t *context, zvc_broadcast_status *status);

#ifdef __cplusplus
}
#endif

#endif
