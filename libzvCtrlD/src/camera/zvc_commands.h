/*
 * zvc_commands.h - the camera link: command context, exchange, remote API framing, and the camera's common commands
 *
 * A camera operation takes a command context and is one blocking exchange on it, at most 10 seconds long, unless its
 * comment says otherwise. Signal handlers do not end a wait. A context and all that points into it belong to one thread
 * at a time; threads with contexts of their own do not disturb each other. Results are 0 or a negative code of zvDbg.h;
 * those of the exchange itself are
 *
 *     ZV_ERR_INVALID_PARAM  the context is null or was never set up, or the answer has no valid form
 *     ZV_ERR_NO_RESPONSE    no answer in 10 seconds, or the receive failed; the camera may have obeyed all the same
 *     ZV_ERR_NAK            the camera refused; the acknowledge byte is in the context's rtos_error_code
 *     ZV_ERR                the firmware reported an error of its own, which is in rtos_error_code
 *
 * A camera that is switched off answers every request with the single byte ZVN_NACK_OFF, and that counts as success: a
 * write returns 0 and has done nothing, and a read of one byte returns 0 and reads 2. A read of more bytes is
 * ZV_ERR_INVALID_PARAM, and so is what begins with one, such as zvc_shutter. The functions with `rsp` show the byte.
 *
 * An output argument is written on success only; the exchanges that take a command code set `*rspsize` to 0 first.
 */
#ifndef ZVCTRL_ZVC_COMMANDS_H
#define ZVCTRL_ZVC_COMMANDS_H

#include "remote_api.h"
#include "zvTlv.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Command context ----------------------------------------------------------------------------------------------
 * One caller's pair of queues and its message buffer. The program that owns it opens the queues, zeroes what it does
 * not fill in, and resets the context before its first use:
 *
 * ```c
 * #include <fcntl.h>
 * #include <string.h>
 *
 * static const char REPLIES[] = "/to_web";
 *
 * static int open_context(zvc_msg_q_context_t *context)
 * {
 *     struct mq_attr attributes;
 *     memset(&attributes, 0, sizeof attributes);
 *     attributes.mq_maxmsg = 5;
 *     attributes.mq_msgsize = ZVMSG_MAX;
 *     memset(context, 0, sizeof *context);
 *     zvc_reset_context(context);
 *     mq_unlink(REPLIES);
 *     context->mbox_name = REPLIES;
 *     context->mq_tx = mq_open("/to_zvnet", O_WRONLY | O_NONBLOCK | O_CLOEXEC);
 *     context->mq_rx = mq_open(REPLIES, O_RDONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0664, &attributes);
 *     return context->mq_tx >= 0 && context->mq_rx >= 0 ? 0 : -1;
 * }
 * ```
 *
 * The name is the context's own, begins with a slash, is not empty and lives as long as the context. The reply queue
 * takes messages of ZVMSG_MAX bytes and counts against RLIMIT_MSGQUEUE (zvcontrol_if.h): 7980 bytes with 5 messages.
 * Descriptors may be any number. A full relay queue holds nobody up, whatever flags mq_tx was opened with: an exchange
 * waits for room within its 10 seconds, and a post is dropped.
 *
 * rtos_error_code is the acknowledge byte of a refusal, or the firmware's error, which is a signed number: read it as
 * an int8_t. A function that refuses its arguments sends nothing, and leaves the code of the call before: reset the
 * context first where the code is to be that function's.
 *
 * After rx_failed the owner may renew the reply queue, with which late answers go: close mq_rx, mq_unlink the name,
 * open it as above, and set rx_failed to 0. A relay that was restarted has a new queue, too, for which mq_tx is opened
 * anew.
 */
