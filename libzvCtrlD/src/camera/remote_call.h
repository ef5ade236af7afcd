// The engines of the remote commands: nearly every camera operation is one line over one of them. Internal to the
// library.
//
// The log lines of an engine name the public function that called it, by its source location.
#pragma once

#include "log_at.h"
#include "remote_commands.h"
#include "zvc_commands.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

namespace zv {

// The messages of a read. A source file's messages end in a line feed or not, all alike.
struct ReadTexts {
    const char *opening; // at INFO: size, code; null: not logged
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

// What a firmware byte takes of a caller's number.
constexpr uint8_t low_byte(int32_t value)
{
    return static_cast<uint8_t>(value);
}

// The longest payload that is sent from the stack.
inline constexpr size_t REMOTE_PAYLOAD_MAX = 13;

// Sends the command with a payload of up to REMOTE_PAYLOAD_MAX bytes; more do not compile. A null `answer` asks for no
// response.
int32_t remote_send_bytes(zvc_msg_q_context_t *context, RemoteCommand command, std::span<const uint8_t> payload,
                          Payload *answer);

template <size_t SIZE>
int32_t remote_send(zvc_msg_q_context_t *context, RemoteCommand command, const uint8_t (&payload)[SIZE],
                    Payload *answer = nullptr)
{
    static_assert(SIZE <= REMOTE_PAYLOAD_MAX);
    return remote_send_bytes(context, command, payload, answer);
}

// Sends the bare command.
int32_t remote_send(zvc_msg_q_context_t *context, RemoteCommand command, Payload *answer = nullptr);

// Sends the bare command and asks for at least `expected` bytes. A shorter answer is ZV_ERR_INVALID_PARAM.
int32_t remote_read(zvc_msg_q_context_t *context, RemoteCommand command, uint16_t expected, const ReadTexts &texts,
                    Payload &answer, const SourceLocation &where);

// The last step of a read: an answer of fewer than `expected` bytes is logged and is ZV_ERR_INVALID_PARAM.
int32_t check_size(const Payload &answer, uint16_t expected, const ReadTexts &texts, const SourceLocation &where);

// What a read makes of a null output: it is logged, and nothing is sent. Returns ZV_ERR_INVALID_PARAM.
int32_t refuse_null_output(const SourceLocation &where);

// Remote getter of the payload's first bytes: byte i, converted to the value's type (as a signed byte for int8_t), in
// *values[i]. `text` logs the payload bytes at INFO, or is null.
template <class Value, size_t COUNT>
int32_t remote_get_bytes(zvc_msg_q_context_t *context, RemoteCommand command, Value *const (&values)[COUNT],
                         const char *text, const ReadTexts &texts = READ_TEXTS,
                         const SourceLocation &where = SourceLocation::current())
{
    if (std::find(values, values + COUNT, nullptr) != values + COUNT) {
        return refuse_null_output(where);
    }
    Payload answer;
    const int32_t result = remote_read(context, command, COUNT, texts, answer, where);
    if (result != ZV_OK) {
        return result;
    }
    [&]<size_t... I>(std::index_sequence<I...>)
    {
        ((*values[I] = static_cast<Value>(answer.bytes[I])), ...);
        if (text != nullptr) {
            ZV_LOG_AT(where, ZV_LOG_INFO, text, answer.bytes[I]...);
        }
    }
    (std::make_index_sequence<COUNT>());
    return ZV_OK;
}

// Remote getter: one byte.
template <class Value>
int32_t remote_get(zvc_msg_q_context_t *context, RemoteCommand command, Value *value, const char *text,
                   const ReadTexts &texts = READ_TEXTS, const SourceLocation &where = SourceLocation::current())
{
    return remote_get_bytes(context, command, {value}, text, texts, where);
}

// Remote getter of a big-endian number of 4 bytes, logged by `text` at INFO. A short answer logs the expected size:
// `least` if it is shorter than that, otherwise 4.
int32_t remote_get_be32(zvc_msg_q_context_t *context, RemoteCommand command, uint32_t *value, const char *text,
                        uint16_t least, const ReadTexts &texts,
                        const SourceLocation &where = SourceLocation::current());

// What a remote setter logs and refuses.
struct SetRule {
    const char *text = nullptr;    // at INFO: the value that is sent
    int32_t highest = INT32_MAX;   // compared as a signed number
    const char *refusal = nullptr; // at ERROR: a value above that
};

// Remote setter: the value's low byte. A value above the rule's limit is ZV_ERR_INVALID_PARAM, and nothing is sent.
int32_t remote_set(zvc_msg_q_context_t *context, RemoteCommand command, int32_t value, const SetRule &rule = {},
                   const SourceLocation &where = SourceLocation::current());

// Remote setter of a number of 4 bytes, big-endian.
int32_t remote_set_be32(zvc_msg_q_context_t *context, RemoteCommand command, uint32_t value);

// Remote action: the bare command, no response asked for.
int32_t remote_action(zvc_msg_q_context_t *context, RemoteCommand command);

} // namespace zv
