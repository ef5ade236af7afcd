#include "firmware_peer.h"

#include "field.h"
#include "queue_names.h"
#include "remote_actions.h"
#include "remote_values.h"
#include "state.h"

#include <cstddef>
#include <cstdint>

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
    if (request.category == CATEGORY_DORSAK) {
        return good();
    }
    if (!request.valid) {
        return refused(NAK);
    }
    return run_remote_command(camera, RemoteCommand{remote_command(request.group, request.action)}, request.payload);
}

Answer run_remote_command(Camera &camera, RemoteCommand command, View payload)
{
    if (const RemoteValue *value = find_remote_value(command)) {
        return command == value->set ? set_value(camera.state(), *value, payload) : get_value(camera.state(), *value);
    }
    const RemoteAction *action = find_remote_action(command);
    return action != nullptr && payload.size() >= action->least ? action->run(camera, payload) : refused(NAK);
}

} // namespace zv::sim
