#include "card.h"

#include "field.h"

#include <zvctrl/camera_records.h>

#include <algorithm>
#include <cstdio>

namespace zv::sim {

namespace {

constexpr char FOLDER[] = "100SIMUL";
constexpr char ROOT[] = "DCIM";
constexpr uint64_t CARD_KB = 62'500'000; // sold as 64 GB
constexpr uint64_t OTHER_KB = 250'000;   // what is on it besides media
constexpr uint8_t CARD_OK = 0;

// As the card names it, or empty for a path outside the media folder.
std::string name_of(std::string path)
{
    std::replace(path.begin(), path.end(), '/', '\\');
    const std::string root = std::string(ROOT) + '\\';
    return path.compare(0, root.size(), root) == 0 ? path.substr(root.size()) : std::string();
}

} // namespace

Card::Card(State &state) : m_state(state)
{
    add_file(true, 45 * VIDEO_KB_PER_SECOND, 0);
    add_photo();
    add_photo();
    const uint32_t burst = new_group();
    for (int i = 0; i < 5; ++i) {
        add_photo(burst);
    }
    add_file(true, 12 * VIDEO_KB_PER_SECOND, 0);
}

void Card::add_file(bool video, uint64_t size_kb, uint32_t group)
{
    char name[32];
    m_last_number = (m_last_number + 1) % 100000;
    snprintf(name, sizeof name, "%s\\SIM%05u.%s", FOLDER, m_last_number, video ? "MP4" : "JPG");
    m_files.push_back({.name = name, .size_kb = size_kb, .video = video, .group = group, .tags = {}});
    publish_counts();
}

bool Card::record_second()
{
    if (free_kb() < VIDEO_KB_PER_SECOND) {
        return false;
    }
    m_recording_kb += VIDEO_KB_PER_SECOND;
    publish_counts();
    return true;
}

void Card::end_recording()
{
    const uint64_t size_kb = m_recording_kb;
    m_recording_kb = 0;
    add_file(true, size_kb, 0);
}

void Card::add_photo(uint32_t group)
{
    add_file(false, PHOTO_KB, group);
}

bool Card::remove_last()
{
    if (m_files.empty()) {
        return false;
    }
    return remove_group(std::string(ROOT) + '\\' + m_files.back().name);
}

void Card::remove_all()
{
    m_files.clear();
    publish_counts();
}

bool Card::remove_file(const std::string &path)
{
    const auto file = find(path);
    if (file == m_files.end()) {
        return false;
    }
    m_files.erase(file);
    publish_counts();
    return true;
}

bool Card::remove_group(const std::string &path)
{
    const auto file = find(path);
    if (file == m_files.end()) {
        return false;
    }
    if (const uint32_t group = file->group; group == 0) {
        m_files.erase(file);
    } else {
        std::erase_if(m_files, [&](const MediaFile &other) { return other.group == group; });
    }
    publish_counts();
    return true;
}

bool Card::tag(const std::string &path, uint32_t offset_ms, bool enable)
{
    const auto file = find(path);
    if (file == m_files.end()) {
        return false;
    }
    std::erase(file->tags, offset_ms);
    if (enable) {
        file->tags.push_back(offset_ms);
        m_state.set(status(STATUS_STORAGE_LAST_KEYMARK_TIME_MSEC, 4), offset_ms);
    }
    publish_counts();
    return true;
}

std::string Card::listing() const
{
    std::string lines;
    for (const MediaFile &file : m_files) {
        lines += file.name + (file.video ? " video " : " photo ") + std::to_string(file.size_kb) + " KB";
        if (file.group != 0) {
            lines += " group " + std::to_string(file.group);
        }
        for (const uint32_t tag : file.tags) {
            lines += " tag " + std::to_string(tag) + " ms";
        }
        lines += '\n';
    }
    return lines;
}

Card::Files::iterator Card::find(const std::string &path)
{
    const std::string name = name_of(path);
    return std::find_if(m_files.begin(), m_files.end(), [&](const MediaFile &file) { return file.name == name; });
}

uint64_t Card::free_kb() const
{
    uint64_t used = OTHER_KB + m_recording_kb;
    for (const MediaFile &file : m_files) {
        used += file.size_kb;
    }
    return used < CARD_KB ? CARD_KB - used : 0;
}

void Card::publish_counts()
{
    const uint64_t free = free_kb();
    uint64_t videos = 0;
    uint64_t tags = 0;
    for (const MediaFile &file : m_files) {
        videos += file.video;
        tags += file.tags.size();
    }
    m_state.set(status(STATUS_STORAGE_SD_STATUS), CARD_OK);
    m_state.set(status(STATUS_STORAGE_REMAINING_PHOTOS, 4), free / PHOTO_KB);
    m_state.set(status(STATUS_STORAGE_REMAINING_VIDEO_TIME, 4), free / VIDEO_KB_PER_SECOND);
    m_state.set(status(STATUS_STORAGE_REMAINING_TIMELAPSE_TIME, 4), free / VIDEO_KB_PER_SECOND);
    m_state.set(status(STATUS_STORAGE_NUM_TOTAL_PHOTOS, 4), m_files.size() - videos);
    m_state.set(status(STATUS_STORAGE_NUM_TOTAL_VIDEOS, 4), videos);
    m_state.set(status(STATUS_STORAGE_REMAINING_SPACE, 8), free);
    m_state.set(status(STATUS_STORAGE_NUM_KEYMARKS), std::min<uint64_t>(tags, UINT8_MAX));
    m_state.set(status(STATUS_STORAGE_TOTAL_SD_SPACE_KB, 8), CARD_KB);
}

} // namespace zv::sim
