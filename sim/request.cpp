#include "request.h"

#include "bytes.h"

#include <zvctrl/zvc_commands.h>

#include <algorithm>

namespace zv::sim {

namespace {

constexpr uint8_t CATEGORY_DAEMON = 20;
constexpr uint8_t CATEGORY_DAEMON_RESPONSE = 21;
constexpr char REMOTE_API[] = "YY";
constexpr char CAMERA_QUEUE[] = "/to_camera";
constexpr size_t CODE_SIZE = 2;

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
    if (request.category != CATEGORY_DAEMON || !command || command->size() != sizeof request.command) {
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
    if (request.category == CATEGORY_CAMERA && request.code == REMOTE_API &&
        argument->size() >= REMOTE_API_HEADER_SIZE) {
        request.group = request.argument[1];
        request.action = request.argument[2];
        request.payload = bytes_of(argument->subspan(REMOTE_API_HEADER_SIZE));
        request.valid = be16(argument->data() + 3) == request.payload.size();
    }
    return true;
}

Bytes daemon_answer(const Answer &answer)
{
    uint8_t code[sizeof(uint32_t)];
    put_le32(code, static_cast<uint32_t>(answer.switched_off ? ZV_ERR_NAK_OFF : answer.code));
    if (answer.payload.empty()) {
        return build_message(CATEGORY_DAEMON_RESPONSE, {{TLV_RSP, code}});
    }
    return build_message(CATEGORY_DAEMON_RESPONSE, {{TLV_RSP, code}, {TLV_RSPARG, answer.payload}});
}

Bytes relay_answer(const Request &request, const Answer &answer)
{
    Bytes response = {ZVN_NACK_OFF};
    if (!answer.switched_off) {
        const size_t size = answer.payload.size();
        response = {static_cast<uint8_t>(answer.code), 0, 0, 0, answer.error, static_cast<uint8_t>(size >> 8),
                    static_cast<uint8_t>(size)};
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

std::optional<Request> parse_request(Link link, View message)
{
    if (!well_formed(message)) {
        return std::nullopt;
    }
    Request request;
    request.link = link;
    request.category = message[3];
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
