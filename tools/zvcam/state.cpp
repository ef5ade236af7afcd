#include "state.h"

#include "links.h"
#include "options.h"
#include "output.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string_view>
#include <zvctrl/camera_settings.h>
#include <zvctrl/camera_status_names.h>

namespace zvcam {

namespace {

constexpr size_t SSID_SIZE = 33;
constexpr uint32_t STATUS_WLAN_SSID = 29;
constexpr uint32_t STATUS_AP_SSID = 30;

std::string_view text_at(const State &state, size_t offset)
{
    std::string_view field(reinterpret_cast<const char *>(state.status.bytes + offset), SSID_SIZE);
    return field.substr(0, std::min(field.find('\0'), SSID_SIZE));
}

// The two network names are not escaped, so that only the record says where they end.
size_t value_length(std::string_view rest, uint32_t id, const State &state)
{
    constexpr size_t QUOTES = 2;
    if (rest.starts_with('"') && id == STATUS_WLAN_SSID) {
        return text_at(state, STATUS_WIRELESS_WLAN_SSID).size() + QUOTES;
    }
    if (rest.starts_with('"') && id == STATUS_AP_SSID) {
        return text_at(state, STATUS_WIRELESS_AP_SSID).size() + QUOTES;
    }
    return std::min(rest.find(','), rest.size());
}

// "8":1,"30":"home" as ids and values.
std::vector<Member> split(std::string_view text, const State &state)
{
    std::vector<Member> members;
    while (text.starts_with('"')) {
        Member member = {};
        const char *end = std::from_chars(text.data() + 1, text.data() + text.size(), member.id).ptr;
        text.remove_prefix(std::min(static_cast<size_t>(end - text.data()) + strlen("\":"), text.size()));
        const std::string_view value = text.substr(0, value_length(text, member.id, state));
        member.value = value.starts_with('"') ? value.substr(1, value.size() - 2) : value;
        members.push_back(member);
        text.remove_prefix(std::min(value.size() + 1, text.size()));
    }
    return members;
}

// The members between a document's braces.
std::string_view inside(std::string_view document)
{
    const size_t start = std::min(document.find('{') + 1, document.size());
    std::string_view members = document.substr(start, document.size() - start - 1);
    members.remove_prefix(std::min(members.find('"'), members.size())); // a line feed
    return members;
}

} // namespace

State::State(const all_status_settings_t &record) : all(record)
{
    memcpy(status.bytes, all.bytes + ALL_STATUS_OFFSET, sizeof status.bytes);
    memcpy(settings.bytes, all.bytes + ALL_SETTINGS_OFFSET, sizeof settings.bytes);
    memcpy(system.bytes, all.bytes + ALL_SYSTEM_SETTINGS_OFFSET, sizeof system.bytes);
}

std::string status_document(const State &state)
{
    std::stringstream stream;
    camera_status_serialize_status_to_json(stream, &state.status, camera_model());
    return stream.str();
}

std::string settings_document(const State &state)
{
    std::stringstream stream;
    camera_settings_serialize_to_json(stream, &state.settings, &state.status, &state.system, camera_model());
    return stream.str();
}

std::vector<Member> status_members(const State &state)
{
    return split(inside(status_document(state)), state);
}

std::vector<Member> settings_members(const State &state)
{
    return split(inside(settings_document(state)), state);
}

const char *status_name(uint32_t id)
{
    const char *name = camera_status_name(id);
    return name != nullptr ? name : "?";
}

void print_status(const State &state)
{
    for (const Member &member : status_members(state)) {
        print("%3u %-42s %s\n", member.id, status_name(member.id), printable(member.value).c_str());
    }
}

Changes::Changes()
{
    camera_status_init_bossCache(camera_model(), m_cache);
}

void Changes::Half::take(const std::string &members, const State &state)
{
    fragment = members;
    changes.clear();
    for (const Member &member : split(members, state)) {
        const auto before = known.find(member.id);
        changes.push_back({member.id, std::nullopt, member.value});
        if (before != known.end()) {
            changes.back().before = before->second;
        }
        known[member.id] = member.value;
    }
}

void Changes::look(const State &state)
{
    std::stringstream status;
    camera_status_serialize_status_changes_to_json(status, &state.status, nullptr, camera_model(), m_cache);
    m_status.take(status.str(), state);

    if (m_previous) {
        std::stringstream settings;
        camera_status_serialize_settings_changes_to_json(settings, &state.all, &m_previous->all, camera_model());
        m_settings.take(settings.str(), state);
    } else {
        m_settings.take(std::string(inside(settings_document(state))), state);
    }
    m_previous = state;
}

void Changes::show(bool json) const
{
    if (json) {
        print("{\"status\":{%s},\"settings\":{%s}}\n", m_status.fragment.c_str(), m_settings.fragment.c_str());
    } else {
        show_words();
    }
}

void Changes::show_words() const
{
    for (const Change &change : m_status.changes) {
        print("status  %3u %-42s ", change.id, status_name(change.id));
        if (change.before) {
            print("%s -> ", printable(*change.before).c_str());
        }
        print("%s\n", printable(change.now).c_str());
    }
    for (const Change &change : m_settings.changes) {
        print("setting %3u %-42s ", change.id, setting_name(change.id).c_str());
        if (change.before) {
            print("%s -> ", option_text(change.id, *change.before).c_str());
        }
        print("%s\n", option_text(change.id, change.now).c_str());
    }
}

} // namespace zvcam
