#include "camera_settings.h"

#include "camera_settings_tables.h"
#include "camera_settings_values.h"
#include "camera_status_fields.h"
#include "interpose.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <thread>

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr uint32_t SABLE = 58;
constexpr uint32_t NO_MODE = 99;

// What the catalogue holds.
constexpr size_t SETTING_COUNT = 98;
constexpr size_t SABLE_SETTING_COUNT = 89;
constexpr size_t OPTION_COUNT = 602;
constexpr size_t RULE_COUNT = 202;

class CameraSettings : public testing::Test {
  protected:
    void SetUp() override { reset(); }

    // Runs `body` in a process of its own, where no working copy is filled yet.
    template <class Body>
    static void in_fresh_process(Body body)
    {
        testing::FLAGS_gtest_death_test_style = "threadsafe";
        const auto run = [&] {
            body();
            std::exit(HasFailure() ? 1 : 0);
        };
        EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
    }
};

using CameraSettingsDeathTest = CameraSettings;

// ---- Tables ----

TEST_F(CameraSettings, IdTableOfEachGeneration)
{
    uint32_t count = 7;
    EXPECT_EQ(nullptr, camera_settings_id_table(SABLE, nullptr));
    const settings_id_entry_t *sable = camera_settings_id_table(SABLE, &count);
    EXPECT_EQ(195U, count);
    EXPECT_EQ(sable, camera_settings_id_table(62, &count));
    const settings_id_entry_t *other = camera_settings_id_table(0, &count);
    EXPECT_EQ(195U, count);
    EXPECT_NE(sable, other);
    EXPECT_EQ(other, camera_settings_id_table(51, &count));
    EXPECT_EQ(other, camera_settings_id_table(59, &count));

    struct Case {
        uint32_t id;
        const char *path;
        int32_t group, action, size;
        bool sable;
    };
    const Case cases[] = {
        {0, "", -1, -1, 0, true},
        {1, "", -1, -1, 0, true},
        {2, "modes/video/settings/resolution", 2, 3, 1, true},
        {4, "", -1, -1, 0, true},
        {19, "modes/photo/settings/exposure_time", 3, 9, 1, true},
        {30, "modes/multi_shot/settings/timelapse_rate", 4, 7, 4, true},
        {47, "modes/broadcast/settings/window_size", 5, 23, 1, true},
        {62, "modes/stream/settings/bit_rate", 10, 7, 4, true},
        {83, "modes/setup/settings/gps", 7, 52, 1, false},
        {105, "capture_delay", -1, -1, 0, true},
        {139, "modes/audio/settings/vellix_option", 14, 5, 1, true},
        {181, "easy_mode_preset_pill", -1, -1, 0, false},
        {184, "modes/video/settings/profile", 2, 98, 1, true},
        {191, "easy_presets", -1, -1, 0, true},
        {193, "easy_framing", -1, -1, 0, true},
        {194, "-1", -1, -1, 0, true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.id);
        EXPECT_STREQ(c.path, other[c.id].json_path);
        EXPECT_EQ(c.group, other[c.id].group_id);
        EXPECT_EQ(c.action, other[c.id].action_id);
        EXPECT_EQ(c.size, other[c.id].value_size);
        EXPECT_STREQ(c.sable ? c.path : "", sable[c.id].json_path);
        EXPECT_EQ(c.sable ? c.group : -1, sable[c.id].group_id);
    }
    for (uint32_t id = 0; id < count; ++id) {
        for (const settings_id_entry_t *row : {sable + id, other + id}) {
            EXPECT_EQ(id == 194 ? -1 : 0, row->end_marker);
            EXPECT_EQ(settings_empty_setter, row->setter);
            EXPECT_EQ(nullptr, row->setter_data);
        }
    }
}

