#include "daemon_command_names.h"

#include "enumerator_name.h"
#include "zvcontrol_if.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace {

// The catalogue has a row for each enumerator, and none for the number that the enumeration leaves free.
constexpr size_t ROWS = ZVCONTROL_CMD_LAST;
constexpr size_t FREE_NUMBER = ZVCONTROL_GET_BUSY_STATUS + 1;

constexpr zvcontrol_command_t command_of_row(size_t row)
{
    return static_cast<zvcontrol_command_t>(row < FREE_NUMBER ? row : row + 1);
}

using Name = std::array<char, 52>;

template <size_t... ROW>
consteval auto names_of_rows(std::index_sequence<ROW...>)
{
    std::array<Name, sizeof...(ROW)> names = {};
    (std::ranges::copy(zv::enumerator_name<command_of_row(ROW)>(), names[ROW].begin()), ...);
    return names;
}

// Text in place rather than pointers, so that loading the library has nothing to relocate.
constexpr auto zvcontrol_commands = names_of_rows(std::make_index_sequence<ROWS>());
static_assert(std::ranges::all_of(zvcontrol_commands,
                                  [](const Name &name) { return name.front() != '\0' && name.back() == '\0'; }),
              "every row has a name, and its end");

} // namespace

const char *zv::command_name(uint32_t command)
{
    return command < zvcontrol_commands.size() ? zvcontrol_commands[command].data() : "UNKNOWN";
}
