#include "remote_command.h"

#include <algorithm>
#include <cassert>

namespace zv {

namespace {

constexpr size_t PAYLOAD_MAX = 13;

} // namespace

int32_t remote_read(zvc_msg_q_context_t *context, RemoteCommand command, uint16_t expected, const ReadTexts &texts,
                    Payload &payload, const std::source_location &where)
{
    uint8_t request[REMOTE_API_HEADER_SIZE];
    uint8_t *bytes = nullptr;
    uint16_t size = 0;
    zvc_init_remote_api_input_header(request, command.group, command.action, 0);
    const int32_t result = zvc_send_remote_api(context, request, sizeof request, &bytes, &size);
    if (texts.opening != nullptr) {
        ZV_LOG_AT(where, ZV_LOG_INFO, texts.opening, size, result);
    }
    if (result != ZV_OK) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, texts.failure, result);
        return result;
    }
    if (size < expected) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, texts.size, expected, size);
        return ZV_ERR_INVALID_PARAM;
    }
    payload = {bytes, size};
    return ZV_OK;
}

int32_t remote_write(zvc_msg_q_context_t *context, RemoteCommand command, std::initializer_list<uint8_t> payload)
{
    assert(payload.size() <= PAYLOAD_MAX);
    uint8_t request[REMOTE_API_HEADER_SIZE + PAYLOAD_MAX];
    zvc_init_remote_api_input_header(request, command.group, command.action, static_cast<uint16_t>(payload.size()));
    std::copy(payload.begin(), payload.end(), request + REMOTE_API_HEADER_SIZE);
    return zvc_send_remote_api(context, request, static_cast<int32_t>(REMOTE_API_HEADER_SIZE + payload.size()), nullptr,
                               nullptr);
}

int32_t remote_set(zvc_msg_q_context_t *context, RemoteCommand command, int32_t value, const SetRule &rule,
                   const std::source_location &where)
{
    if (value > rule.highest) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, rule.refusal, value);
        return ZV_ERR_INVALID_PARAM;
    }
    if (rule.text != nullptr) {
        ZV_LOG_AT(where, ZV_LOG_INFO, rule.text, value);
    }
    return remote_write(context, command, {static_cast<uint8_t>(value)});
}

int32_t remote_action(zvc_msg_q_context_t *context, RemoteCommand command)
{
    return remote_write(context, command, {});
}

} // namespace zv
