#include "firmware_peer.h"

#include "remote_actions.h"
#include "remote_values.h"

#include <zvctrl/zvc_commands.h>

#include "libzvCommon/src/bytes.h"

namespace zv::sim {

namespace {

constexpr uint8_t CATEGORY_RELAY = 2;
constexpr uint8_t CATEGORY_CAMERA = 4;
constexpr char REMOTE_API[] = "YY";
constexpr char CAMERA_QUEUE[] = "/to_camera";
constexpr size_t COMMAND_SIZE = 2;
constexpr size_t NUMBER_MAX = 4;

// The low `width` bytes, most significant first.
Bytes big_endian(uint64_t number, uint8_t width)
{
    Bytes bytes;
    for (size_t i = width; i > 0; --i) {
        bytes.push_back(static_cast<uint8_t>(number >> 8 * (i - 1)));
    }
    return bytes;
}

Answer set_value(State &state, const RemoteValue &value, View payload)
{
    if (payload.empty() || payload.size() > NUMBER_MAX) {
        return refused(NAK);
    }
    uint64_t number = 0;
    for (const uint8_t byte : payload) {
        number = number << 8 | byte;
    }
    state.set(value.field, number);
    for (const Field &twin : value.twins) {
        state.set(twin, number);
    }
    return good();
}

} // namespace

Answer run_remote_command(Camera &camera, uint8_t group, uint8_t action, View payload)
{
    if (const RemoteValue *value = find_remote_value(group, action)) {
        return action == value->set ? set_value(camera.state(), *value, payload)
                                    : good(big_endian(camera.state().get(value->field), value->read_width));
    }
    if (const RemoteAction *command = find_remote_action(group, action);
        command != nullptr && payload.size() >= command->least) {
        return command->run(camera, payload);
    }
    return refused(NAK);
}

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
    return run_remote_command(m_camera, request.group, request.action, request.payload);
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
