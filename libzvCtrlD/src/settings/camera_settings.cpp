#include "camera_settings.h"

#include "append_whole.h"
#include "camera_settings_options.h"
#include "camera_settings_rules.h"
#include "camera_settings_tables.h"
#include "camera_settings_values.h"
#include "flat_modes.h"
#include "json_writer.h"

#include <atomic>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <map>
#include <new>
#include <span>
#include <string_view>
#include <vector>

namespace {

using zv::is_sable_knoll;

using ModeGroups = std::map<uint32_t, const char *>;

ModeGroups make_mode_groups()
{
    return {{zv::PUBLISHED_PRESET_GROUP + zv::PRESETS_VIDEO, "VIDEO"},
            {zv::PUBLISHED_PRESET_GROUP + zv::PRESETS_PHOTO, "PHOTO"},
            {zv::PUBLISHED_PRESET_GROUP + zv::PRESETS_TIME_LAPSE, "TIME LAPSE"}};
}

// A working copy is empty at first; the first call with a model that has options fills it for good. What is looked up
// in constant tables needs to know no more of it than that.
class WorkingCopy {
  public:
    // Whether the copy is filled, with this call or before it.
    bool fill(uint32_t model)
    {
        if (m_filled.load(std::memory_order_relaxed)) {
            return true;
        }
        if (is_sable_knoll(model)) {
            m_filled.store(true, std::memory_order_relaxed);
            return true;
        }
        return false;
    }

  private:
    std::atomic<bool> m_filled = false;
};

WorkingCopy cameraOptionIds;
WorkingCopy cameraOptionValues; // and the default options, which the same calls fill
WorkingCopy cameraUIModeGroups;
WorkingCopy cameraOptions;
WorkingCopy cameraFilters;

// What callers are given of a copy: one object, which is made when a filled copy is asked for. When that runs out of
// memory, nothing is left, and the next call tries again. The object is never destroyed, so that a caller may still
// read it while the process ends.
template <auto MAKE>
const auto &made_by(bool filled)
{
    using Object = decltype(MAKE());
    alignas(Object) static std::byte room[sizeof(Object)];
    static Object &object = *new (room) Object;
    if (filled) {
        [[maybe_unused]] static const bool made = (object = MAKE(), true);
    }
    return object;
}

enum class BypassSet { EMPTY, DEFAULT, SABLE_KNOLL };
std::atomic<BypassSet> cameraBypassPresetEditStart = BypassSet::EMPTY;

constexpr const char *sable_knoll_open_zelvar_version = "2.0";

// Two options of the shortcuts that share a value; the flat mode decides which one is meant.
struct TwinOptions {
    uint32_t value;
    uint32_t id;
    uint32_t id_in_modes;
    zv::FlatModeSet modes;
};

consteval TwinOptions twins(std::string_view key, std::string_view key_in_modes, zv::FlatModeSet modes)
{
    const zv::Option &option = zv::option_with_key(zv::ONSCREEN_SHORTCUTS, key);
    return {option.value, option.id, zv::option_with_key(zv::ONSCREEN_SHORTCUTS, key_in_modes).id, modes};
}

constexpr TwinOptions TWIN_OPTIONS[] = {
    twins("INTERVAL", "LOOPING_INTERVAL", {zv::FLAT_MODE_LOOPING}),
    twins("SHUTTER", "VIDEO_SHUTTER", {zv::FLAT_MODE_VIDEO, zv::FLAT_MODE_SINGLE_PHOTO}),
};

bool is_shortcut(uint32_t setting)
{
    return zv::info_of(setting).read.way == zv::Read::SHORTCUT;
}

uint32_t shortcut_id(uint32_t value, uint32_t flat_mode, uint32_t id)
{
    for (const TwinOptions &options : TWIN_OPTIONS) {
        if (value == options.value) {
            return options.modes.contains(flat_mode) ? options.id_in_modes : options.id;
        }
    }
    return id;
}

// The ways of reading that are not a plain look-up.
[[gnu::noinline]] uint32_t other_option_id(bool filled, uint32_t model, uint32_t setting, uint32_t value,
                                           uint32_t flat_mode)
{
    const bool known = filled && setting < zv::VALUE_ROWS.size();
    const zv::ValueRow row = known ? zv::VALUE_ROWS[setting] : zv::ValueRow{};
    switch (row.reading) {
    case zv::Reading::NONE:
        ZV_LOG(ZV_LOG_ERROR, "Could not find option value:%u for setting:%u for camera:%d", value, setting,
               static_cast<int>(model));
        return is_shortcut(setting) ? shortcut_id(value, flat_mode, value) : value;
    case zv::Reading::RATE:
        return zv::bit_rate_id(value);
    case zv::Reading::TABLE_OR_ITSELF:
        return value < row.end ? zv::table_id(row, value) : value;
    case zv::Reading::SHORTCUT:
        return shortcut_id(value, flat_mode, zv::table_id(row, value));
    case zv::Reading::TABLE:
        break;
    }
    return zv::table_id(row, value);
}

inline uint32_t option_id_by_value(uint32_t model, uint32_t setting, uint32_t value, uint32_t flat_mode)
{
    const bool filled = cameraOptionValues.fill(model);
    if (filled && setting < zv::VALUE_ROWS.size()) {
        const zv::ValueRow &row = zv::VALUE_ROWS[setting];
        if (row.reading == zv::Reading::TABLE) {
            return zv::table_id(row, value);
        }
    }
    return other_option_id(filled, model, setting, value, flat_mode);
}

// ---- Documents ----

// Reads the option ids of a record's settings. Most are a byte and a look-up, for which no function is called.
class OptionReader {
  public:
    explicit OptionReader(const zv::SettingsSource &source)
        : m_source(source), m_members(zv::setting_members(source.model))
    {
        const uint32_t block = zv::block_read_in(source.settings[SETTINGS_SETUP_CURRENT_FLAT_MODE]);
        if (!cameraOptionValues.fill(source.model) || source.status == nullptr) {
            m_first_other = zv::Readout::BYTE; // there is something to say about each setting
        } else if (block == zv::NO_BLOCK) {
            m_first_other = zv::Readout::BYTE_OF_BLOCK;
        } else {
            m_block = block;
        }
    }

