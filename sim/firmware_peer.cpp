#include "firmware_peer.h"

#include <zvctrl/zvc_commands.h>

#include "libzvCommon/src/bytes.h"

namespace zv::sim {

namespace {

constexpr uint8_t CATEGORY_RELAY = 2;
constexpr uint8_t CATEGORY_CAMERA = 4;
constexpr char REMOTE_API[] = "YY";
constexpr char CAMERA_QUEUE[] = "/to_camera";
constexpr uint8_t NAK = 1;
constexpr size_t COMMAND_SIZE = 2;

} // namespace

std::optional<Request> FirmwarePeer::parse(View message) const
{
    if (!well_formed(message) || message[3] % 2 != 0) {
        return std::nullopt;
    }
    const auto code = find_element(message, TLV_CMD);
    const auto source = find_element(message, TLV_SRC);
    const auto argument = find_element(message, TLV_CMDARG);
    if (!code || code->size() != COMMAND_SIZE || !source || !argument) {
        return std::nullopt;
    }
    Request request;
    request.link = Link::RELAY;
    request.category = message[3];
    request.code.assign(code->begin(), code->end());
    request.source = queue_name(*source);
    request.argument.assign(argument->begin(), argument->end());
    if (request.category == CATEGORY_CAMERA && request.code == REMOTE_API &&
        request.argument.size() >= REMOTE_API_HEADER_SIZE) {
        request.group = request.argument[1];
        request.action = request.argument[2];
        request.payload.assign(request.argument.begin() + REMOTE_API_HEADER_SIZE, request.argument.end());
        request.valid = be16(request.argument.data() + 3) == request.payload.size();
    }
    return request.source.empty() ? std::nullopt : std::optional(request);
}

Answer FirmwarePeer::answer(const Request &request)
{
    if (request.category == CATEGORY_RELAY) {
        return {};
    }
    if (!request.valid) {
        return refused(NAK);
    }
    if (request.group == REMOTE_GROUP_APP && request.action == 7) {
        return good(Bytes{m_state.flat_mode(), 0});
    }
    return refused(NAK);
}

Bytes FirmwarePeer::message(const Request &request, const Answer &answer) const
{
    Bytes response;
    if (answer.switched_off) {
        response = {ZVN_NACK_OFF};
    } else {
        const auto size = static_cast<uint16_t>(answer.payload.size());
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

} // namespace zv::sim
