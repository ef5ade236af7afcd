/*
 * zvcontrol_if.h - the daemon link: commands to the control daemon, and their answers
 *
 * A process opens the link once, sets its caller id, sends any number of commands and closes the link at the end:
 *
 * ```c
 * if (zvcontrol_interface_open() == ZV_OK) {
 *     all_status_settings_t snapshot;
 *     zvcontrol_set_caller_id(3);
 *     zvcontrol_send_command_param_response_ex(ZVCONTROL_GET_ALL_SETTINGS_STATUS, NULL, 0, snapshot.bytes,
 *                                              sizeof snapshot.bytes, NULL);
 *     zvcontrol_interface_close();
 * }
 * ```
 *
 * The link belongs to the process, and all its functions to one thread at a time. A command blocks for at most 10
 * seconds, and about 20 when the queues must be brought in step first. Signal handlers do not shorten a wait, nor do
 * they lengthen it. A command may still be sent by an exit handler.
 */
#ifndef ZVCTRL_ZVCONTROL_IF_H
#define ZVCTRL_ZVCONTROL_IF_H

#include "camera_records.h"
#include "messages.h"
#include "zvcontrol_info.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The longest message of the link, in bytes, and the message size of a response queue. */
#define DAEMON_MSG_MAX 10000

/* ---- Commands -----------------------------------------------------------------------------------------------------
 * The number travels as it is and is not examined. The numbers 0 to 34 and that of the resynchronisation are the
 * daemon's. From some unknown number in 35..101 on, the daemon's numbers are one higher than this enum's. Use the
 * daemon's own definition there. The log has a row of names for each enumerator without a gap, so that the
 * resynchronisation is in row 101: a number from 102 on is logged under the next one's name, and one above 105 as
 * UNKNOWN.
 *
 * What these take and answer; of all others only the daemon knows:
 *
 *     ZVCONTROL_SET_SETTING_ID           takes 8 bytes: the setting's id and the firmware's value of the option, both
 *                                        32 bits in the machine's byte order; answers with the return code alone, so
 *                                        that no response is to be asked for
 *     ZVCONTROL_GET_ALL_SETTINGS         answers appc_setup_all_settings, 238 bytes
 *     ZVCONTROL_GET_ALL_STATUS           answers appc_system_all_status, 394 bytes
 *     ZVCONTROL_GET_ALL_SETTINGS_STATUS  answers all_status_settings_t, 634 bytes
 */
