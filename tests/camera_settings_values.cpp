#include "camera_settings_values.h"
#include "bytes.h"
#include "camera_settings.h"
#include "camera_settings_tables.h"
#include "interpose.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <span>

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

namespace {

constexpr uint32_t SABLE = 58;

// What the documents of each generation hold.
constexpr ptrdiff_t SETTING_COUNT = 98;
constexpr ptrdiff_t SABLE_SETTING_COUNT = 89;

class SettingsValues : public testing::Test {
  protected:
    // Every byte of the settings record is its own offset, so that a value shows where it was read.
    SettingsValues()
    {
        for (size_t i = 0; i < sizeof settings.bytes; ++i) {
            settings.bytes[i] = static_cast<uint8_t>(i);
        }
        settings.bytes[0] = 99; // no offset that anything reads
    }

    void SetUp() override { reset(); }

    void set_mode(uint8_t flat_mode) { settings.bytes[25] = flat_mode; }

    int32_t value(uint32_t setting, uint32_t model = 0) const
    {
        return get_field_value(&settings, &zv::settings_all_fields[setting], model, &status, nullptr);
    }

    appc_setup_all_settings settings = {};
    appc_system_all_status status = {};
};

TEST_F(SettingsValues, ReadFromTheirPlaceInEachMode)
{
    struct Case {
        uint8_t flat_mode;
        std::vector<uint32_t> settings;
        std::vector<int32_t> values;
    };
    const Case cases[] = {
        {12, {114, 115, 116, 117, 118, 105}, {50, 55, 51, 52, 54, 79}},
        {27, {114, 115, 116, 117, 118, 105}, {50, 55, 51, 52, 54, 79}},
        {17, {114, 115, 116, 117, 118, 105}, {100, 105, 101, 102, 104, 113}},
        {31, {114, 115, 116, 117, 118, 105}, {138, 143, 139, 140, 142, 151}},
        {22, {114, 115, 116, 117, 118, 105}, {99, 99, 99, 99, 99, 0}},
        {23, {114, 115, 116, 117, 118, 105}, {99, 99, 99, 99, 99, 0}},
        {200, {114, 105, 129}, {99, 0, 99}},
        {12, {129, 130, 131, 132}, {69, 70, 71, 72}},
        {22, {129, 130, 131, 132}, {69, 70, 71, 72}},
        {23, {129, 130, 131, 132}, {69, 70, 71, 72}},
        {16, {129, 130, 131, 132}, {116, 117, 118, 119}},
        {19, {129, 130, 131, 132}, {154 - 256, 155 - 256, 156 - 256, 157 - 256}},
        {28, {129, 130, 131, 132}, {99, 99, 99, 99}},
        {20, {192, 193, 128, 144}, {161 - 256, 161 - 256, 20, 20}},
        {13, {192, 193, 128, 144}, {62, 62, 13, 13}},
        {13, {2, 3, 59, 121, 139, 181}, {42, 43, 11, 44, 229, 99}},
        {13, {148, 149, 153, 155, 163, 164, 165}, {58, 228 - 256, 85, 86, 33, 231 - 256, 83}},
        {13, {169, 174, 182, 183, 190}, {26, 89, 36, 37, 33}},
        {13, {62, 161}, {static_cast<int32_t>(0xD2D1D0CFU), 0x07060504}},
    };
    for (const Case &c : cases) {
        set_mode(c.flat_mode);
        for (size_t i = 0; i < c.settings.size(); ++i) {
            EXPECT_EQ(c.values[i], value(c.settings[i])) << "setting " << c.settings[i] << ", mode " << +c.flat_mode;
        }
    }
}

TEST_F(SettingsValues, AModelWithTwoShortcutsShowsThemTwice)
{
    set_mode(12);
    EXPECT_EQ(69, value(129, 51));
    EXPECT_EQ(70, value(130, 51));
    EXPECT_EQ(69, value(131, 51));
    EXPECT_EQ(70, value(132, 51));
}

TEST_F(SettingsValues, ReplacedAndSignedValues)
{
    struct Case {
        uint32_t setting, offset;
        uint8_t byte;
        int32_t value;
    };
    const Case cases[] = {
        {2, 42, 13, 17},    {2, 42, 255, 255},   {112, 14, 0, 0},    {112, 14, 1, 255},  {112, 14, 4, 255},
        {112, 14, 5, 5},    {112, 14, 255, -1},  {149, 228, 3, 2},   {149, 228, 1, 1},   {164, 231, 7, 1},
        {164, 231, 6, 6},   {164, 231, 255, -1}, {163, 33, 255, -1}, {87, 10, 200, 200}, {176, 42, 24, 107},
        {165, 83, 255, -1}, {183, 37, 255, -1},
    };
    for (const Case &c : cases) {
        settings.bytes[c.offset] = c.byte;
        EXPECT_EQ(c.value, value(c.setting)) << c.setting;
    }
}

TEST_F(SettingsValues, FactsOfTheStatusRecord)
{
    const std::pair<uint32_t, uint32_t> offsets[] = {{135, 41}, {162, 252}, {189, 252}, {178, 364}, {180, 255}};
    for (const auto &[setting, offset] : offsets) {
        status.bytes[offset] = 0xFE;
        EXPECT_EQ(-2, value(setting)) << setting;
        status.bytes[offset] = 3;
        EXPECT_EQ(3, value(setting)) << setting;
    }

    struct Case {
        uint32_t setting, offset, preset;
        int32_t value;
    };
    const Case presets[] = {
        {186, 7, 0xA0000, 0},   {186, 7, 0xA0001, 1},   {186, 7, 0xA0002, 2},   {186, 7, 0xA0003, 0},
        {177, 11, 0xC0000, 0},  {177, 11, 0xC0001, 1},  {191, 11, 0xC0001, 1},  {191, 11, 0xC0002, 0},
        {187, 15, 0xD0000, 0},  {187, 15, 0xD0001, 1},  {187, 15, 0xD0002, 2},  {187, 15, 0xD0003, 3},
        {187, 15, 0x180000, 4}, {187, 15, 0x150000, 4}, {187, 15, 0x180001, 5}, {187, 15, 0x180002, 6},
        {187, 15, 0x180003, 7}, {187, 15, 0x180004, 0},
    };
    for (const Case &c : presets) {
        zv::put_le32(status.bytes + c.offset, c.preset);
        EXPECT_EQ(c.value, value(c.setting)) << c.setting << " " << std::hex << c.preset;
    }
}

TEST_F(SettingsValues, ScheduledCaptureIsAPackedTime)
{
    struct Case {
        uint8_t hour, minute, enabled, format;
        int32_t value;
    };
    const Case cases[] = {
        {13, 30, 1, 0, 3449}, {13, 30, 0, 0, 0},  {13, 30, 2, 0, 0},        {23, 59, 1, 1, 0x17EF},
        {32, 64, 1, 0, 1},    {0, 0, 1, 255, -1}, {255, 255, 1, 0, 0x1FFD},
    };
    for (const Case &c : cases) {
        std::copy_n(&c.hour, 4, status.bytes + 31);
        EXPECT_EQ(c.value, value(168)) << +c.hour << ":" << +c.minute;
    }
}

TEST_F(SettingsValues, EasySpeedFollowsResolutionAndFrameRate)
{
    constexpr uint8_t FPS[] = {8, 9, 5, 6, 1, 2, 0, 13};
    struct Row {
        uint8_t resolution;
        int32_t speeds[8];
    };
    const Row rows[] = {
        {24, {103, 107, 102, 106, -1, -1, -1, -1}},  {1, {126, 127, 116, 117, 101, 105, -1, -1}},
        {4, {128, 129, 130, 131, -1, -1, 100, 104}}, {9, {111, 115, 110, 114, 109, 113, 108, 112}},
        {26, {122, 123, -1, -1, -1, -1, -1, -1}},    {28, {136, 137, 124, 125, -1, -1, -1, -1}},
        {29, {118, 119, 120, 121, -1, -1, -1, -1}},  {30, {134, 135, 132, 133, -1, -1, -1, -1}},
        {18, {-1, -1, -1, -1, -1, -1, -1, -1}},      {255, {-1, -1, -1, -1, -1, -1, -1, -1}},
    };
    for (const uint8_t hz : std::vector<uint8_t>{0, 1, 9}) {
        settings.bytes[19] = hz;
        for (const Row &row : rows) {
            settings.bytes[42] = row.resolution;
            for (size_t i = 0; i < 8; ++i) {
                settings.bytes[43] = FPS[i];
                const int32_t otherwise = hz == 0 ? 103 : 107;
                EXPECT_EQ(row.speeds[i] < 0 ? otherwise : row.speeds[i], value(176)) << +row.resolution << " " << i;
            }
            settings.bytes[43] = 10;
            EXPECT_EQ(hz == 0 ? 103 : 107, value(176));
        }
    }
}

TEST_F(SettingsValues, AModeWithoutAFeatureIsReportedOnce)
{
    g_logLevel = ZV_LOG_DEBUG;
    set_mode(40);
    for (int i = 0; i < 2; ++i) {
        for (uint32_t setting = 114; setting <= 118; ++setting) {
            value(setting);
        }
    }
    EXPECT_THAT(log_messages(), ElementsAre("get_field_value: Flat mode[40] doesn't support vellix",
                                            "get_field_value: Flat mode[40] doesn't support vellix_white_balance",
                                            "get_field_value: Flat mode[40] doesn't support vellix_color",
                                            "get_field_value: Flat mode[40] doesn't support vellix_sharpness",
                                            "get_field_value: Flat mode[40] doesn't support vellix_ev"));
    EXPECT_THAT(log_lines().front(), testing::StartsWith("DEBUG "));

    reset();
    g_logLevel = ZV_LOG_WARN;
    set_mode(255);
    value(114); // kept back, and remembered all the same
    g_logLevel = ZV_LOG_DEBUG;
    value(114);
    set_mode(23);
    value(114);
    EXPECT_THAT(log_messages(), IsEmpty());
}

TEST_F(SettingsValues, AModeWithoutShortcutsIsReportedEachTime)
{
    g_logLevel = ZV_LOG_DEBUG;
    for (const uint8_t mode : std::vector<uint8_t>{11, 4, 9, 28, 11}) {
        set_mode(mode);
        value(130);
    }
    EXPECT_THAT(log_messages(), ElementsAre("get_field_value: Flat mode[11] doesn't support onscreen_control",
                                            "get_field_value: Flat mode[11] doesn't support onscreen_control"));
}

TEST_F(SettingsValues, ARowThatReachesPastTheRecordReadsAsZero)
{
    const settings_field_t rows[] = {{3, 238, 1}, {62, 235, 4}, {3, -1, 1}, {0xFFFFFFFF, -1, 0xFFFFFFFF}};
    for (const settings_field_t &row : rows) {
        EXPECT_EQ(0, get_field_value(&settings, &row, SABLE, &status, nullptr));
    }
    const settings_field_t last = {3, 237, 1};
    EXPECT_EQ(237, get_field_value(&settings, &last, SABLE, &status, nullptr));
}

// ---- Documents ----

class SettingsDocuments : public testing::Test {
  protected:
    void SetUp() override
    {
        reset();
        previous.bytes[MODE] = 12;
        current = previous;
    }

