/*
 * zvc_commands_zvx.h - the protocol adapter, and the shutter
 *
 * The functions of zvc_commands.h and all camera operations reach the camera through the adapter that gFunctionMap
 * points at. An adapter's operations have the results described there; unlike those functions, send_remote_api and
 * send_remote_api_async do not reset the context first, which is their caller's to do (zvc_reset_context).
 */
#ifndef ZVCTRL_ZVC_COMMANDS_ZVX_H
#define ZVCTRL_ZVC_COMMANDS_ZVX_H

#include "zvc_commands.h"

#ifdef __cplusplus

class ZV_API ZVCCommandsInterface {
  public:
    virtual ~ZVCCommandsInterface() = default;
    virtual int32_t shutter(zvc_msg_q_context_t *context, uint8_t on) = 0;
    virtual int32_t send_remote_api(zvc_msg_q_context_t *context, const uint8_t *request, int32_t size, uint8_t **rsp,
                                    uint16_t *rspsize) = 0;
    virtual int32_t send_remote_api_async(zvc_msg_q_context_t *context, const uint8_t *request, int32_t size) = 0;
    virtual int32_t send_remote_api_for_response(zvc_msg_q_context_t *context, int32_t gid, int32_t aid, uint8_t **rsp,
                                                 uint16_t *rspsize) = 0;
    virtual int32_t send_remote_api_payload(zvc_msg_q_context_t *context, int32_t gid, int32_t aid,
                                            const uint8_t *payload, int32_t size) = 0;
    virtual int32_t send_remote_api_payload_response(zvc_msg_q_context_t *context, int32_t gid, int32_t aid,
                                                     const uint8_t *payload, int32_t size, uint8_t **rsp,
                                                     uint16_t *rspsize) = 0;
};

class ZV_API ZVXCommand : public ZVCCommandsInterface {
  public:
    int32_t shutter(zvc_msg_q_context_t *context, uint8_t on) override;
    int32_t send_remote_api(zvc_msg_q_context_t *context, const uint8_t *request, int32_t size, uint8_t **rsp,
                            uint16_t *rspsize) override;
    int32_t send_remote_api_async(zvc_msg_q_context_t *context, const uint8_t *request, int32_t size) override;
    int32_t send_remote_api_for_response(zvc_msg_q_context_t *context, int32_t gid, int32_t aid, uint8_t **rsp,
                                         uint16_t *rspsize) override;
    int32_t send_remote_api_payload(zvc_msg_q_context_t *context, int32_t gid, int32_t aid, const uint8_t *payload,
                                    int32_t size) override;
    int32_t send_remote_api_payload_response(zvc_msg_q_context_t *context, int32_t gid, int32_t aid,
                                             const uint8_t *payload, int32_t size, uint8_t **rsp,
                                             uint16_t *rspsize) override;
};

/*
 * The library's one adapter, and the pointer through which every call goes. The library never changes the pointer; a
 * program that has an adapter of its own sets it before the first call of any thread, and keeps that adapter alive.
 */
extern "C" ZV_API ZVXCommand zvxCommands;
extern "C" ZV_API ZVCCommandsInterface *gFunctionMap;

#endif

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Starts a capture when `on` is not 0, else stops it, in whatever mode the camera is in. Two exchanges: it asks for the
 * flat mode and sends that mode's action. Returns 0, the failure of the first exchange, or ZV_ERR_INVALID_PARAM when
 * the flat mode has no shutter action or the camera did not take it.
 */
ZV_API int32_t zvc_shutter(zvc_msg_q_context_t *context, uint8_t on);

#ifdef __cplusplus
}
#endif

#endif