    std::span<const zv::SettingMember> members() const { return m_members.rows; }

    // Whether no setting is logged while it is read: not for its flat mode, and not for having no options.
    bool is_silent() const { return m_first_other == zv::Readout::OTHER && is_sable_knoll(m_source.model); }

    uint32_t id(const zv::SettingMember &member) const
    {
        return member.readout < m_first_other ? m_members.byte_id(member, m_source.settings[member.offsets[m_block]])
                                              : other_id(m_source, member.id);
    }

  private:
    // Takes a copy, so that the reader's own members stay in registers.
    [[gnu::noinline]] static uint32_t other_id(zv::SettingsSource source, uint8_t setting)
    {
        const auto value = static_cast<uint32_t>(zv::field_value(zv::field_of(setting), source));
        return option_id_by_value(source.model, setting, value, source.settings[SETTINGS_SETUP_CURRENT_FLAT_MODE]);
    }

    zv::SettingsSource m_source;
    zv::SettingMembers m_members;
    uint32_t m_block = zv::BLOCK_VIDEO;
    zv::Readout m_first_other = zv::Readout::OTHER; // this and the readouts above it take other_id
};

zv::SettingsSource source_of(const all_status_settings_t *record, uint32_t model)
{
    return {record->bytes + ALL_SETTINGS_OFFSET, record->bytes + ALL_STATUS_OFFSET, model};
}

constexpr size_t DOCUMENT_SIZE = zv::JSON_OPENING_SIZE + zv::SETTINGS_END_ROW * zv::JSON_MEMBER_SIZE;

} // namespace

const char *getOpenZelvarVersion(uint32_t model)
{
    return is_sable_knoll(model) ? sable_knoll_open_zelvar_version : " ";
}

const ModeGroups &getUIModeGroups(uint32_t model)
{
    return made_by<make_mode_groups>(cameraUIModeGroups.fill(model));
}

const std::map<uint32_t, std::vector<option_t *>> &getCameraOptions(uint32_t model)
{
    return made_by<zv::make_option_catalogue>(cameraOptions.fill(model)).lists;
}

const std::map<uint32_t, std::vector<filter_info_t *>> &getCameraFilters(uint32_t model)
{
    return made_by<zv::make_rule_catalogue>(cameraFilters.fill(model)).rules;
}

