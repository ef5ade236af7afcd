// The camera's whole state at one moment, as documents and in words.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>
#include <zvctrl/camera_status.h>

namespace zvcam {

struct State {
    explicit State(const all_status_settings_t &record);

    uint32_t flat_mode() const { return settings.bytes[SETTINGS_SETUP_CURRENT_FLAT_MODE]; }

    all_status_settings_t all;
    appc_system_all_status status; // the parts of `all`, on their own
    appc_setup_all_settings settings;
    zvcontrol_system_settings system;
};

// One member of a document: an id and its value, a text without its quotes.
struct Member {
    uint32_t id;
    std::string value;
};

// Status and settings as services serve them, or what changed in them, for a command's help.
inline constexpr char STATE_AS_JSON[] = R"({"status":{ID:VALUE,...},"settings":{ID:OPTION_ID,...}})";

// What services serve, without braces around it.
std::string status_document(const State &state);
std::string settings_document(const State &state);

// The same, member by member.
std::vector<Member> status_members(const State &state);
std::vector<Member> settings_members(const State &state);

// The name that a status id goes by, such as "system_encoding_active"; "?" for an id that has none.
const char *status_name(uint32_t id);

// A line for each member: id, name, value.
void print_status(const State &state);

// What changed since the last look. The first look finds everything.
class Changes {
  public:
    Changes();

    // Takes the new state in and keeps what differs from the one before.
    void look(const State &state);

    bool any() const { return !m_status.changes.empty() || !m_settings.changes.empty(); }

    // As JSON, {"status":{...},"settings":{...}} with the changed members only; or in words, a line for each change
    // with the old value and the new one, after the first look with the value alone.
    void show(bool json) const;

  private:
    void show_words() const;

    struct Change {
        uint32_t id;
        std::optional<std::string> before;
        std::string now;
    };

    // Status or settings.
    struct Half {
        void take(const std::string &members, const State &state);

        std::string fragment; // as the library wrote it
        std::vector<Change> changes;
        std::map<uint32_t, std::string> known;
    };

    std::vector<std::string> m_cache; // the library's, for the status
    std::optional<State> m_previous;  // for the settings
    Half m_status;
    Half m_settings;
};

} // namespace zvcam
