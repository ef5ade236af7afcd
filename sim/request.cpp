#include "request.h"

#include "bytes.h"
#include "message_format.h"
#include "queue_names.h"
#include "remote_commands.h"

#include <algorithm>
#include <cstddef>

#include <zvctrl/messages.h>
#include <zvctrl/zvDbg.h>
#include <zvctrl/zvTlv.h>

namespace zv::sim {

namespace {

constexpr size_t CODE_SIZE = sizeof REMOTE_API_COMMAND - 1;

// The queue's name that a client wrote, up to a zero byte: a slash and more.
bool read_queue_name(View value, std::string &name)
{
    name.assign(value.begin(), std::find(value.begin(), value.end(), '\0'));
    return name.size() > 1 && name.front() == '/';
}

Bytes bytes_of(const std::optional<View> &value)
{
    return value ? Bytes(value->begin(), value->end()) : Bytes();
}

bool read_daemon_command(View message, Request &request)
{
    const auto command = find_element(message, TLV_CMD);
    if (request.category != CAT_ZVCTRL_CMD || !command || command->size() != sizeof request.command) {
        return false;
    }
    request.command = le32(command->data());
    request.argument = bytes_of(find_element(message, TLV_CMDARG));
    return true;
}

bool read_relay_command(View message, Request &request)
{
    const auto code = find_element(message, TLV_CMD);
    const auto argument = find_element(message, TLV_CMDARG);
    if (request.category % 2 != 0 || !code || code->size() != CODE_SIZE || !argument) {
        return false;
    }
    request.code.assign(code->begin(), code->end());
    request.argument = bytes_of(argument);
    if (request.category == CATEGORY_CAMERA && request.code == REMOTE_API_COMMAND &&
        argument->size() >= REMOTE_API_HEADER_SIZE) {
        request.group = request.argument[REMOTE_REQUEST_GROUP];
        request.action = request.argument[REMOTE_REQUEST_ACTION];
        request.payload = bytes_of(argument->subspan(REMOTE_API_HEADER_SIZE));
        request.valid = be16(argument->data() + REMOTE_REQUEST_SIZE) == request.payload.size();
    }
    return true;
}

Bytes daemon_answer(const Answer &answer)
{
    uint8_t code[sizeof(uint32_t)];
    put_le32(code, static_cast<uint32_t>(answer.switched_off ? ZV_ERR_NAK_OFF : answer.code));
    if (answer.payload.empty()) {
        return build_message(CAT_ZVCTRL_RSP, {{TLV_RSP, code}});
    }
    return build_message(CAT_ZVCTRL_RSP, {{TLV_RSP, code}, {TLV_RSPARG, answer.payload}});
}

Bytes relay_answer(const Request &request, const Answer &answer)
{
    Bytes response = {ZVN_NACK_OFF};
    if (!answer.switched_off) {
        response.assign(REMOTE_ANSWER_PAYLOAD, 0);
        response[REMOTE_ANSWER_ACK] = static_cast<uint8_t>(answer.code);
        response[REMOTE_ANSWER_ERROR] = answer.error;
        put_be16(&response[REMOTE_ANSWER_SIZE], static_cast<uint16_t>(answer.payload.size()));
        response.insert(response.end(), answer.payload.begin(), answer.payload.end());
    }
    return build_message(static_cast<uint8_t>(request.category + 1), {{TLV_CMD, view_of(request.code)},
                                                                      {TLV_CMDARG, request.argument},
                                                                      {TLV_RSPARG, response},
                                                                      {TLV_SRC, view_of(CAMERA_QUEUE)},
                                                                      {TLV_DST, view_of(request.source)}});
}

} // namespace

Answer good(View payload)
{
    Answer answer;
    answer.payload.assign(payload.begin(), payload.end());
    return answer;
}

Answer refused(int32_t code)
{
    Answer answer;
    answer.code = code;
    return answer;
}

Answer failed(FirmwareError error)
{
    Answer answer;
    answer.error = error;
    return answer;
}

std::optional<Request> parse_request(Link link, View message)
{
    if (!well_formed(message)) {
        return std::nullopt;
    }
    Request request;
    request.link = link;
    request.category = message[MESSAGE_CATEGORY];
    const bool read =
        link == Link::DAEMON ? read_daemon_command(message, request) : read_relay_command(message, request);
    if (!read || !read_queue_name(find_element(message, TLV_SRC).value_or(View()), request.source)) {
        return std::nullopt;
    }
    return request;
}

Bytes build_answer(const Request &request, const Answer &answer)
{
    return request.link == Link::DAEMON ? daemon_answer(answer) : relay_answer(request, answer);
}

} // namespace zv::sim