    static constexpr uint32_t SETTINGS = 394;
    static constexpr uint32_t MODE = SETTINGS + 25;

    std::string document(uint32_t model, const appc_system_all_status *facts) const
    {
        appc_setup_all_settings settings;
        std::copy_n(current.bytes + SETTINGS, sizeof settings.bytes, settings.bytes);
        std::stringstream stream;
        stream << "{";
        EXPECT_EQ(0, camera_settings_serialize_to_json(stream, &settings, facts, nullptr, model));
        return stream.str();
    }

    std::pair<int32_t, std::string> changes(uint32_t model = SABLE) const
    {
        std::stringstream stream;
        const int32_t count = camera_status_serialize_settings_changes_to_json(stream, &current, &previous, model);
        return {count, stream.str()};
    }

    all_status_settings_t previous = {};
    all_status_settings_t current = {};
    appc_system_all_status status = {};
};

TEST_F(SettingsDocuments, SableKnollShowsOptionIds)
{
    current.bytes[SETTINGS + 42] = 24;
    current.bytes[SETTINGS + 69] = 6;
    zv::put_le32(current.bytes + SETTINGS + 207, 4000000);
    EXPECT_EQ("{\"settings\":{\"2\":100,\"3\":0,\"5\":0,\"6\":0,\"13\":0,\"19\":0,\"24\":0,\"30\":110,\"31\":0,"
              "\"32\":10,\"37\":0,\"41\":12,\"42\":8,\"43\":0,\"44\":9,\"45\":8,\"47\":7,\"54\":0,\"59\":0,"
              "\"62\":4000000,\"64\":0,\"75\":0,\"76\":0,\"84\":0,\"85\":0,\"86\":0,\"87\":0,\"88\":50,\"91\":4,"
              "\"102\":0,\"103\":3,\"105\":0,\"108\":0,\"111\":0,\"112\":100,\"114\":0,\"115\":0,\"116\":100,"
              "\"117\":0,\"118\":0,\"121\":0,\"122\":101,\"123\":101,\"125\":0,\"126\":0,\"128\":13,\"129\":111,"
              "\"130\":0,\"131\":0,\"132\":0,\"134\":2,\"135\":0,\"139\":0,\"144\":12,\"145\":0,\"146\":0,\"147\":0,"
              "\"148\":0,\"149\":0,\"153\":100,\"154\":0,\"156\":100,\"157\":100,\"158\":0,\"159\":0,\"160\":0,"
              "\"161\":100,\"164\":100,\"165\":0,\"166\":0,\"167\":4,\"168\":0,\"169\":1,\"171\":0,\"172\":0,"
              "\"175\":0,\"176\":103,\"178\":0,\"179\":3,\"182\":0,\"183\":0,\"184\":0,\"186\":0,\"187\":0,"
              "\"189\":0,\"190\":0,\"191\":0,\"192\":0,\"193\":0}",
              document(SABLE, &status));
}

TEST_F(SettingsDocuments, ChangesAreByOptionId)
{
    EXPECT_EQ(std::pair(0, std::string()), changes());
    previous.bytes[SETTINGS + 43] = 77; // two frame rates that nobody knows
    current.bytes[SETTINGS + 43] = 78;
    current.bytes[SETTINGS + 100] = 1; // photo's, in video mode
    EXPECT_EQ(std::pair(0, std::string()), changes());
    current.bytes[SETTINGS + 42] = 24;
    EXPECT_EQ(std::pair(1, std::string("\"2\":100")), changes());
    current.bytes[SETTINGS + 12] = 2;
    EXPECT_EQ(std::pair(2, std::string("\"2\":100,\"91\":3")), changes());
    current.bytes[33] = 1; // a status: the schedule
    EXPECT_EQ(std::pair(3, std::string("\"2\":100,\"91\":3,\"168\":1")), changes());
}

TEST_F(SettingsDocuments, EachRecordIsReadForItsOwnFlatMode)
{
    previous.bytes[SETTINGS + 69] = current.bytes[SETTINGS + 69] = 13;
    previous.bytes[SETTINGS + 50] = current.bytes[SETTINGS + 50] = 1;
    current.bytes[MODE] = 15;
    EXPECT_EQ(std::pair(2, std::string("\"129\":109,\"144\":15")), changes());
    current.bytes[MODE] = 16;
    current.bytes[SETTINGS + 116] = 6;
    EXPECT_EQ(std::pair(3, std::string("\"114\":0,\"129\":111,\"144\":16")), changes());

    // Modes without shortcuts, which read the record's first byte: 44 is not 12, where that value has another id.
    g_logLevel = ZV_LOG_DEBUG;
    previous.bytes[MODE] = 11;
    current.bytes[MODE] = 44;
    current.bytes[SETTINGS] = 6;
    EXPECT_THAT(changes().second, testing::HasSubstr("\"129\":6,"));
    const std::vector<std::string> messages = log_messages();
    EXPECT_THAT(std::span(messages).last(2),
                ElementsAre("get_field_value: Flat mode[11] doesn't support onscreen_control",
                            "get_field_value: Flat mode[44] doesn't support onscreen_control"));
}

TEST_F(SettingsDocuments, VectorHoldsTheOptionIds)
{
    std::vector<uint32_t> values(194, 7777);
    current.bytes[SETTINGS + 42] = 24;
    update_camera_settings(&current, SABLE, values);
    EXPECT_EQ(100U, values[2]);
    EXPECT_EQ(12U, values[144]);
    EXPECT_EQ(0U, values[193]);
    EXPECT_EQ(7777U, values[4]);
    EXPECT_EQ(7777U, values[83]);
    EXPECT_EQ(SABLE_SETTING_COUNT, std::count_if(values.begin(), values.end(), [](uint32_t id) { return id != 7777; }));
}

TEST_F(SettingsDocuments, NullRecords)
{
    std::stringstream stream;
    std::vector<uint32_t> values(194, 7);
    testing::internal::CaptureStderr();
    EXPECT_EQ(-1, camera_settings_serialize_to_json(stream, nullptr, &status, nullptr, SABLE));
    EXPECT_EQ(-1, camera_status_serialize_settings_changes_to_json(stream, nullptr, &previous, SABLE));
    update_camera_settings(nullptr, SABLE, values);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                MatchesRegex("camera_settings_serialize_to_json\\([0-9]+\\): NULL settings\n"
                             "camera_status_serialize_settings_changes_to_json\\([0-9]+\\): NULL settings\n"
                             "update_camera_settings\\([0-9]+\\): NULL settings\n"));
    EXPECT_EQ("", stream.str());
    EXPECT_EQ(std::vector<uint32_t>(194, 7), values);

