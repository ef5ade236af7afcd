#include "records.h"

#include "bytes.h"
#include "settings_values.h"

#include <algorithm>
#include <random>

namespace bench {

namespace {

class Maker {
  public:
    all_status_settings_t make()
    {
        all_status_settings_t record = {};
        uint8_t *status = record.bytes + ALL_STATUS_OFFSET;
        for (uint8_t &byte : record.bytes) {
            byte = one_in(2) ? below(2) : one_in(2) ? below(16) : below(256);
        }
        for (const int offset : {35, 49, 57, 71, 98, 102, 114, 118, 122, 131, 135, 148, 279}) {
            zv::put_le32(status + offset, static_cast<uint32_t>(m_random()) >> below(32));
        }
        std::fill_n(status + 126, 4, 0); // no card has 2^32 kilobytes
        std::fill_n(status + 152, 4, 0);
        for (const int offset : {7, 11, 15, 27}) {
            zv::put_le32(status + offset, 0xA0000U + below(64));
        }
        constexpr uint8_t flat_modes[] = {12, 13, 15, 16, 17, 18, 19, 20, 21, 24, 25, 26, 27, 29, 30, 31};
        status[STATUS_APP_CURRENT_MODE] = flat_modes[below(sizeof flat_modes)];
        uint8_t *settings = record.bytes + ALL_SETTINGS_OFFSET;
        for (const SettingRow &row : settings_rows()) {
            listed_value(settings + row.field.offset, row.field);
        }
        settings[SETTINGS_SETUP_CURRENT_FLAT_MODE] = status[STATUS_APP_CURRENT_MODE];
        zv::put_le32(status + STATUS_APP_ACTIVE_PRESETS_GROUP, below(6));
        status[STATUS_SYSTEM_INTERNAL_BATTERY_PERCENTAGE] = below(101);
        status[STATUS_LIVEVIEW_EXPOSURE_SELECT_TYPE] = below(4);
        status[STATUS_LIVEVIEW_EXPOSURE_SELECT_X] = below(101);
        status[STATUS_LIVEVIEW_EXPOSURE_SELECT_Y] = below(101);
        name(status + STATUS_WIRELESS_WLAN_SSID);
        name(status + STATUS_WIRELESS_AP_SSID);
        return record;
    }

  private:
    uint8_t below(unsigned limit) { return static_cast<uint8_t>(m_random() % limit); }
    bool one_in(unsigned count) { return m_random() % count == 0; }

    // A value of one of the setting's options.
    void listed_value(uint8_t *field, const settings_field_t &setting)
    {
        const auto &options = getOptionIds(MODEL).at(setting.id);
        const uint32_t value = std::next(options.begin(), below(static_cast<unsigned>(options.size())))->second;
        if (setting.size == 4) {
            zv::put_le32(field, value);
        } else {
            *field = static_cast<uint8_t>(value);
        }
    }

    void name(uint8_t *field)
    {
        const unsigned length = below(33);
        for (unsigned i = 0; i < length; ++i) {
            field[i] = static_cast<uint8_t>('a' + below(26));
        }
        field[length] = 0;
    }

    std::mt19937 m_random{20};
};

} // namespace

const std::vector<all_status_settings_t> &records()
{
    static const std::vector<all_status_settings_t> all = [] {
        Maker maker;
        std::vector<all_status_settings_t> made(RECORD_COUNT);
        std::ranges::generate(made, [&] { return maker.make(); });
        return made;
    }();
    return all;
}

} // namespace bench