typedef enum {
    ZVCONTROL_EVENT_REGISTER_MQUEUE = 0,
    ZVCONTROL_EVENT_FILTER_IN,
    ZVCONTROL_FILTER_OUT,
    ZVCONTROL_COMMAND_SHUTTER,
    ZVCONTROL_MODE,
    ZVCONTROL_MODE_SUB_MODE,
    ZVCONTROL_SET_DATE_TIME,
    ZVCONTROL_KEYMARK_TAG_RECORDING,
    ZVCONTROL_KEYMARK_TAG_PLAYBACK,
    ZVCONTROL_DELETE,
    ZVCONTROL_DELETE_LAST,
    ZVCONTROL_DELETE_GROUP,
    ZVCONTROL_DELETE_ALL,
    ZVCONTROL_FW_UPDATE_START,
    ZVCONTROL_FW_UPDATE_CANCEL,
    ZVCONTROL_FW_UPDATE_DONE,
    ZVCONTROL_WIFI_AP_CONTROL,
    ZVCONTROL_WIFI_AP_SSID_CONFIG,
    ZVCONTROL_WIFI_BAND_SELECT,
    ZVCONTROL_WIFI_SSID_SCAN,
    ZVCONTROL_WIFI_SSID_LIST,
    ZVCONTROL_WIFI_SSID_SAVE,
    ZVCONTROL_WIFI_SSID_SELECT,
    ZVCONTROL_WIFI_SSID_DELETE,
    ZVCONTROL_WIFI_SSID_DELETE_ALL,
    ZVCONTROL_RC_PAIR,
    ZVCONTROL_RC_PAIR_CANCEL,
    ZVCONTROL_VIDEO_VELLIX_RESET,
    ZVCONTROL_PHOTO_VELLIX_RESET,
    ZVCONTROL_MULTI_VELLIX_RESET,
    ZVCONTROL_SET_SETTING_ID,
    ZVCONTROL_GET_SETTING_ID,
    ZVCONTROL_GET_ALL_SETTINGS,
    ZVCONTROL_GET_ALL_STATUS,
    ZVCONTROL_GET_ALL_SETTINGS_STATUS,
    ZVCONTROL_SYSTEM_SHUTDOWN,
    ZVCONTROL_SYSTEM_SLEEP,
    ZVCONTROL_LOCATE,
    ZVCONTROL_FACTORY_RESET,
    ZVCONTROL_ANALYTICS_FILENAME_GET,
    ZVCONTROL_ANALYTICS_CLEAR,
    ZVCONTROL_REMOTE_API,
    ZVCONTROL_SET_LOG_LEVEL,
    ZVCONTROL_PUSH_NOTIFICATIONS,
    ZVCONTROL_TRANSCODE_HISTORY,
    ZVCONTROL_TRANSCODE_PHOTO_TO_VIDEO,
    ZVCONTROL_TRANSCODE_VIDEO_TO_VIDEO_REQUEST,
    ZVCONTROL_TRANSCODE_PHOTO_TO_VIDEO_REQUEST,
    ZVCONTROL_TRANSCODE_TO_PHOTO_REQUEST,
    ZVCONTROL_TRANSCODE_STATUS,
    ZVCONTROL_TRANSCODE_CANCEL,
    ZVCONTROL_LIVEVIEW_MODE_SET,
    ZVCONTROL_VOICE_PHOTO_TAKE,
    ZVCONTROL_VOICE_VIDEO_START,
    ZVCONTROL_VOICE_VIDEO_STOP,
    ZVCONTROL_VOICE_TIMELAPSE_START,
    ZVCONTROL_VOICE_TIMELAPSE_STOP,
    ZVCONTROL_VOICE_BURST_TAKE,
    ZVCONTROL_VOICE_TAG,
    ZVCONTROL_VOICE_MODE,
    ZVCONTROL_SYSTEM_GET_GEOCAL,
    ZVCONTROL_DIGITAL_ZOOM,
    ZVCONTROL_VOICE_EDIT_MY_STORY,
    ZVCONTROL_VOICE_DELETE_LAST,
    ZVCONTROL_SYSTEM_GET_SHADINGDATA_FILE,
    ZVCONTROL_BLE_CONTROL,
    ZVCONTROL_CAPTURE_DELAY,
    ZVCONTROL_MODE_SET_MODE,
    ZVCONTROL_VELLIX_RESET,
    ZVCONTROL_VIDEO_RUSHLAPSE_SPEED_1X_SET,
    ZVCONTROL_PRESET_LIST_GROUPS,
    ZVCONTROL_PRESET_LIST_IDS,
    ZVCONTROL_PRESET_GET_INFO,
    ZVCONTROL_PRESET_CUSTOM_CREATE,
    ZVCONTROL_PRESET_CUSTOM_REMOVE,
    ZVCONTROL_PRESET_SET_ORDER,
    ZVCONTROL_PRESET_LOAD,
    ZVCONTROL_PRESET_EDIT_START,
    ZVCONTROL_PRESET_EDIT_CANCEL,
    ZVCONTROL_PRESET_EDIT_STORE,
    ZVCONTROL_PRESET_FACTORY_RESET,
    ZVCONTROL_PRESET_GET_PRESETS,
    ZVCONTROL_PRESET_SWITCH_FLATMODE,
    ZVCONTROL_PRESET_SET_TITLE_AND_ICON,
    ZVCONTROL_ONSCREEN_SHORTCUTS_RESET,
    ZVCONTROL_VIDEO_RUSHLAPSE_SPEED_RAMP_SET,
    ZVCONTROL_VIDEO_RUSHLAPSE_SPEED_RAMP_ACTIVE_SET,
    ZVCONTROL_PRESET_GET_ACTIVE_PRESET,
    ZVCONTROL_SYSTEM_BUTTON_SET,
    ZVCONTROL_PRESET_GET_ACTIVE_GROUP,
    ZVCONTROL_SET_IN_CONTEXTUAL_MENU,
    ZVCONTROL_WEBCAM_REQUEST_EXIT,
    ZVCONTROL_SET_CAMERA_CONTROL_STATUS,
    ZVCONTROL_DELETE_LIST,
    ZVCONTROL_GET_DELETE_LIST_RESULT,
    ZVCONTROL_GET_ALL_SETTINGS_STATUS_IDS,
    ZVCONTROL_SET_WIRED_USB_CONTROL,
    ZVCONTROL_SET_CAH_AUTO_CLEAR,
    ZVCONTROL_GET_DATE_TIME,
    ZVCONTROL_QUICK_CAPTURE_START,
    ZVCONTROL_GET_BUSY_STATUS,
    ZVCONTROL_RESYNC_MESSAGE_QUEUE = 102,
    ZVCONTROL_PRESET_GET_PRESETS_FOR_GROUP,
    ZVCONTROL_PRESET_UPDATE_CUSTOM,
    ZVCONTROL_SYSTEM_RESET,
    ZVCONTROL_CMD_LAST,
    ZVCONTROL_CMD_ANY = 0x7FFFFFFF, /* room for the numbers that the daemon may define */
} zvcontrol_command_t;

