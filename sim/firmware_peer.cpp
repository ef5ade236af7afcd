#include "firmware_peer.h"

#include "remote_actions.h"
#include "remote_values.h"

namespace zv::sim {

namespace {

constexpr size_t NUMBER_MAX = 4;

Answer get_value(const State &state, const RemoteValue &value)
{
    const uint64_t number = state.get(value.field);
    Bytes bytes;
    for (size_t i = value.read_width; i > 0; --i) {
        bytes.push_back(static_cast<uint8_t>(number >> 8 * (i - 1)));
    }
    return good(bytes);
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

Answer answer_as_firmware(Camera &camera, const Request &request)
{
    if (request.category == CATEGORY_RELAY) {
        return good();
    }
    return request.valid ? run_remote_command(camera, request.group, request.action, request.payload) : refused(NAK);
}

Answer run_remote_command(Camera &camera, uint8_t group, uint8_t action, View payload)
{
    if (const RemoteValue *value = find_remote_value(group, action)) {
        return action == value->set ? set_value(camera.state(), *value, payload) : get_value(camera.state(), *value);
    }
    const RemoteAction *command = find_remote_action(group, action);
    return command != nullptr && payload.size() >= command->least ? command->run(camera, payload) : refused(NAK);
}

} // namespace zv::sim
