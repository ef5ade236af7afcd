// The camera's whole state at one moment: the three records, the two documents made of them, and what differs between
// two moments.
#pragma once

#include "availability.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>
#include <zvctrl/camera_status.h>

namespace zvservice {

// A member of a document: its number, and its value as the document has it, a text with its quotes.
struct Member {
    uint32_t id;
    std::string_view text; // lives as long as the State
};

// What the camera published at one moment. Immutable: any thread may read it at any time.
class ZV_API State {
  public:
    // Asks the system information service for the values that the record does not hold, and may take the time of a
    // file's look-up for each. Lets std::bad_alloc pass.
    State(const all_status_settings_t &record, uint32_t model);
    State(const State &) = delete;
    State &operator=(const State &) = delete;

    uint32_t model() const { return m_model; }

    const all_status_settings_t &record() const { return m_record; }
    const appc_system_all_status &status() const { return m_status; }
    const appc_setup_all_settings &settings() const { return m_settings; }
    const zvcontrol_system_settings &system() const { return m_system; }

    // The library's documents, `"status":{...}` and `"settings":{...}`, without braces around them. The names of
    // networks (29 and 30) are as somebody typed them: where they may hold anything, documents.h has valid JSON.
    const std::string &status_document() const { return m_status_document; }
    const std::string &settings_document() const { return m_settings_document; }

    // Their members, ascending.
    const std::vector<Member> &status_members() const { return m_status_members; }
    const std::vector<Member> &settings_members() const { return m_settings_members; }

    // The option ids and status values by number, as the filter rules look at them.
    const CameraState &values() const { return m_values; }

    // The present option of a setting, 0 for a number without one.
    uint32_t option(uint32_t setting) const;

  private:
    uint32_t m_model;
    all_status_settings_t m_record;
    appc_system_all_status m_status;
    appc_setup_all_settings m_settings;
    zvcontrol_system_settings m_system;
    std::string m_status_document;
    std::string m_settings_document;
    std::vector<Member> m_status_members;
    std::vector<Member> m_settings_members;
    CameraState m_values;
};

// A member whose text is another one than before.
struct ChangedMember {
    uint32_t id;
    std::string_view before; // empty for a member that was not there
    std::string_view now;
};

// Those of `after`, in its order.
ZV_API std::vector<ChangedMember> changed_members(const std::vector<Member> &before, const std::vector<Member> &after);

// What differs between two moments, as JSON members with commas between them: `"8":1,"30":"home"`.
struct Change {
    uint64_t revision = 0; // of the later moment
    std::string status;
    std::string settings;

    bool empty() const { return status.empty() && settings.empty(); }

    // {"revision":18,"status":{"8":1},"settings":{"3":8}}
    ZV_API std::string json() const;
};

// What `after` publishes that `before` did not, at revision 0. Without a `before` everything.
ZV_API Change difference(const State *before, const State &after);

enum class LinkState : uint8_t {
    DOWN,  // the daemon has no queue, or never answered since it came
    STALE, // the daemon does not answer, or not with a state: the values are the last known ones
    UP,    // the last poll was answered
};

// "down", "stale", "up"
ZV_API const char *link_state_name(LinkState link);

// What a Camera knows at a moment.
struct Snapshot {
    LinkState link = LinkState::DOWN;

    // The camera said at the last poll that it is switched off, in place of a state.
    bool switched_off = false;

    // Null until the first state came: there is no camera of all zeroes.
    std::shared_ptr<const State> state;

    // Grows by one with every change of what the documents hold; 0 before the first state.
    uint64_t revision = 0;

    // A random text of the Camera's life, without a "-": the pair EPOCH-REVISION never means two things.
    std::shared_ptr<const std::string> epoch;

    // When the camera told this state.
    std::chrono::steady_clock::time_point taken = {};

    // How long ago that was; 0 before the first state.
    ZV_API std::chrono::milliseconds age() const;
};

} // namespace zvservice