TEST_F(CameraSettings, FieldTablesNameTheSameSettingsAsTheIdTables)
{
    for (const uint32_t model : {0U, SABLE}) {
        uint32_t count = 0;
        const settings_id_entry_t *ids = camera_settings_id_table(model, &count);
        const auto &fields = model == SABLE ? zv::settings_all_fields_sable_knoll : zv::settings_all_fields;
        size_t live = 0;
        for (uint32_t id = 0; id < 194; ++id) {
            const bool known = ids[id].json_path[0] != '\0';
            live += known;
            EXPECT_EQ(known ? id : 0, fields[id].id);
            EXPECT_EQ(!known ? 0U : id == 62 ? 4U : 1U, fields[id].size);
            EXPECT_EQ(ids[id].group_id >= 0, fields[id].offset > 0);
        }
        EXPECT_EQ(model == SABLE ? SABLE_SETTING_COUNT : SETTING_COUNT, live);
        EXPECT_EQ(0xFFFFFFFF, fields[194].id);
        EXPECT_EQ(-1, fields[194].offset);
        EXPECT_EQ(0xFFFFFFFF, fields[194].size);
    }
}

TEST_F(CameraSettings, EmptySetterOnlyTellsThatItWasCalled)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(0, settings_empty_setter(1, 2, 3, nullptr, 4));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::MatchesRegex("settings_empty_setter\\([0-9]+\\)\n"));
}

// ---- Catalogue ----

std::string text_of(const option_t &option)
{
    return std::string(option.key) + " \"" + option.name + "\" " + std::to_string(option.value) + "/" +
           std::to_string(option.id);
}

std::vector<std::string> options_of(uint32_t setting)
{
    std::vector<std::string> texts;
    for (const option_t *option : getCameraOptions(SABLE).at(setting)) {
        texts.push_back(text_of(*option));
    }
    return texts;
}

TEST_F(CameraSettings, OptionsComeInMenuOrder)
{
    EXPECT_THAT(options_of(2), ElementsAre("5_3K \"5.3K\" 24/100", "5_3K_8BY7_V2 \"5.3K\" 26/107", "4K \"4K\" 1/1",
                                           "4K_4BY3 \"4K 4:3\" 18/18", "4K_8BY7_V2 \"4K\" 28/108", "2_7K \"2.7K\" 4/4",
                                           "2_7K_4BY3_V2 \"2.7K\" 6/111", "1080 \"1080\" 9/9",
                                           "4K_9BY16_V2 \"4K\" 29/109", "1080_9BY16_V2 \"1080\" 30/110"));
    EXPECT_THAT(options_of(87), ElementsAre("HIGH \"High\" 100/100", "MEDIUM \"Medium\" 85/70", "LOW \"Low\" 70/40",
                                            "MUTE \"Mute\" 0/0"));
    EXPECT_THAT(options_of(168), ElementsAre("OFF \"Off\" 0/0"));
    EXPECT_THAT(options_of(193), ElementsAre("WIDESCREEN \"Widescreen\" 1/0", "VERTICAL \"Vertical\" 4/1",
                                             "FULL_FRAME \"Full Frame\" 3/2"));
    EXPECT_EQ(options_of(129), options_of(132));
    EXPECT_EQ("MOBILE_LB_2X_SLO_MO_50HZ_V2 \"2X Slo-Mo\" 133/133", options_of(176).back());
    EXPECT_EQ(0U, getCameraOptions(SABLE).count(83)); // the generation has no GPS
}

TEST_F(CameraSettings, OptionMapsHoldTheSameOptions)
{
    size_t options = 0;
    size_t ids = 0;
    EXPECT_EQ(SABLE_SETTING_COUNT, getCameraOptions(SABLE).size());
    EXPECT_EQ(SABLE_SETTING_COUNT, getOptionIds(SABLE).size());
    for (const auto &[setting, list] : getCameraOptions(SABLE)) {
        options += list.size();
        ids += getOptionIds(SABLE).at(setting).size();
        for (const option_t *option : list) {
            EXPECT_EQ(option->value, getOptionIds(SABLE).at(setting).at(option->id));
        }
        EXPECT_TRUE(optionIdExists(SABLE, setting, getOptionIdByValue(SABLE, setting, 54321, NO_MODE)))
            << "the default of setting " << setting;
    }
    EXPECT_EQ(OPTION_COUNT, options);
    EXPECT_EQ(OPTION_COUNT, ids);
    EXPECT_THAT(getUIModeGroups(SABLE),
                ElementsAre(testing::Pair(1000, testing::StrEq("VIDEO")), testing::Pair(1001, testing::StrEq("PHOTO")),
                            testing::Pair(1002, testing::StrEq("TIME LAPSE"))));
}

