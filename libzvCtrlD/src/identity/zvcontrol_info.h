/*
 * zvcontrol_info.h - the camera's identity as one record, and the paths of its files
 *
 * Nothing here talks to the daemon or needs an open link; the facts are those of zvc_state.h, and so are the rules for
 * threads.
 */
#ifndef ZVCTRL_ZVCONTROL_INFO_H
#define ZVCTRL_ZVCONTROL_INFO_H

#include "zvDbg.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * The camera information record: bytes in place, without alignment. Numbers are little-endian, texts are zero-filled
 * and always terminated.
 */
#define CAMERA_INFO_SIZE 433
enum {
    CAMERA_INFO_MODEL_NUMBER = 0,                 /* 4 bytes */
    CAMERA_INFO_MODEL_NAME = 4,                   /* text of 65 bytes */
    CAMERA_INFO_BOARD_TYPE = 69,                  /* text of 65 bytes */
    CAMERA_INFO_FIRMWARE_VERSION = 134,           /* text of 65 bytes */
    CAMERA_INFO_SERIAL_NUMBER = 199,              /* text of 65 bytes */
    CAMERA_INFO_AP_SSID = 264,                    /* text of 33 bytes */
    CAMERA_INFO_AP_MAC = 297,                     /* text of 65 bytes */
    CAMERA_INFO_AP_HAS_DEFAULT_CREDENTIALS = 362, /* 0 or 1 */
    CAMERA_INFO_COMMON_CAMERA_FEATURES = 363,     /* 4 bytes */
    CAMERA_INFO_REQUIRED_NETWORKS = 367,          /* text of 65 bytes */
    CAMERA_INFO_VALID = 432,                      /* 1 when every field was read, else 0 */
};

/*
 * Fills the record, CAMERA_INFO_SIZE bytes: model number and name, firmware version, serial number, board type, MAC
 * address, SSID, credentials, features, networks. Returns ZV_OK, ZV_ERR for null, or the first failing getter's result
 * (zvc_state.h); that field and those after it in this order are then zero.
 */
ZV_API int32_t zvcontrol_get_camera_info(uint8_t *info);

/*
 * The path of the camera's settings description, and that of the remote control's update file: the one on the card when
 * it can be read, otherwise the installed one. `size` is the whole buffer's; the rest of it is zero-filled. Returns
 * ZV_OK, or ZV_ERR when the path was cut to `size` - 1 characters; null or a `size` below 1 is ZV_ERR too, and nothing
 * is written.
 */
ZV_API int32_t zvcontrol_get_settings_json_path(char *path, int32_t size);
ZV_API int32_t zvcontrol_get_rc3_path(char *path, int32_t size);

/* zvc_state_get_logs_ready_status, with one more log line for a failure. */
ZV_API int32_t zvcontrol_get_logs_ready_status(uint32_t *ready);

#ifdef __cplusplus
}
#endif

#endif