/* ---- The interface --------------------------------------------------------------------------------------------- */

/*
 * Opens the link with a response queue of the process's own, "/to_ZVCU" and the process id. Waits for the daemon's
 * queue, at most 12 seconds. Returns ZV_OK, ZV_ERR when the link is open already or a queue can't be opened, or
 * ZV_ERR_OUTOFMEM. On a failure the link is closed, unless it was open before, which is then untouched.
 *
 * The response queue holds 5 messages of DAEMON_MSG_MAX bytes. fs.mqueue.msgsize_max must allow that size. The queue
 * counts 50480 bytes against RLIMIT_MSGQUEUE, the limit on all queues of a user (ulimit -q, LimitMSGQUEUE= of a
 * service): the usual 819200 bytes are enough for 16 links. Where they are used up the open fails, and the log names
 * that limit and its value. A process that is killed leaves its queue, which counts on: whoever restarts it removes
 * "/dev/mqueue/to_ZVCU" and the id. One that lies there under this process's name is such a left one: it is taken over,
 * and made anew where its sizes are others.
 *
 * The queue has mode 0664, less the umask: a daemon of another user must be able to write to it, or no answer comes.
 */
ZV_API int32_t zvcontrol_interface_open(void);

/*
 * The same with the caller's own response queue, named by at most 256 characters; it holds messages of DAEMON_MSG_MAX
 * bytes. A command is then posted, with a wait for room alone, and returns 0, its response arguments untouched; the
 * caller reads the answer and takes it apart with the parse functions. While the queues are out of step
 * (zvcontrol_send_resync) no command goes out, until the link is opened with a queue of its own. A null name is
 * zvcontrol_interface_open.
 */
ZV_API int32_t zvcontrol_interface_open_async(const char *queue_name);

/*
 * Closes the link and removes its own response queue. A closed one stays closed. Returns 0.
 *
 * A forked child has the link too, and must not send, wait or flush on it: the answers are its parent's. Its close
 * closes its own copies and leaves the parent's queue; after that it may open a link of its own.
 */
ZV_API int32_t zvcontrol_interface_close(void);

/* 1 while the link is open, else 0. */
ZV_API int32_t is_zvcontrol_interface_open(void);

/* Who issues the commands; each one carries it. 0 at start, and kept over a close. */
ZV_API void zvcontrol_set_caller_id(uint8_t id);
ZV_API uint8_t zvcontrol_get_caller_id(void);

/* ---- Sending commands ---------------------------------------------------------------------------------------------
 * `param` is the command's parameter, `param_length` bytes; null leaves it out. The whole message has at most
 * DAEMON_MSG_MAX bytes, of which some 50 are not the parameter's: a longer parameter is refused. The response's payload
 * goes into `response`, cut to `response_size` bytes; null or 0 says that none is wanted. `response_length` may be
 * null; otherwise it receives the bytes written into `response`, and is untouched when the answer had no payload.
 *
 * Returns the daemon's return code, which may be negative itself, or
 *
 *     ZV_ERR              the link is closed, the parameter is too long, the post failed, or the answer is unusable
 *     ZV_ERR_NO_RESPONSE  no answer in 10 seconds, no room in the daemon's queue in that time, or the queues could not
 *                         be brought in step and nothing was sent
 *     ZV_ERR_OUTOFMEM     no memory for the command
 *
 * What waits in the response queue is dropped before a command goes out. While the daemon's queue is full the command
 * waits for room, which counts into its 10 seconds. After a failed wait the next command begins with
 * zvcontrol_send_resync, so that the late answer is not taken for its own. An answer that carries exactly the bytes of
 * a record, 238, 394 or 634, which this command does not answer with is logged and dropped, and the wait goes on for
 * what is left.
 */

/*
 * zvcontrol_send_command_param_response_ex without the length. When ZVCONTROL_SET_SETTING_ID succeeds for setting 139,
 * setting 79 follows in a command of its own, with 0 when the value was 3 and otherwise 1; its result is returned. Both
 * wait for an answer: this write blocks for at most 20 seconds, and about 30 with a resynchronisation.
 */
