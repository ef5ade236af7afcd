#include "foreign.h"

#include "message.h"
#include "queue_names.h"
#include "remote_commands.h"

#include <zvctrl/zvcontrol_if.h>

#include <cstdint>

namespace zv::sim {

namespace {

// The first one, or the second one in place of the first.
constexpr uint32_t DAEMON_COMMANDS[] = {ZVCONTROL_GET_ALL_STATUS, ZVCONTROL_GET_ALL_SETTINGS};
constexpr RemoteCommand REMOTE_COMMANDS[] = {REMOTE_SETUP_VIDEO_FORMAT_GET, REMOTE_APP_DIGITAL_ZOOM_GET};

Request daemon_request(const Request &request)
{
    Request other = request;
    other.command = DAEMON_COMMANDS[request.command == DAEMON_COMMANDS[0] ? 1 : 0];
    other.argument.clear();
    return other;
}

Request remote_request(const Request &request)
{
    const bool is_first = remote_command(request.group, request.action) == REMOTE_COMMANDS[0];
    const RemoteCommand command = REMOTE_COMMANDS[is_first ? 1 : 0];
    Request other = request;
    other.category = CATEGORY_CAMERA;
    other.code = REMOTE_API_COMMAND;
    other.group = group_of(command);
    other.action = action_of(command);
    other.payload.clear();
    other.argument.assign(REMOTE_API_HEADER_SIZE, 0);
    other.argument[REMOTE_REQUEST_GROUP] = other.group;
    other.argument[REMOTE_REQUEST_ACTION] = other.action;
    other.valid = true;
    return other;
}

} // namespace

Request foreign_request(const Request &request)
{
    return request.link == Link::DAEMON ? daemon_request(request) : remote_request(request);
}

} // namespace zv::sim
