#include "daemon_peer.h"

#include "bytes.h"
#include "message.h"
#include "setting_writes.h"

#include <cstddef>

#include <zvctrl/zvDbg.h>
#include <zvctrl/zvcontrol_if.h>

namespace zv::sim {

namespace {

// The setting's number and the option's value.
Answer set_setting(Camera &camera, View argument)
{
    constexpr size_t SIZE = 8;
    if (argument.size() != SIZE) {
        return refused(ZV_ERR_INVALID_PARAM);
    }
    return refused(write_setting(camera, le32(argument.data()), le32(argument.data() + 4)));
}

} // namespace

Answer answer_as_daemon(Camera &camera, const Request &request)
{
    camera.refresh();
    switch (request.command) {
    case ZVCONTROL_SET_SETTING_ID:
        return set_setting(camera, request.argument);
    case ZVCONTROL_GET_ALL_SETTINGS:
        return good(camera.state().settings_record());
    case ZVCONTROL_GET_ALL_STATUS:
        return good(camera.state().status_record());
    case ZVCONTROL_GET_ALL_SETTINGS_STATUS:
        return good(camera.state().record());
    case ZVCONTROL_RESYNC_MESSAGE_QUEUE:
        return good(request.argument);
    default:
        return refused(ZV_ERR_NOT_SUPPORTED);
    }
}

} // namespace zv::sim