const zv::OptionValues &getOptionIds(uint32_t model)
{
    return made_by<zv::make_option_values>(cameraOptionIds.fill(model));
}

bool bypassPresetEditStart(uint32_t setting, uint32_t model)
{
    auto set = BypassSet::EMPTY;
    const auto wanted = is_sable_knoll(model) ? BypassSet::SABLE_KNOLL : BypassSet::DEFAULT;
    if (cameraBypassPresetEditStart.compare_exchange_strong(set, wanted)) {
        set = wanted;
    }
    const zv::SettingInfo &info = zv::info_of(setting);
    return set == BypassSet::SABLE_KNOLL ? info.bypasses_sable_knoll : info.bypasses;
}

bool skipOptionCheck(uint32_t setting, uint32_t value)
{
    return zv::is_good_unlisted(zv::info_of(setting).unlisted, value);
}

bool usesVideoSettings(uint32_t flat_mode)
{
    return zv::VIDEO_MODES.contains(flat_mode);
}

bool usesPhotoSettings(uint32_t flat_mode)
{
    return zv::PHOTO_MODES.contains(flat_mode);
}

bool usesMultiShotSettings(uint32_t flat_mode)
{
    return zv::MULTI_SHOT_MODES.contains(flat_mode);
}

bool optionIdExists(uint32_t model, uint32_t setting, uint32_t id)
{
    if (skipOptionCheck(setting, id)) {
        return true;
    }
    return cameraOptionIds.fill(model) && zv::find_option(setting, id) != nullptr;
}

uint32_t getOptionIdByValue(uint32_t model, uint32_t setting, uint32_t value, uint32_t flat_mode)
{
    return option_id_by_value(model, setting, value, flat_mode);
}

uint32_t getOptionValueById(uint32_t model, uint32_t setting, uint32_t id)
{
    const bool filled = cameraOptionIds.fill(model);
    for (const TwinOptions &twin : TWIN_OPTIONS) {
        if (is_shortcut(setting) && id == twin.id_in_modes) {
            return twin.value;
        }
    }
    const zv::Option *option = filled ? zv::find_option(setting, id) : nullptr;
    return option != nullptr ? option->value : id;
}

int32_t camera_settings_serialize_to_json(std::stringstream &stream, const appc_setup_all_settings *settings,
                                          const appc_system_all_status *status, const zvcontrol_system_settings *,
                                          uint32_t model)
{
    if (settings == nullptr) {
        fprintf(stderr, "%s(%d): NULL settings\n", __func__, __LINE__);
        return -1;
    }
    const OptionReader options({settings->bytes, status != nullptr ? status->bytes : nullptr, model});
    char buffer[DOCUMENT_SIZE];
    zv::JsonWriter json(buffer);
    for (const zv::SettingMember &member : options.members()) {
        const uint32_t id = options.id(member);
        json.key(member.id);
        json.number(id);
    }
    return zv::append_document(stream, json.document("\"settings\":{"), ZV_OK);
}

int32_t camera_status_serialize_settings_changes_to_json(std::stringstream &stream,
                                                         const all_status_settings_t *current,
                                                         const all_status_settings_t *previous, uint32_t model)
{
    if (current == nullptr) {
        fprintf(stderr, "%s(%d): NULL settings\n", __func__, __LINE__);
        return -1;
    }
    const OptionReader now(source_of(current, model));
    if (now.is_silent() && memcmp(current->bytes, previous->bytes, sizeof current->bytes) == 0) {
        return 0;
    }
    const OptionReader before(source_of(previous, model));
    char buffer[DOCUMENT_SIZE];
    zv::JsonWriter json(buffer);
    int32_t changes = 0;
    for (const zv::SettingMember &member : now.members()) {
        const uint32_t old_id = before.id(member);
        const uint32_t id = now.id(member);
        if (id != old_id) {
            ++changes;
            json.key(member.id);
            json.number(id);
        }
    }
    return zv::append_document(stream, json.members(), changes);
}

void update_camera_settings(const all_status_settings_t *record, uint32_t model, std::vector<uint32_t> &values)
{
    if (record == nullptr) {
        fprintf(stderr, "%s(%d): NULL settings\n", __func__, __LINE__);
        return;
    }
    const OptionReader options(source_of(record, model));
    for (const zv::SettingMember &member : options.members()) {
        values[member.id] = options.id(member);
    }
}
