// The media on the camera's card.
#pragma once

#include "state.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zv::sim {

struct MediaFile {
    std::string name; // directory, backslash, file, such as 100SIMUL\SIM00001.MP4
    uint64_t size_kb = 0;
    bool video = false;
    uint32_t group = 0;         // photos of one burst or time lapse share a number; 0: on its own
    std::vector<uint32_t> tags; // milliseconds from the start
};

// What is on the card, and the counts in the status record that follow it.
class Card {
  public:
    explicit Card(State &state);

    // A second of a recording: takes its room. False when the card is full.
    bool record_second();
    // The recording becomes a file.
    void end_recording();
    // A photo of `group`, or on its own with 0.
    void add_photo(uint32_t group = 0);
    uint32_t new_group() { return ++m_last_group; }

    bool full() const { return free_kb() < PHOTO_KB; }

    // The last file, or all photos of its group. False on an empty card.
    bool remove_last();
    void remove_all();
    // False when there is no such file. Paths begin with the media folder and may have either slash.
    bool remove_file(const std::string &path);
    // The file and all of its group.
    bool remove_group(const std::string &path);
    // Adds the tag, or takes it off again.
    bool tag(const std::string &path, uint32_t offset_ms, bool enable);

    const std::vector<MediaFile> &files() const { return m_files; }
    // One line per file: name, kind, size, group, tags.
    std::string listing() const;

    static constexpr uint64_t PHOTO_KB = 6000;
    static constexpr uint64_t VIDEO_KB_PER_SECOND = 7500;

  private:
    using Files = std::vector<MediaFile>;

    uint64_t free_kb() const;
    Files::iterator find(const std::string &path);
    void add_file(bool video, uint64_t size_kb, uint32_t group);
    void publish_counts(); // in the status record

    State &m_state;
    Files m_files;
    uint64_t m_recording_kb = 0;
    uint32_t m_last_number = 0;
    uint32_t m_last_group = 0;
};

} // namespace zv::sim