ZV_API int32_t zvcontrol_send_command_param_response(zvcontrol_command_t command, const uint8_t *param,
                                                     uint16_t param_length, uint8_t *response, uint16_t response_size);

/*
 * One command. For the snapshots, ZVCONTROL_GET_ALL_SETTINGS, ZVCONTROL_GET_ALL_STATUS and
 * ZVCONTROL_GET_ALL_SETTINGS_STATUS, the last whole answer is kept, where `response_size` was the record's own size. In
 * place of ZV_ERR_NO_RESPONSE a `response` with room for the record gets that one, zero bytes before the first, with
 * system_system_busy (STATUS_SYSTEM_SYSTEM_BUSY) set in a status record; the result is then 0. The next function is for
 * a caller that has to know whether an answer came.
 */
ZV_API int32_t zvcontrol_send_command_param_response_ex(zvcontrol_command_t command, const uint8_t *param,
                                                        uint16_t param_length, uint8_t *response,
                                                        uint16_t response_size, uint16_t *response_length);

/* The exchange itself, without the kept snapshots: ZV_OK is the daemon's own answer. */
ZV_API int32_t zvcontrol_send_command_param_response_ex_internal(zvcontrol_command_t command, const uint8_t *param,
                                                                 uint16_t param_length, uint8_t *response,
                                                                 uint16_t response_size, uint16_t *response_length);

/* ---- Keeping in step ------------------------------------------------------------------------------------------- */

/* False after a failed wait, until a resynchronisation succeeds; true at start. */
ZV_API bool zvcontrol_is_response_queue_sychronized(void);

/*
 * Sends a fresh key, which the daemon echoes; only that echo proves that the next answer belongs to the next command.
 * First looks whether the name of the daemon's queue still means the queue that is open, and opens the new one where
 * the daemon was restarted: the first command after its return is in step again. Blocks for at most 10 seconds; while
 * there is no daemon's queue at all it fails at once, after an ERROR line.
 *
 * Returns 0, with the queues in step, or ZV_ERR_NO_RESPONSE for every failure. A failed wait leaves them out of step,
 * also where they were in step before; any other failure leaves that as it was. A link with the caller's own queue
 * can't receive the echo.
 */
ZV_API int32_t zvcontrol_send_resync(void);

/* ---- Receiving ------------------------------------------------------------------------------------------------- */

/*
 * Waits for the next message on the link's response queue, at most 10 seconds. Returns 0, with the message in `*buffer`
 * until the next use of the link; or ZV_ERR_NO_RESPONSE with `*length` 0 and `*buffer` untouched, at once when the link
 * is closed or the queue is the caller's own. Either way a failure leaves the queues out of step.
 */
ZV_API int32_t zvcontrol_wait_response(uint8_t **buffer, uint16_t *length);

/* Drops what waits in the link's response queue. */
ZV_API void zvcontrol_flush_response_queue(void);

/*
 * Takes an answer apart: `*ret` receives the daemon's return code, or ZV_ERR when the message is unusable, and the data
 * of the first element of `type` is copied to `payload`, cut to `payload_size` bytes. `*payload_length` receives the
 * bytes copied; it may be null. A null `payload`, a size of 0, or the return code ZV_ERR_NAK_OFF says that none is
 * wanted. Returns ZV_OK, or ZV_ERR when the wanted element is missing.
 */
ZV_API int32_t zvcontrol_parse_ret_response_type(const uint8_t *buffer, uint16_t length, int32_t *ret, uint8_t *payload,
                                                 uint16_t payload_size, uint8_t type, uint16_t *payload_length);

/* The same for the response's payload, TLV_RSPARG. */
ZV_API int32_t zvcontrol_parse_ret_response(const uint8_t *buffer, uint16_t length, int32_t *ret, uint8_t *payload,
                                            uint16_t payload_size, uint16_t *payload_length);

#ifdef __cplusplus
/*
 * Reads an answer into `msg` and returns the daemon's return code, or ZV_ERR for a message that is cut off, which
 * leaves `msg` empty, that is no response, or that has no return code of 4 bytes or more.
 */
ZV_API int32_t parse_return_code(const uint8_t *buffer, uint16_t length, Msg &msg);
#endif

/* Turns the dumps of the link's messages off; enableMessageDebugging turns them on. */
ZV_API void zvcontrol_debug_enable(void);

#ifdef __cplusplus
}
#endif

#endif
