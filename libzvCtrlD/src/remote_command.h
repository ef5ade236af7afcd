// The engines of the remote commands: nearly every camera operation is one line over one of them. Internal to the
// library.
//
// A command is a group and an action of the remote API; its name is the firmware's. The log lines of an engine name the
// public function that called it, by its std::source_location.
#pragma once

#include "log_at.h"
#include "zvc_commands.h"

#include <initializer_list>

namespace zv {

struct RemoteCommand {
    uint8_t group;
    uint8_t action;
};

// The messages of a read; a null one is not logged. A source file's messages end in a line feed or not, all alike.
struct ReadTexts {
    const char *opening; // at INFO: size, code
    const char *failure; // at ERROR: code
    const char *size;    // at ERROR: expected size, actual size
};

inline constexpr ReadTexts READ_TEXTS{"rsp_size/err, %d,%d", "zvc_send_remote_api error %d", "rsp_size exp/act, %d,%d"};
inline constexpr ReadTexts READ_TEXTS_LF{"rsp_size/err, %d,%d\n", "zvc_send_remote_api error %d\n",
                                         "rsp_size exp/act, %d,%d\n"};

// The payload of an answer, inside the context until its next use.
struct Payload {
    const uint8_t *bytes = nullptr;
    uint16_t size = 0;
};

// Sends the bare command and asks for at least `expected` bytes. A shorter answer is ZV_ERR_INVALID_PARAM.
int32_t remote_read(zvc_msg_q_context_t *context, RemoteCommand command, uint16_t expected, const ReadTexts &texts,
                    Payload &payload, const std::source_location &where);

// Sends the command with a payload of up to 13 bytes, and asks for no response.
int32_t remote_write(zvc_msg_q_context_t *context, RemoteCommand command, std::initializer_list<uint8_t> payload);

// Remote getter: payload byte 0, converted to the value's type (as a signed byte for int8_t). `text` logs it at INFO,
// or is null. A null `value` is ZV_ERR_INVALID_PARAM, and nothing is sent.
template <class Value>
int32_t remote_get(zvc_msg_q_context_t *context, RemoteCommand command, Value *value, const char *text,
                   const ReadTexts &texts = READ_TEXTS,
                   const std::source_location &where = std::source_location::current())
{
    if (value == nullptr) {
        return ZV_ERR_INVALID_PARAM;
    }
    Payload payload;
    const int32_t result = remote_read(context, command, 1, texts, payload, where);
    if (result != ZV_OK) {
        return result;
    }
    *value = static_cast<Value>(payload.bytes[0]);
    if (text != nullptr) {
        ZV_LOG_AT(where, ZV_LOG_INFO, text, static_cast<int>(*value));
    }
    return ZV_OK;
}

// What a remote setter logs and refuses.
struct SetRule {
    const char *text = nullptr;    // at INFO: the value that is sent
    int32_t highest = INT32_MAX;   // compared as a signed number
    const char *refusal = nullptr; // at ERROR: a value above that
};

// Remote setter: the value's low byte. A value above the rule's limit is ZV_ERR_INVALID_PARAM, and nothing is sent.
int32_t remote_set(zvc_msg_q_context_t *context, RemoteCommand command, int32_t value, const SetRule &rule = {},
                   const std::source_location &where = std::source_location::current());

// Remote action: the bare command, no response asked for.
int32_t remote_action(zvc_msg_q_context_t *context, RemoteCommand command);

} // namespace zv
