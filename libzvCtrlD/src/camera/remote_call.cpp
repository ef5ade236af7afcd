#include "remote_call.h"

#include "bytes.h"

#include <algorithm>

namespace zv {

int32_t remote_send_bytes(zvc_msg_q_context_t *context, RemoteCommand command, std::span<const uint8_t> payload,
                          Payload *answer)
{
    uint8_t request[REMOTE_API_HEADER_SIZE + REMOTE_PAYLOAD_MAX];
    zvc_init_remote_api_input_header(request, group_of(command), action_of(command),
                                     static_cast<uint16_t>(payload.size()));
    std::copy(payload.begin(), payload.end(), request + REMOTE_API_HEADER_SIZE);
    const auto size = static_cast<int32_t>(REMOTE_API_HEADER_SIZE + payload.size());
    if (answer == nullptr) {
        return zvc_send_remote_api(context, request, size, nullptr, nullptr);
    }
    uint8_t *bytes = nullptr;
    const int32_t result = zvc_send_remote_api(context, request, size, &bytes, &answer->size);
    answer->bytes = bytes;
    return result;
}

int32_t remote_send(zvc_msg_q_context_t *context, RemoteCommand command, Payload *answer)
{
    return remote_send_bytes(context, command, {}, answer);
}

int32_t check_size(const Payload &answer, uint16_t expected, const ReadTexts &texts, const SourceLocation &where)
{
    if (answer.size >= expected) {
        return ZV_OK;
    }
    ZV_LOG_AT(where, ZV_LOG_ERROR, texts.size, expected, answer.size);
    return ZV_ERR_INVALID_PARAM;
}

int32_t remote_read(zvc_msg_q_context_t *context, RemoteCommand command, uint16_t expected, const ReadTexts &texts,
                    Payload &answer, const SourceLocation &where)
{
    const int32_t result = remote_send(context, command, &answer);
    if (texts.opening != nullptr) {
        ZV_LOG_AT(where, ZV_LOG_INFO, texts.opening, answer.size, result);
    }
    if (result != ZV_OK) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, texts.failure, result);
        return result;
    }
    return check_size(answer, expected, texts, where);
}

int32_t refuse_null_output(const SourceLocation &where)
{
    ZV_LOG_AT(where, ZV_LOG_ERROR, "null output");
    return ZV_ERR_INVALID_PARAM;
}

int32_t remote_get_be32(zvc_msg_q_context_t *context, RemoteCommand command, uint32_t *value, const char *text,
                        uint16_t least, const ReadTexts &texts, const SourceLocation &where)
{
    if (value == nullptr) {
        return refuse_null_output(where);
    }
    Payload answer;
    int32_t result = remote_read(context, command, least, texts, answer, where);
    if (result == ZV_OK) {
        result = check_size(answer, sizeof *value, texts, where);
    }
    if (result == ZV_OK) {
        *value = be32(answer.bytes);
        ZV_LOG_AT(where, ZV_LOG_INFO, text, *value);
    }
    return result;
}

int32_t remote_set(zvc_msg_q_context_t *context, RemoteCommand command, int32_t value, const SetRule &rule,
                   const SourceLocation &where)
{
    if (value > rule.highest) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, rule.refusal, value);
        return ZV_ERR_INVALID_PARAM;
    }
    if (rule.text != nullptr) {
        ZV_LOG_AT(where, ZV_LOG_INFO, rule.text, value);
    }
    return remote_send(context, command, {low_byte(value)});
}

int32_t remote_set_be32(zvc_msg_q_context_t *context, RemoteCommand command, uint32_t value)
{
    uint8_t bytes[sizeof value];
    put_be32(bytes, value);
    return remote_send(context, command, bytes);
}

int32_t remote_action(zvc_msg_q_context_t *context, RemoteCommand command)
{
    return remote_send(context, command);
}

} // namespace zv
