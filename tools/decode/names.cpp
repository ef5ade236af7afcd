#include "names.h"

#include "enumerator_name.h"
#include "remote_commands.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <zvctrl/camera_settings.h>
#include <zvctrl/zvTlv.h>
#include <zvctrl/zvcontrol_if.h>

namespace zv {

namespace {

// The numbers from 0 on; a number without a name has an empty one.
constexpr auto TAGS = enumerator_names<decltype(TLV_CMD), TLV_END + 1>();
constexpr auto GROUPS = enumerator_names<decltype(REMOTE_GROUP_APP), REMOTE_GROUP_CAPABILITY + 1>();
constexpr auto DAEMON_COMMANDS = enumerator_names<zvcontrol_command_t, ZVCONTROL_CMD_LAST>();

// One remote command's name. Few numbers have one, so that these are in a table without the others.
struct ActionName {
    uint16_t command;
    std::string_view name;
};

consteval auto action_names()
{
    constexpr auto NAMES = enumerator_names<RemoteCommand, remote_command(REMOTE_GROUP_CAPABILITY, UINT8_MAX) + 1>();
    constexpr size_t UNNAMED = std::count(NAMES.begin(), NAMES.end(), std::string_view());
    std::array<ActionName, NAMES.size() - UNNAMED> rows = {};
    auto row = rows.begin();
    for (size_t command = 0; command < NAMES.size(); ++command) {
        if (!NAMES[command].empty()) {
            *row++ = {static_cast<uint16_t>(command), NAMES[command]};
        }
    }
    return rows;
}

constexpr auto ACTIONS = action_names();

constexpr std::string_view TAG_PREFIX = "TLV_";
constexpr std::string_view GROUP_PREFIX = "REMOTE_GROUP_";

// The daemon's numbers up to here are settled, and those from the resynchronisation on. Somewhere between them they run
// one ahead of the enumeration.
constexpr uint32_t LAST_SETTLED = ZVCONTROL_GET_ALL_SETTINGS_STATUS;

template <size_t COUNT>
std::string_view name_at(const std::array<std::string_view, COUNT> &names, uint32_t number)
{
    return number < COUNT ? names[number] : std::string_view();
}

std::string_view without(std::string_view prefix, std::string_view name)
{
    return name.empty() ? name : name.substr(prefix.size());
}

} // namespace

std::string_view tag_name(uint8_t tag)
{
    return without(TAG_PREFIX, name_at(TAGS, tag));
}

std::string_view group_name(uint8_t group)
{
    return without(GROUP_PREFIX, name_at(GROUPS, group));
}

std::string_view action_name(uint8_t group, uint8_t action)
{
    const uint16_t command = remote_command(group, action);
    const auto row = std::find_if(ACTIONS.begin(), ACTIONS.end(),
                                  [command](const ActionName &known) { return known.command == command; });
    return row == ACTIONS.end() ? std::string_view() : row->name;
}

std::string_view setting_name(uint32_t id)
{
    constexpr uint32_t DEFAULT_MODEL = 0; // whose generation has every setting
    uint32_t count = 0;
    const settings_id_entry_t *rows = camera_settings_id_table(DEFAULT_MODEL, &count);
    return id < count && rows[id].end_marker == 0 ? rows[id].json_path : "";
}

std::string daemon_command_name(uint32_t command)
{
    std::string name(name_at(DAEMON_COMMANDS, command));
    if (command <= LAST_SETTLED || command >= ZVCONTROL_RESYNC_MESSAGE_QUEUE) {
        return name;
    }
    const std::string moved(command - 1 > LAST_SETTLED ? name_at(DAEMON_COMMANDS, command - 1) : std::string_view());
    return name + (name.empty() || moved.empty() ? "" : " or ") + moved;
}

} // namespace zv
