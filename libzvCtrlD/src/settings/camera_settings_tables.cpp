#include "camera_settings_tables.h"

#include "setting_rows.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace zv {

namespace {

constexpr SettingInfos make_infos()
{
    SettingInfos infos = {};
    for (const Setting &setting : SETTINGS) {
        const bool bypasses = setting.scope == OF_CAMERA;
        infos[setting.id] = {setting.read, setting.write, setting.unlisted, bypasses,
                             bypasses && has_setting(true, setting)};
    }
    return infos;
}

constexpr SettingsFields make_fields(bool sable_knoll)
{
    SettingsFields fields = {};
    for (const Setting &setting : SETTINGS) {
        if (has_setting(sable_knoll, setting)) {
            fields[setting.id] = {setting.id, setting.place.offset, setting.place.read_size};
        }
    }
    fields[SETTINGS_END_ROW] = {SETTINGS_END_ID, -1, SETTINGS_END_ID};
    return fields;
}

// What the public id table is made of: the rows of both generations without what only the compiler needs.
struct IdRow {
    uint8_t id;
    Generations generations;
    char path[sizeof Setting::path];
    PlainAccess place;
};

constexpr auto ID_ROWS = [] {
    std::array<IdRow, std::size(SETTINGS)> rows = {};
    std::transform(std::begin(SETTINGS), std::end(SETTINGS), rows.begin(), [](const Setting &setting) {
        IdRow row = {static_cast<uint8_t>(setting.id), setting.generations, {}, setting.place};
        std::copy(std::begin(setting.path), std::end(setting.path), row.path);
        return row;
    });
    return rows;
}();

using SettingsIds = std::array<settings_id_entry_t, SETTINGS_ID_TABLE_COUNT>;

constexpr int32_t NONE = -1; // no group, no action

SettingsIds make_ids(bool sable_knoll)
{
    SettingsIds ids;
    ids.fill({0, "", NONE, NONE, 0, settings_empty_setter, nullptr});
    for (const IdRow &setting : ID_ROWS) {
        if (sable_knoll && setting.generations != BOTH) {
            continue;
        }
        settings_id_entry_t &row = ids[setting.id];
        row.json_path = setting.path;
        if (setting.place.write_size != 0) {
            row.group_id = group_of(setting.place.command);
            row.action_id = action_of(setting.place.command);
            row.value_size = setting.place.write_size;
        }
    }
    ids[SETTINGS_END_ROW].end_marker = -1;
    ids[SETTINGS_END_ROW].json_path = "-1";
    return ids;
}

} // namespace

constexpr SettingInfos SETTING_INFOS = make_infos();
static_assert(SETTING_INFOS[0].read.way == Read::PLAIN && SETTING_INFOS[0].write.way == Write::PLAIN &&
              SETTING_INFOS[0].unlisted == AS_DEFAULT);

constexpr SettingsFields settings_all_fields = make_fields(false);
constexpr SettingsFields settings_all_fields_sable_knoll = make_fields(true);

} // namespace zv

const settings_id_entry_t *camera_settings_id_table(uint32_t model, uint32_t *count)
{
    if (count == nullptr) {
        return nullptr;
    }
    // Rows of addresses are made when first asked for: as constants, every start would pay for relocating them.
    if (zv::is_sable_knoll(model)) {
        static const zv::SettingsIds settings_id_table_sable_knoll = zv::make_ids(true);
        *count = SETTINGS_ID_TABLE_SABLE_KNOLL_COUNT;
        return settings_id_table_sable_knoll.data();
    }
    static const zv::SettingsIds settings_id_table = zv::make_ids(false);
    *count = SETTINGS_ID_TABLE_COUNT;
    return settings_id_table.data();
}

int32_t settings_empty_setter(int32_t, int32_t, int32_t, void *, int32_t)
{
    fprintf(stderr, "%s(%d)\n", __func__, __LINE__);
    return 0;
}
