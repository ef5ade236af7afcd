/*
 * zvc_state.h - the camera's identity
 *
 * The facts of a camera come from the system information service (csi.h). What does not change while the process lives
 * is read once and kept; the access point's name and the state of the logs are read at each call. No function waits for
 * a queue, and any thread may call.
 *
 * The getters of a text write at most `size` bytes, the terminator included; a longer text is cut. The first successful
 * call fixes the cached text, cut to that caller's buffer: pass ZVC_STATE_TEXT_SIZE bytes. Results are
 *
 *     ZV_OK
 *     ZV_ERR_INVALID_PARAM  the service has no such value, the pointer is null, or `size` is below 1
 *     ZV_ERR                the value is empty, where a function says so
 *
 * On a failure nothing is kept, and the next call asks again. Of the caller's memory only the bytes of a text's buffer
 * may then have been written, by the service; a null pointer or a `size` below 1 leaves all alone.
 */
#ifndef ZVCTRL_ZVC_STATE_H
#define ZVCTRL_ZVC_STATE_H

#include "zvDbg.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Room for any text of the camera's identity. */
#define ZVC_STATE_TEXT_SIZE 65

/*
 * The model number, which decides on the camera's generation; 0 when it is not known. Where the service does not have
 * it, it is read from the file "/tmp/fuse_b/conf.json" by a shell command, which this call then waits for. A number
 * other than 0 is kept.
 */
ZV_API uint8_t zvc_state_get_model_number(void);

/* An empty value is ZV_ERR. */
ZV_API int32_t zvc_state_get_model_name(char *buffer, int32_t size);

/* An empty value is an empty text. */
ZV_API int32_t zvc_state_get_firmware_version(char *buffer, int32_t size);
ZV_API int32_t zvc_state_get_serial_number(char *buffer, int32_t size);
ZV_API int32_t zvc_state_get_board_type(char *buffer, int32_t size);

/* The access point: its MAC address as text, and its name, which is read at each call. */
ZV_API int32_t zvc_state_get_ap_mac(char *buffer, int32_t size);
ZV_API int32_t zvc_state_get_ap_ssid(char *buffer, int32_t size);

/* Always stores false. */
ZV_API int32_t zvc_state_get_ap_has_default_credentials(bool *result);

/*
 * The word of feature bits. Returns the service's own result; `*features` is 0 after a failure, unless the service
 * wrote something before it failed. A value shorter than 4 bytes fills the low ones, and is not kept.
 */
ZV_API int32_t zvc_state_get_common_camera_features(uint32_t *features);

/* Not 0 when a firmware update is forced. An empty or missing value is ZV_ERR, and `*required` is untouched. */
ZV_API int32_t zvc_state_get_update_required(uint32_t *required);

/* The state of the logs, 0 to 255, read at each call. An empty value is ZV_ERR; a failure leaves `*ready` alone. */
ZV_API int32_t zvc_state_get_logs_ready_status(uint32_t *ready);

/* The networks that the camera needs, as JSON: always the empty array, "[]". */
ZV_API int32_t zvc_state_get_required_networks(char *buffer, int32_t size);

#ifdef __cplusplus
}
#endif

#endif