    testing::internal::CaptureStderr();
    EXPECT_THAT(document(SABLE, nullptr), testing::StartsWith("{\"settings\":{\"2\":1,\"3\":0,"));
    std::string reports;
    for (int i = 0; i < SABLE_SETTING_COUNT; ++i) {
        reports += "status ptr is NULL, cannot get status values";
    }
    EXPECT_EQ(reports, testing::internal::GetCapturedStderr());

    testing::internal::CaptureStderr();
    EXPECT_EQ(0, get_field_value(nullptr, &zv::settings_all_fields[2], SABLE, nullptr, nullptr));
    EXPECT_EQ("settings ptr is NULL, cannot get setting values", testing::internal::GetCapturedStderr());
}

// What a default camera shows: its values, as long as no sable_knoll model was served.
using SettingsDocumentsDeathTest = SettingsDocuments;

TEST_F(SettingsDocumentsDeathTest, DefaultGenerationShowsValues)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto run = [&] {
        current.bytes[SETTINGS + 42] = 24;
        current.bytes[SETTINGS + 14] = 0xFF;
        current.bytes[SETTINGS + 69] = 6;
        const std::string text = document(0, &status);
        EXPECT_THAT(text, testing::StartsWith("{\"settings\":{\"2\":24,\"3\":0,"));
        for (const char *member : {"\"83\":0,", "\"112\":4294967295,", "\"129\":111,", "\"181\":0,", "\"193\":0}"}) {
            EXPECT_THAT(text, testing::HasSubstr(member));
        }
        EXPECT_EQ(SETTING_COUNT, std::count(text.begin(), text.end(), ':') - 1);
        EXPECT_EQ(SETTING_COUNT, std::ssize(log_messages()));
        EXPECT_EQ("Could not find option value:24 for setting:2 for camera:0", log_messages().front());
        EXPECT_EQ(std::pair(3, std::string("\"2\":24,\"112\":4294967295,\"129\":111")), changes(0));
        std::exit(HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

} // namespace