std::string text_of(const filter_info_t &element)
{
    std::string text = element.type == FILTER_INFO_STATUS ? "S" : element.type == FILTER_INFO_BLOCK ? "B" : "";
    text += std::to_string(element.id) + (element.include == 1 ? "" : "!");
    for (const char *value : element.values) {
        text += std::string(" ") + value;
    }
    return text;
}

TEST_F(CameraSettings, FilterRules)
{
    const auto rule = [](uint32_t number) {
        std::vector<std::string> texts;
        for (const filter_info_t *element : getCameraFilters(SABLE).at(number)) {
            texts.push_back(text_of(*element));
        }
        return texts;
    };
    EXPECT_THAT(rule(3), ElementsAre("S108 1", "B167"));
    EXPECT_THAT(rule(10),
                ElementsAre("190 OFF", "175 EASY", "186 HIGHEST_QUALITY", "193 WIDESCREEN", "S89 12",
                            "121! ARCASCAPE LINEAR_PLUS_HORIZON_LOCK", "B176 2X_SLO_MO_4K_V2 2X_SLO_MO_4K_50HZ_V2"));
    EXPECT_THAT(rule(68), ElementsAre("3 240", "B145! AUTO 1_240 1_480 1_960 1_1920 1_3840"));
    EXPECT_THAT(rule(140), ElementsAre("190 ON", "S89 24", "B149", "B129 WIND", "B130 WIND", "B131 WIND", "B132 WIND"));
    EXPECT_THAT(rule(193), ElementsAre("S74 0", "S102 0 2", "B169"));

    const auto &rules = getCameraFilters(SABLE);
    EXPECT_EQ(RULE_COUNT, rules.size());
    EXPECT_EQ(RULE_COUNT - 1, rules.rbegin()->first);
    for (const auto &[number, elements] : rules) {
        SCOPED_TRACE(number);
        EXPECT_NE(FILTER_INFO_BLOCK, elements.front()->type);
        EXPECT_EQ(FILTER_INFO_BLOCK, elements.back()->type);
        bool consequences = false;
        for (const filter_info_t *element : elements) {
            EXPECT_LE(consequences, element->type == FILTER_INFO_BLOCK);
            consequences = element->type == FILTER_INFO_BLOCK;
            EXPECT_TRUE(element->type != FILTER_INFO_STATUS ||
                        zv::status_fields.at(element->id).output != zv::StatusOutput::NONE);
            EXPECT_TRUE(!element->values.empty() || (consequences && element->include == 1));
        }
    }
}

// ---- Conversions ----