typedef struct {
    const char *mbox_name;   /* the name of mq_rx, not empty; answers go there */
    mqd_t mq_tx;             /* the relay's queue, "/to_zvnet", open for writing */
    mqd_t mq_rx;             /* the reply queue, open for reading */
    zvIoBuf_t iobuf;         /* the request, then the answer, in place */
    uint8_t rtos_error_code; /* refusal byte or firmware error of the last remote API call, 0 when there was none */
    uint8_t asource;         /* who issues the next message; 0 means 1; every message consumes it */
    uint8_t rx_failed;       /* set to 1 when an awaited answer did not come; the library never clears it */
} zvc_msg_q_context_t;

/*
 * Empties the buffer, makes all of it usable and clears rtos_error_code; the rest stays. Needed before the first use of
 * a context, before each message that its owner begins with zvmsg_build, zvc_send_zvmsg or zvc_send_zvmsg_async, and
 * before the adapter's send_remote_api forms (zvc_commands_zvx.h). All other functions reset the context themselves.
 * Returns 0, or ZV_ERR_INVALID_PARAM for null.
 */
ZV_API int32_t zvc_reset_context(zvc_msg_q_context_t *context);

/* ---- Exchange -----------------------------------------------------------------------------------------------------
 * `dest` is written into the message as its destination. A message always leaves through mq_tx: `via` names the relay
 * that mq_tx was opened on, and is not read. `direction` selects the row of the message trace (zvHex.h).
 *
 * Where an answer is asked for, `*rsp` points into the context's buffer and is valid until its next use; null and 0
 * mean an answer without a payload. `rsp` and `rspsize` are given together, or the answer is not handed out.
 *
 * An answer to a post still arrives in mq_rx. It is dropped before the next exchange or, when it comes later, in it:
 * the answer to a remote API request repeats the request in TLV_CMDARG, and one that repeats another whole request is
 * logged and dropped, and the wait goes on for what is left. Posts and exchanges may thus share a context unless both
 * are the same request. Where a context only posts, its owner empties the reply queue now and then.
 */

/*
 * Finishes the message in iobuf and posts it, without a wait. The context is set up, and its message was begun by
 * zvc_reset_context and zvmsg_build for this one send (assertion). Returns the result of mq_send: -1 also when the
 * queue is full.
 */
ZV_API int32_t zvc_send_context(zvc_msg_q_context_t *context, const char *dest, const char *via, int32_t direction);

/*
 * The same as an exchange of at most 10 seconds. What waits in the reply queue before the post is dropped. Returns the
 * answer's length, or ZV_ERR_NO_RESPONSE, which iobuf.len then holds too.
 */
ZV_API int32_t zvc_send_timedreceive_context(zvc_msg_q_context_t *context, const char *dest, const char *via,
                                             int32_t direction);

/*
 * A full exchange of one message on a context that was reset: `cmd` is the two-character command code, `arg` its
 * argument, which leaves room in ZVMSG_MAX for 31 bytes and the two mailbox names (assertion). An answer whose own
 * length field differs from its received length has no payload.
 */
ZV_API int32_t zvc_send_zvmsg(zvc_msg_q_context_t *context, int32_t category, const char *dest, const char *via,
                              const char *cmd, const uint8_t *arg, int32_t arglen, uint8_t **rsp, uint16_t *rspsize);

/* The same as a post, which returns at once. One that failed, also for a full queue, is not reported: returns 0. */
ZV_API int32_t zvc_send_zvmsg_async(zvc_msg_q_context_t *context, int32_t category, const char *dest, const char *via,
                                    const char *cmd, const uint8_t *arg, int32_t arglen);

/* A command to the relay itself. */
ZV_API int32_t zvc_send_dorsak_command(zvc_msg_q_context_t *context, const char *cmd, const uint8_t *arg,
                                       int32_t arglen, uint8_t **rsp, uint16_t *rspsize);

/* A command to the camera. */
ZV_API int32_t zvc_send_camera_command_via_zvNet(zvc_msg_q_context_t *context, const char *cmd, const uint8_t *arg,
                                                 int32_t arglen, uint8_t **rsp, uint16_t *rspsize);

