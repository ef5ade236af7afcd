// The settings and options that a camera has, and how people name them.
//
// A setting is named by its number, its path ("modes/video/settings/fps"), its name ("video/fps") or, where one setting
// alone has it, the last part of that ("fps"). An option is named by its key ("24"), its id or its name; keys go before
// ids, ids before names. Capitals do not matter. A name that several have is no name.
#pragma once

#include "result.h"

#include <cstdint>
#include <string>
#include <vector>
#include <zvctrl/camera_settings.h>

namespace zvservice {

// Of one model. Cheap to make and to copy; what it hands out by reference or pointer lives as long as the process. Any
// thread may call. The functions that take a number of a setting take one that has() knows, but for has() itself.
class ZV_API Catalogue {
  public:
    explicit Catalogue(uint32_t model) : m_model(model) {}

    uint32_t model() const { return m_model; }

    // ---- Settings

    bool has(uint32_t setting) const;

    // All numbers, ascending.
    std::vector<uint32_t> settings() const;

    const settings_id_entry_t &row(uint32_t setting) const;

    // "video/fps" for "modes/video/settings/fps"; a bare name as it is.
    std::string name(uint32_t setting) const;

    // The settings that a person may mean by this: none, one, or several that have the name.
    std::vector<uint32_t> settings_named(const std::string &text) const;

    // The setting that a person names. Otherwise the sentence says what the camera has in its place: the candidates of
    // a name that several have, or names that are nearly the same.
    Result find_setting(const std::string &text, uint32_t &setting) const;

    // ---- Options

    // In menu order. Empty for a setting that takes numbers as they are, as all do of a camera without a catalogue.
    const std::vector<option_t *> &options(uint32_t setting) const;

    // Null for an option that is not listed.
    const option_t *option(uint32_t setting, uint32_t id) const;
    const option_t *option_with_value(uint32_t setting, uint32_t value) const;

    // Whether the setting takes this id, listed or not.
    bool takes(uint32_t setting, uint32_t id) const;

    // The id of the option that a person names, or an id that the setting takes without listing it. The scheduled
    // capture (168) takes a time of day, "7:30", or "off", and keeps the clock format of `present`, its option now.
    Result find_option(uint32_t setting, const std::string &text, uint32_t present, uint32_t &id) const;

    // An option as a person calls it: its name, with its key in brackets where another option has the same name; the
    // scheduled capture as "07:30" or "off"; what is not listed as its number.
    std::string option_text(uint32_t setting, uint32_t id) const;

    // The option that an unknown value reads as; false for a setting that takes every value.
    bool default_option(uint32_t setting, uint32_t &id) const;

    // ---- Words

    // What a rule's condition looks at: "setting 2 video/resolution" or "status 89 app_current_mode".
    std::string condition_name(const filter_info_t &condition) const;

    // "rule 89, because setting 2 video/resolution is 4K"
    std::string reason(const Removal &removal) const;

  private:
    uint32_t m_model;
};

// The name that a status goes by, such as "system_encoding_active"; "?" for a number without one.
ZV_API const char *status_name(uint32_t status);

// Of `words` those that a person who typed `word` may have meant, best first, three at most: few letters differ, or
// they contain the word. Capitals do not matter.
ZV_API std::vector<std::string> near_misses(const std::string &word, const std::vector<std::string> &words);

} // namespace zvservice
