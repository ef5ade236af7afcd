#include "snapshot.h"

#include "member_json.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <sstream>
#include <zvctrl/camera_settings.h>

namespace zvservice {

namespace {

constexpr uint32_t STATUS_WLAN_SSID = 29;
constexpr uint32_t STATUS_AP_SSID = 30;
constexpr size_t SSID_SIZE = 33;

std::string_view ssid_at(const appc_system_all_status &status, size_t offset)
{
    const std::string_view field(reinterpret_cast<const char *>(status.bytes + offset), SSID_SIZE);
    return field.substr(0, std::min(field.find('\0'), SSID_SIZE));
}

// Of the value at the beginning of `rest`. In the two network names nothing is escaped, so that only the record says
// where they end.
size_t value_length(std::string_view rest, uint32_t id, const appc_system_all_status &status)
{
    constexpr size_t QUOTES = 2;
    if (!rest.empty() && rest.front() == '"' && (id == STATUS_WLAN_SSID || id == STATUS_AP_SSID)) {
        const size_t offset = id == STATUS_WLAN_SSID ? STATUS_WIRELESS_WLAN_SSID : STATUS_WIRELESS_AP_SSID;
        return std::min(ssid_at(status, offset).size() + QUOTES, rest.size());
    }
    return std::min(rest.find_first_of(",}"), rest.size());
}

// The members of a document, `"status":{"1":1,...}`.
std::vector<Member> split(std::string_view document, const appc_system_all_status &status)
{
    std::vector<Member> members;
    document.remove_prefix(std::min(document.find('{') + 1, document.size()));
    document.remove_prefix(std::min(document.find('"'), document.size())); // a line feed
    while (!document.empty() && document.front() == '"') {
        Member member = {};
        const char *end = std::from_chars(document.data() + 1, document.data() + document.size(), member.id).ptr;
        document.remove_prefix(std::min(static_cast<size_t>(end - document.data()) + strlen("\":"), document.size()));
        member.text = document.substr(0, value_length(document, member.id, status));
        members.push_back(member);
        document.remove_prefix(std::min(member.text.size() + 1, document.size()));
    }
    return members;
}

template <class Record>
Record part_of(const all_status_settings_t &record, size_t offset)
{
    Record part;
    memcpy(part.bytes, record.bytes + offset, sizeof part.bytes);
    return part;
}

std::string write_status(const appc_system_all_status &status, uint32_t model)
{
    std::stringstream stream;
    camera_status_serialize_status_to_json(stream, &status, model);
    return stream.str();
}

std::string write_settings(const State &state)
{
    std::stringstream stream;
    camera_settings_serialize_to_json(stream, &state.settings(), &state.status(), &state.system(), state.model());
    return stream.str();
}

// The option ids are those of the document: to read them once more would cost a camera without options one more line in
// the log for each.
CameraState values_of(const State &state)
{
    CameraState values;
    update_camera_status(&state.status(), state.model(), values.statuses);
    for (const Member &member : state.settings_members()) {
        std::from_chars(member.text.data(), member.text.data() + member.text.size(), values.settings.at(member.id));
    }
    return values;
}

std::string changes(const std::vector<Member> &before, const std::vector<Member> &after)
{
    Json members;
    for (const ChangedMember &member : changed_members(before, after)) {
        write_member(members, member.id, member.now);
    }
    return members.text();
}

} // namespace

State::State(const all_status_settings_t &record, uint32_t model)
    : m_model(model), m_record(record), m_status(part_of<appc_system_all_status>(record, ALL_STATUS_OFFSET)),
      m_settings(part_of<appc_setup_all_settings>(record, ALL_SETTINGS_OFFSET)),
      m_system(part_of<zvcontrol_system_settings>(record, ALL_SYSTEM_SETTINGS_OFFSET)),
      m_status_document(write_status(m_status, model)), m_settings_document(write_settings(*this)),
      m_status_members(split(m_status_document, m_status)), m_settings_members(split(m_settings_document, m_status)),
      m_values(values_of(*this))
{
}

uint32_t State::option(uint32_t setting) const
{
    return setting < m_values.settings.size() ? m_values.settings[setting] : 0;
}

std::vector<ChangedMember> changed_members(const std::vector<Member> &before, const std::vector<Member> &after)
{
    std::vector<ChangedMember> changed;
    auto old = before.begin();
    for (const Member &member : after) {
        while (old != before.end() && old->id < member.id) {
            ++old;
        }
        const std::string_view text = old != before.end() && old->id == member.id ? old->text : std::string_view();
        if (text != member.text) {
            changed.push_back({member.id, text, member.text});
        }
    }
    return changed;
}

std::string Change::json() const
{
    return "{\"revision\":" + std::to_string(revision) + ",\"status\":{" + status + "},\"settings\":{" + settings +
           "}}";
}

Change difference(const State *before, const State &after)
{
    static const std::vector<Member> NOTHING;
    Change change;
    change.status = changes(before != nullptr ? before->status_members() : NOTHING, after.status_members());
    change.settings = changes(before != nullptr ? before->settings_members() : NOTHING, after.settings_members());
    return change;
}

const char *link_state_name(LinkState link)
{
    constexpr const char *NAMES[] = {"down", "stale", "up"};
    return NAMES[static_cast<size_t>(link)];
}

std::chrono::milliseconds Snapshot::age() const
{
    if (state == nullptr) {
        return std::chrono::milliseconds(0);
    }
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - taken);
}

} // namespace zvservice