/* ---- Remote API ---------------------------------------------------------------------------------------------------
 * Requests as remote_api.h describes them. `*rsp` and `*rspsize` give the payload of the answer, or the single byte
 * ZVN_NACK_OFF where the camera answered that it is switched off. zvc_send_remote_api and its asynchronous form take a
 * whole `request` of `size` bytes; the others build it, without a payload unless they take one.
 */
ZV_API int32_t zvc_send_remote_api(zvc_msg_q_context_t *context, const uint8_t *request, int32_t size, uint8_t **rsp,
                                   uint16_t *rspsize);

/* Posts the request and returns at once: 0, also where a full queue lost it. */
ZV_API int32_t zvc_send_remote_api_async(zvc_msg_q_context_t *context, const uint8_t *request, int32_t size);

ZV_API int32_t zvc_send_remote_api_for_response(zvc_msg_q_context_t *context, int32_t gid, int32_t aid, uint8_t **rsp,
                                                uint16_t *rspsize);

/*
 * A payload of 1 byte or more that leaves room in ZVMSG_MAX for 46 bytes and the context's mailbox name (assertion).
 * ZV_ERR_INVALID_PARAM for a size below 1, ZV_ERR_OUTOFMEM without memory for the request.
 */
ZV_API int32_t zvc_send_remote_api_payload(zvc_msg_q_context_t *context, int32_t gid, int32_t aid,
                                           const uint8_t *payload, int32_t size);
ZV_API int32_t zvc_send_remote_api_payload_response(zvc_msg_q_context_t *context, int32_t gid, int32_t aid,
                                                    const uint8_t *payload, int32_t size, uint8_t **rsp,
                                                    uint16_t *rspsize);

ZV_API int32_t zvc_send_simple_remote_api(zvc_msg_q_context_t *context, int32_t gid, int32_t aid);
ZV_API int32_t zvc_send_simple_remote_api_async(zvc_msg_q_context_t *context, int32_t gid, int32_t aid);

/* zvc_send_remote_api_payload that logs a failure once more. */
ZV_API int32_t command_params_payload(zvc_msg_q_context_t *context, int32_t gid, int32_t aid, const uint8_t *payload,
                                      int32_t size);

/* Writes the 5 header bytes of a request. */
ZV_API void zvc_init_remote_api_input_header(uint8_t *request, uint8_t gid, uint8_t aid, uint16_t payload_size);

/* A number that selects a protocol adapter. There is one adapter, so that it has no effect; 0 at start. */
ZV_API void zvc_select_protocol_adapter(int32_t id);
ZV_API int32_t zvc_get_protocol_adapter(void);

/* ---- Camera commands ----------------------------------------------------------------------------------------------
 * True of every camera command, here and in the headers that refer to this: it is one exchange, with the results above.
 * A write sends the low byte of what it is given and judges nothing: the camera does. A read whose answer is too short
 * is ZV_ERR_INVALID_PARAM, and so is a null output, for which nothing is sent.
 *
 * The flat mode is one number for mode and sub mode, and what the rest of the library tests:
 *
 *     12 video               18 night photo          26 night lapse video
 *     13 time lapse video    19 burst photo          29 star trail
 *     15 looping             20 time lapse photo     30 light painting
 *     16 single photo        21 night lapse photo    31 vehicle lights
 *                            24 rush lapse video
 */

/* Mode, sub mode and flat mode; zvc_app_set_set_mode is the same command. */
ZV_API int32_t zvc_app_set_mode(zvc_msg_q_context_t *context, int32_t mode);
ZV_API int32_t zvc_app_set_set_mode(zvc_msg_q_context_t *context, int32_t mode);
ZV_API int32_t zvc_app_set_mode_sub_mode(zvc_msg_q_context_t *context, int32_t mode, int32_t sub_mode);
ZV_API int32_t zvc_app_get_mode_sub_mode(zvc_msg_q_context_t *context, int32_t *mode, int32_t *sub_mode);
ZV_API int32_t zvc_app_get_mode_flat_mode(zvc_msg_q_context_t *context, int32_t *mode, int32_t *flat_mode);