TEST_F(CameraSettings, ValueToId)
{
    struct Case {
        uint32_t setting, value, flat_mode, id;
    };
    const Case cases[] = {
        {2, 24, 12, 100},
        {2, 77, 12, 1}, // unknown: the default
        {3, 77, 12, 5},
        {3, 0xFFFFFFFF, 12, 5},
        {32, 9, 12, 3601},
        {62, 1200000, 12, 1200000},
        {62, 4000000, 12, 4000000},
        {62, 4000001, 12, 1200000},
        {87, 70, 12, 40},
        {88, 55, 12, 55}, // unlisted brightness
        {88, 9, 12, 50},
        {88, 101, 12, 50},
        {91, 0, 12, 4},
        {91, 77, 12, 77},
        {112, 255, 12, 255},
        {161, 255, 12, 200},
        {161, 0xFFFFFFFF, 12, 200},
        {168, 1234, 12, 1234},
        {176, 137, 12, 137},
        {176, 0, 12, 103},
        {130, 13, 15, 109}, // two shortcuts of one value
        {130, 13, 12, 13},
        {132, 6, 12, 111},
        {129, 6, 16, 111},
        {131, 6, 13, 6},
        {129, 24, 12, 107},
        {129, 99, 15, 0},
        {133, 13, 15, 13}, // no setting
        {195, 5, 12, 5},
        {0xFFFFFFFF, 5, 12, 5},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << c.setting << " " << c.value);
        EXPECT_EQ(c.id, getOptionIdByValue(62, c.setting, c.value, c.flat_mode));
    }
    EXPECT_THAT(log_messages(), ElementsAre("Could not find option value:13 for setting:133 for camera:62",
                                            "Could not find option value:5 for setting:195 for camera:62",
                                            "Could not find option value:5 for setting:4294967295 for camera:62"));
    EXPECT_THAT(log_lines().front(), testing::StartsWith("ERROR "));
}

TEST_F(CameraSettings, IdToValue)
{
    struct Case {
        uint32_t setting, id, value;
        bool exists;
    };
    const Case cases[] = {
        {2, 100, 24, true},      {2, 24, 24, false},        {87, 70, 85, true},
        {88, 55, 55, true}, // in no list, and good
        {88, 101, 101, false},   {91, 3, 2, true},          {91, 200, 200, true},
        {168, 4000, 4000, true}, {131, 109, 13, true},      {131, 111, 6, true},
        {131, 13, 13, true},     {131, 110, 110, false},    {133, 109, 109, false},
        {83, 1, 1, false},       {0xFFFFFFFF, 2, 2, false},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << c.setting << " " << c.id);
        EXPECT_EQ(c.value, getOptionValueById(SABLE, c.setting, c.id));
        EXPECT_EQ(c.exists, optionIdExists(SABLE, c.setting, c.id));
    }
    EXPECT_THAT(log_messages(), IsEmpty());
}

TEST_F(CameraSettings, FlatModesOfEachBlock)
{
    const auto modes = [](bool (*uses)(uint32_t)) {
        std::vector<uint32_t> found;
        for (uint32_t mode = 0; mode < 300; ++mode) {
            if (uses(mode)) {
                found.push_back(mode);
            }
        }
        return found;
    };
    EXPECT_THAT(modes(usesVideoSettings), ElementsAre(12, 13, 14, 15, 23, 24, 25, 27));
    EXPECT_THAT(modes(usesPhotoSettings), ElementsAre(16, 17, 18));
    EXPECT_THAT(modes(usesMultiShotSettings), ElementsAre(19, 20, 21, 26, 29, 30, 31));
    EXPECT_FALSE(usesVideoSettings(12 + 64));
}

TEST_F(CameraSettings, OpenVersion)
{
    EXPECT_STREQ("2.0", getOpenZelvarVersion(62));
    EXPECT_STREQ(" ", getOpenZelvarVersion(51));
}

// ---- Working copies ----

TEST_F(CameraSettingsDeathTest, ADefaultModelLeavesTheCopiesFree)
{
    in_fresh_process([] {
        const auto &options = getCameraOptions(0);
        for (const uint32_t model : {0U, 51U, 57U, 61U, 63U, 58U + 256U}) {
            SCOPED_TRACE(model);
            EXPECT_TRUE(getCameraOptions(model).empty());
            EXPECT_TRUE(getCameraFilters(model).empty());
            EXPECT_TRUE(getUIModeGroups(model).empty());
            EXPECT_TRUE(getOptionIds(model).empty());
            EXPECT_TRUE(optionIdExists(model, 88, 50));
            EXPECT_FALSE(optionIdExists(model, 2, 1));
            EXPECT_EQ(100U, getOptionValueById(model, 2, 100));
            EXPECT_EQ(13U, getOptionValueById(model, 131, 109));
            EXPECT_EQ(6U, getOptionValueById(model, 131, 111));
        }
        EXPECT_EQ(24U, getOptionIdByValue(0, 2, 24, 12));
        EXPECT_EQ(109U, getOptionIdByValue(51, 130, 13, 15));
        EXPECT_THAT(log_messages(), ElementsAre("Could not find option value:24 for setting:2 for camera:0",
                                                "Could not find option value:13 for setting:130 for camera:51"));

        EXPECT_EQ(SABLE_SETTING_COUNT, getCameraOptions(SABLE).size());
        EXPECT_EQ(SABLE_SETTING_COUNT, options.size()) << "one map, that every call answers with";
        EXPECT_EQ(SABLE_SETTING_COUNT, getCameraOptions(0).size());
    });
}