/*
 * Digital zoom as status 75 publishes it, a byte whose range the camera judges; the capture delay as setting 105 has
 * it: 0 off, 1 for 3 seconds, 2 for 10 seconds.
 */
ZV_API int32_t zvc_app_set_digital_zoom(zvc_msg_q_context_t *context, int32_t zoom);
ZV_API int32_t zvc_app_get_digital_zoom(zvc_msg_q_context_t *context, int32_t *zoom);
ZV_API int32_t zvc_app_set_capture_delay(zvc_msg_q_context_t *context, int32_t delay);
ZV_API int32_t zvc_app_get_capture_delay(zvc_msg_q_context_t *context, int32_t *delay);

/* The lens in use, and the mode by which lenses are chosen, as signed bytes. A set changes one and leaves the other. */
ZV_API int32_t zvc_system_get_lens_mode(zvc_msg_q_context_t *context, int8_t *lens_mode);
ZV_API int32_t zvc_system_get_lens(zvc_msg_q_context_t *context, int8_t *lens);
ZV_API int32_t zvc_system_get_lenses(zvc_msg_q_context_t *context, int8_t *lens_mode, int8_t *lens);
ZV_API int32_t zvc_system_set_lens_mode(zvc_msg_q_context_t *context, int32_t lens_mode);
ZV_API int32_t zvc_system_set_lens(zvc_msg_q_context_t *context, int32_t lens);

/* The lens that is mounted: 0 none, 1 WIDE_OPTIC_1_0, 2 WIDE_OPTIC_2_0. */
ZV_API int32_t zvc_system_get_lens_type(zvc_msg_q_context_t *context, int8_t *type);
ZV_API int32_t zvc_system_set_lens_type(zvc_msg_q_context_t *context, int32_t type);
ZV_API int32_t zvc_system_get_lens_status(zvc_msg_q_context_t *context, int8_t *status);
ZV_API int32_t zvc_system_set_lens_status(zvc_msg_q_context_t *context, int8_t status);

ZV_API int32_t zvc_system_get_power_profile(zvc_msg_q_context_t *context, uint8_t *profile);
ZV_API int32_t zvc_system_set_button(zvc_msg_q_context_t *context, uint8_t first, uint8_t second);
ZV_API int32_t zvc_system_set_rc_rotation(zvc_msg_q_context_t *context, uint8_t rotation);

/*
 * How the picture is turned: 0 by the way the camera is held, 1 to 4 locked. The way it is held is status 86; held as
 * 0, 1, 2 or 3 it locks as 1, 2, 4 or 3. Setting 112 writes the fitting one by itself (camera_interface.h).
 */
ZV_API int32_t zvc_setup_set_orientation(zvc_msg_q_context_t *context, uint8_t orientation);
ZV_API int32_t zvc_setup_get_orientation(zvc_msg_q_context_t *context, uint8_t *orientation);

/* The user interface mode: 0 Easy, 1 Pro. */
ZV_API int32_t zvc_setup_get_camera_ux_mode(zvc_msg_q_context_t *context, uint8_t *ux_mode);

ZV_API int32_t zvc_audio_set_audio_option(zvc_msg_q_context_t *context, uint8_t option);
ZV_API int32_t zvc_audio_set_mic_option(zvc_msg_q_context_t *context, uint8_t option);

/* Resets the on-screen shortcuts to the preset's own. */
ZV_API int32_t zvc_preset_onscreen_shortcuts_reset(zvc_msg_q_context_t *context);

/* The speed ramp of a rush lapse video: its code, and whether it is active. */
ZV_API int32_t zvc_video_set_rushlapse_speed_ramp(zvc_msg_q_context_t *context, int32_t value);
ZV_API int32_t zvc_video_set_rushlapse_speed_ramp_active(zvc_msg_q_context_t *context, int32_t value);

#ifdef __cplusplus
}
#endif

#endif