TEST_F(CameraSettingsDeathTest, EachCopyIsFilledByItsOwnCalls)
{
    in_fresh_process([] {
        EXPECT_TRUE(optionIdExists(SABLE, 91, 1)); // skipped: fills nothing
        EXPECT_TRUE(getOptionIds(0).empty());
        EXPECT_TRUE(optionIdExists(SABLE, 2, 100));
        EXPECT_EQ(24U, getOptionValueById(0, 2, 100));
        EXPECT_EQ(SABLE_SETTING_COUNT, getOptionIds(0).size());

        EXPECT_EQ(24U, getOptionIdByValue(0, 2, 24, 12)) << "another copy";
        EXPECT_EQ(100U, getOptionIdByValue(62, 2, 24, 12));
        EXPECT_EQ(100U, getOptionIdByValue(0, 2, 24, 12));
        EXPECT_TRUE(getCameraOptions(0).empty());
        EXPECT_TRUE(getCameraFilters(0).empty());
    });
}

// A race shows under the thread sanitizer.
TEST_F(CameraSettingsDeathTest, SeveralThreadsMayBeTheFirst)
{
    in_fresh_process([] {
        const auto work = [](uint32_t model) {
            getOptionValueById(model, 2, 100);
            optionIdExists(model, 2, 100);
            EXPECT_EQ(24U, getOptionValueById(SABLE, 2, 100));
            EXPECT_TRUE(optionIdExists(SABLE, 2, 100));
            EXPECT_EQ(100U, getOptionIdByValue(SABLE, 2, 24, 12));
            EXPECT_EQ(SABLE_SETTING_COUNT, getOptionIds(SABLE).size());
            EXPECT_EQ(SABLE_SETTING_COUNT, getCameraOptions(SABLE).size());
            EXPECT_EQ(RULE_COUNT, getCameraFilters(SABLE).size());
        };
        std::thread other(work, 51);
        work(SABLE);
        other.join();
    });
}

std::vector<uint32_t> bypassing(uint32_t model)
{
    std::vector<uint32_t> settings;
    for (uint32_t setting = 0; setting < 300; ++setting) {
        if (bypassPresetEditStart(setting, model)) {
            settings.push_back(setting);
        }
    }
    return settings;
}

TEST_F(CameraSettingsDeathTest, TheFirstModelFixesTheBypassSet)
{
    in_fresh_process([] {
        EXPECT_FALSE(bypassPresetEditStart(83, 62)) << "the first answer of all";
        const auto sable = ElementsAre(47, 54, 59, 62, 64, 84, 85, 86, 87, 88, 91, 103, 112, 134, 154, 158, 159, 161,
                                       169, 175, 178, 182, 183, 189, 190);
        EXPECT_THAT(bypassing(62), sable);
        EXPECT_THAT(bypassing(0), sable);
    });
    in_fresh_process([] {
        const auto other = ElementsAre(47, 54, 59, 62, 64, 83, 84, 85, 86, 87, 88, 91, 103, 112, 134, 154, 158, 159,
                                       161, 162, 163, 169, 175, 177, 178, 180, 181, 182, 183, 189, 190);
        EXPECT_THAT(bypassing(0), other);
        EXPECT_THAT(bypassing(SABLE), other);
    });
}

} // namespace
