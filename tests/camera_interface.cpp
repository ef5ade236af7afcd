#include "camera_interface.h"

#include "camera_double.h"
#include "interpose.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>

using namespace test;
using testing::ElementsAre;

namespace {

class SettingWrites : public testing::Test {
  protected:
    // A write whose row is {17, 99, size}, which only a plain write looks at.
    int32_t set(int32_t id, uint32_t value, int32_t size = 1)
    {
        return camera_if_settings_set_value_int(camera.context(), id, 17, 99, value, size, &settings, &status);
    }

    uint8_t &setting(size_t offset) { return settings.bytes[offset]; }

    struct CleanSlate {
        CleanSlate() { reset(); }
    } before_the_camera;
    CameraDouble camera;
    appc_setup_all_settings settings = {};
    appc_system_all_status status = {};
};

TEST_F(SettingWrites, OfOneRequest)
{
    struct Case {
        int32_t id;
        uint32_t value;
        int32_t size;
        uint8_t group, action;
        Bytes payload;
    };
    const Case cases[] = {
        // as the row says
        {41, 0x12345678, 1, 17, 99, {0x78}},
        {5, 0x12345678, 2, 17, 99, {0x56, 0x78}},
        {171, 0x12345678, 4, 17, 99, {0x12, 0x34, 0x56, 0x78}},
        {184, 0x12345678, 0, 17, 99, {0x12, 0x34, 0x56, 0x78}},
        {194, 0x12345678, 3, 17, 99, {0x12, 0x34, 0x56, 0x78}},
        {-7, 9, -1, 17, 99, {0, 0, 0, 9}},
        // the low byte, to an action of their own
        {128, 0x1C1, 4, 17, 19, {0xC1}},
        {144, 0x1C2, 4, 17, 23, {0xC2}},
        {148, 0x1C3, 4, 2, 44, {0xC3}},
        {153, 0x1C4, 4, 2, 79, {0xC4}},
        {155, 0x1C5, 4, 2, 81, {0xC5}},
        {160, 0x1C6, 4, 2, 68, {0xC6}},
        {161, 0x1C7, 4, 7, 11, {0xC7}},
        {162, 0x1C8, 4, 8, 38, {0xC8}},
        {163, 0x1C9, 4, 7, 70, {0xC9}},
        {165, 0x1CA, 4, 2, 77, {0xCA}},
        {169, 0x1CB, 4, 7, 56, {0xCB}},
        {174, 0x1CC, 4, 2, 93, {0xCC}},
        {175, 0x1CD, 4, 7, 74, {0xCD}},
        {178, 0x1CE, 4, 6, 19, {0xCE}},
        {180, 0x1CF, 4, 8, 42, {0xCF}},
        {189, 0x1D0, 4, 8, 38, {0xD0}},
        {192, 0x1D1, 4, 2, 53, {0xD1}},
        {193, 0x1D2, 4, 2, 53, {0xD2}},
        // by the camera operations
        {2, 0x118, 1, 2, 95, {0x18}},
        {3, 0x10D, 1, 2, 97, {0x0D}},
        {24, 5, 1, 3, 19, {5}},
        {30, 11, 1, 4, 7, {11}},
        {32, 13, 1, 4, 9, {13}},
        {37, 4, 1, 4, 23, {4}},
        {75, 3, 1, 3, 29, {3}},
        {76, 2, 1, 4, 34, {2}},
        {105, 0x103, 1, 1, 15, {3}},
        {129, 0x121, 1, 17, 17, {0, 0x21}},
        {130, 0x122, 1, 17, 17, {1, 0x22}},
        {131, 0x123, 1, 17, 17, {2, 0x23}},
        {132, 0x124, 1, 17, 17, {3, 0x24}},
        {182, 0x101, 1, 2, 68, {1}},
        {183, 2, 1, 2, 93, {2}},
        {190, 0x1FE, 1, 8, 47, {0xFE}},
        {149, 0x102, 1, 14, 3, {2}},
        {164, 0x103, 1, 14, 11, {3}},
        {154, 0x103, 1, 7, 66, {3}},
        {112, 0x101, 1, 7, 9, {1}},
        {121, 0x104, 1, 2, 96, {4}},
        // presets, least significant byte first
        {186, 0, 1, 17, 12, {0x00, 0, 0x0A, 0}},
        {186, 0x101, 1, 17, 12, {0x01, 0, 0x0A, 0}},
        {186, 2, 1, 17, 12, {0x02, 0, 0x0A, 0}},
        {187, 0, 1, 17, 12, {0x00, 0, 0x0D, 0}},
        {187, 3, 1, 17, 12, {0x03, 0, 0x0D, 0}},
        {187, 4, 1, 17, 12, {0x00, 0, 0x18, 0}},
        {187, 7, 1, 17, 12, {0x03, 0, 0x18, 0}},
        {177, 1, 1, 17, 12, {0x01, 0, 0x0C, 0}},
        {177, 2, 1, 17, 12, {0x00, 0, 0x0C, 0}},
        {191, 1, 1, 17, 12, {0x01, 0, 0x0C, 0}},
        {191, 0, 1, 17, 12, {0x00, 0, 0x0C, 0}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.id);
        camera.expect(c.group, c.action, c.payload);
        EXPECT_EQ(0, set(c.id, c.value, c.size));
        EXPECT_TRUE(log_lines().empty());
        camera.expect(c.group, c.action, c.payload, firmware_error(1));
        EXPECT_EQ(-1, set(c.id, c.value, c.size));
        log_lines().clear();
    }
}

TEST_F(SettingWrites, ThatSendNothing)
{
    for (const auto &[id, value] : {std::pair{24, 6U}, {30, 12U}, {32, 14U}, {37, 0x104U}, {75, 6U}, {76, 6U}}) {
        EXPECT_EQ(-3, set(id, value)) << id; // above the operation's limit
    }
    setting(SETTINGS_SETUP_FRONT_LCD_DISPLAY_MODE) = 3;
    EXPECT_EQ(0, set(154, 0x103)); // shown already
    log_lines().clear();
    status.bytes[STATUS_SYSTEM_SOUND_CAGE_MIC_STATUS] = 3;
    EXPECT_EQ(-3, set(149, 2));
    EXPECT_EQ(-3, set(164, 2));
    EXPECT_THAT(log_messages(), ElementsAre("Setting 149 can't be set in sound cage mic status 3",
                                            "Setting 164 can't be set in sound cage mic status 3"));
}

TEST_F(SettingWrites, NeedAUsableRowAndTheirRecords)
{
    for (const auto &[id, group, action] :
         {std::tuple{181, -1, -1}, {5, 3, -1}, {5, -1, 3}, {19, -1, 9}, {31, 4, -1}}) {
        EXPECT_EQ(-3, camera_if_settings_set_value_int(camera.context(), id, group, action, 1, 1, &settings, &status));
        EXPECT_EQ("Setting " + std::to_string(id) + " can't be written, group " + std::to_string(group) + " action " +
                      std::to_string(action),
                  log_messages().back());
    }
    for (const int32_t id : {13, 31, 102, 121, 154, 176}) {
        EXPECT_EQ(-3, camera_if_settings_set_value_int(camera.context(), id, 4, 13, 1, 1, nullptr, &status));
        EXPECT_EQ("Settings info is NULL, can't set setting " + std::to_string(id), log_messages().back());
    }
    setting(SETTINGS_SETUP_CURRENT_FLAT_MODE) = 12;
    for (const int32_t id : {112, 121, 149, 164}) {
        EXPECT_EQ(-3, camera_if_settings_set_value_int(camera.context(), id, 4, 13, 255, 1, &settings, nullptr));
        EXPECT_EQ("Status info is NULL, can't set setting " + std::to_string(id), log_messages().back());
    }
}

TEST_F(SettingWrites, VellixFollowsTheFlatMode)
{
    struct Row {
        int32_t id;
        uint8_t video, photo, multi_shot;
        const char *what;
        const char *text;
    };
    const Row rows[] = {{114, 15, 11, 15, "vellix", "vellix_set"},
                        {115, 17, 13, 17, "vellix white balance", "vellix_set"},
                        {116, 19, 15, 19, "vellix color", "vellix_set"},
                        {117, 21, 17, 21, "vellix sharpness", "vellix_sharpness"},
                        {118, 25, 21, 25, "vellix ev", "vellix_ev"}};
    const std::string families = "............VVVVPPPMMM.VVVMV.MMM"; // by flat mode
    for (const Row &row : rows) {
        for (size_t flat_mode = 0; flat_mode < 256; ++flat_mode) {
            SCOPED_TRACE(static_cast<int>(flat_mode) + row.id * 1000);
            setting(SETTINGS_SETUP_CURRENT_FLAT_MODE) = static_cast<uint8_t>(flat_mode);
            const char family = flat_mode < families.size() ? families[flat_mode] : '.';
            if (family == '.') {
                EXPECT_EQ(-1, set(row.id, 7));
                EXPECT_THAT(log_messages().back(),
                            testing::MatchesRegex("camera_if_settings_set_value_int\\([0-9]+\\): Flat mode\\[" +
                                                  std::to_string(static_cast<int8_t>(flat_mode)) +
                                                  "\\] doesn't support " + row.text + "\n"));
                continue;
            }
            const auto [group, action] = family == 'V'   ? std::pair{uint8_t{2}, row.video}
                                         : family == 'P' ? std::pair{uint8_t{3}, row.photo}
                                                         : std::pair{uint8_t{4}, row.multi_shot};
            camera.expect(group, action, {7});
            EXPECT_EQ(0, set(row.id, 0x107));
        }
        EXPECT_EQ(-1, camera_if_settings_set_value_int(camera.context(), row.id, 2, 9, 1, 1, nullptr, nullptr));
        EXPECT_EQ(std::string("Settings info is NULL, can't set ") + row.what, log_messages().back());
    }
}

TEST_F(SettingWrites, VideoIsoLimitAndMode)
{
    for (const auto &[id, action, name] : {std::tuple{13, uint8_t{23}, "iso_max"}, {102, uint8_t{48}, "iso_min"}}) {
        for (const uint8_t flat_mode : {uint8_t{12}, uint8_t{15}, uint8_t{23}}) {
            setting(SETTINGS_SETUP_CURRENT_FLAT_MODE) = flat_mode;
            camera.expect(2, 42, {0});
            EXPECT_EQ(0, set(id, 9));
            camera.expect(2, action, {3});
            camera.expect(2, 42, {1}, refused());
            EXPECT_EQ(-101, set(id, 3));
            camera.expect(2, action, {3}, refused());
            camera.expect(2, 42, {1});
            EXPECT_EQ(0, set(id, 3));
            EXPECT_EQ(std::string("Failed to set ") + name, log_messages().back());
            camera.expect(2, 42, {1}); // the limit is above its own limit and not sent
            EXPECT_EQ(0, set(id, 0x109));
        }
        setting(SETTINGS_SETUP_CURRENT_FLAT_MODE) = 14;
        camera.expect(2, action, {9}, refused());
        EXPECT_EQ(-101, set(id, 9));
    }
}

TEST_F(SettingWrites, ExposureTimesFitTheirSettingsFirst)
{
    // Photo: white balance read, moved, exposure.
    camera.expect(3, 12, {}, good({0}));
    camera.expect(3, 13, {2});
    camera.expect(17, 99, {4});
    EXPECT_EQ(0, set(19, 0x104));
    camera.expect(3, 12, {}, good({0}));
    camera.expect(3, 13, {2}, refused());
    EXPECT_EQ(-101, set(19, 4));
    EXPECT_EQ("zvc_photo_set_white_balance_best_fit error, -101\n", log_messages().back());

    // Multi-shot: night lapse rate, white balance read, exposure.
    setting(SETTINGS_MULTI_SHOT_NIGHTLAPSE_RATE) = 10; // 4 seconds
    camera.expect(4, 9, {9});
    camera.expect(4, 16, {}, refused());
    camera.expect(17, 99, {0, 0, 1, 5});
    EXPECT_EQ(0, set(31, 0x105, 4));
    camera.expect(4, 9, {9}, refused());
    EXPECT_EQ(-101, set(31, 5));
    EXPECT_EQ("zvc_multishot_nightlapse_rate_autofit error, -101\n", log_messages().back());
    setting(SETTINGS_MULTI_SHOT_NIGHTLAPSE_RATE) = 12; // has no interval
    EXPECT_EQ(-3, set(31, 5));
    setting(SETTINGS_MULTI_SHOT_NIGHTLAPSE_RATE) = 8;
    camera.expect(4, 16, {}, good({0}));
    camera.expect(17, 99, {5}, firmware_error(1));
    EXPECT_EQ(-1, set(31, 5));
}

TEST_F(SettingWrites, BroadcastFovKeepsTheFormat)
{
    camera.expect(5, 2, {}, good({9, 8, 0}));
    camera.expect(5, 3, {9, 8, 4});
    g_logLevel = ZV_LOG_INFO;
    EXPECT_EQ(0, set(43, 0x104));
    EXPECT_THAT(log_messages(), testing::IsSupersetOf({"res/fps/fov old, 9,8,0\n", "res/fps/fov new, 9,8,4\n"}));
    camera.expect(5, 2, {}, refused());
    EXPECT_EQ(-101, set(43, 4));
    EXPECT_EQ("zvc_broadcast_get_res_fps_fov error, -101\n", log_messages().back());
}

TEST_F(SettingWrites, OrientationFollowsTheCameraWhenLocked)
{
    const std::tuple<uint8_t, uint8_t, bool> cases[] = {{0, 1, false},  {1, 2, false},    {2, 4, false},
                                                        {3, 3, false},  {5, 2, true},     {4, 255, true},
                                                        {6, 255, true}, {0xFF, 255, true}};
    for (const auto &[actual, sent, unrecognized] : cases) {
        log_lines().clear();
        status.bytes[STATUS_SYSTEM_ACTUAL_ORIENTATION] = actual;
        camera.expect(7, 9, {sent});
        EXPECT_EQ(0, set(112, 255));
        EXPECT_EQ(unrecognized ? std::vector<std::string>{"Orientation[255] is unrecognized"}
                               : std::vector<std::string>{},
                  log_messages());
    }
    g_logLevel = ZV_LOG_DEBUG;
    camera.expect(7, 9, {1});
    EXPECT_EQ(0, set(112, 1));
    EXPECT_THAT(log_lines(), testing::Contains(testing::StartsWith("DEBUG Set orientation[1] @")));
}

TEST_F(SettingWrites, FovChoosesTheResolutionInEasyVideo)
{
    setting(SETTINGS_VIDEO_RESOLUTION) = 18;
    setting(SETTINGS_VIDEO_FPS) = 1;
    setting(SETTINGS_VIDEO_ASPECT_RATIO) = 1;
    setting(SETTINGS_SETUP_CURRENT_FLAT_MODE) = 12;
    const auto preset = [this](uint8_t low) {
        const uint8_t bytes[] = {low, 0, 0x0A, 0};
        std::copy(bytes, bytes + 4, status.bytes + STATUS_APP_ACTIVE_VIDEO_PRESETS);
    };
    const uint8_t by_preset[] = {1, 1, 9, 18}; // the last is none of the three
    for (uint8_t i = 0; i < 4; ++i) {
        preset(i);
        camera.expect(2, 3, {by_preset[i], 1, 3});
        EXPECT_EQ(0, set(121, 3));
    }
    EXPECT_TRUE(log_lines().empty());
    preset(1);
    camera.expect(2, 3, {18, 1, 0}); // no match: the present resolution goes out
    EXPECT_EQ(0, set(121, 0));
    EXPECT_EQ("Unsupported FPS value:1 given for Easy HDR Widescreen fov:0", log_messages().back());
    EXPECT_EQ(-3, set(121, 0x104)); // the value goes on whole, above the limit of the write

    setting(SETTINGS_SETUP_CURRENT_FLAT_MODE) = 13;
    camera.expect(2, 96, {4});
    EXPECT_EQ(0, set(121, 0x104));
    setting(SETTINGS_SETUP_CURRENT_FLAT_MODE) = 12;
    for (const uint8_t not_easy : {uint8_t{1}, uint8_t{2}}) {
        setting(SETTINGS_SETUP_CAMERA_UX_MODE) = not_easy;
        camera.expect(2, 96, {4});
        EXPECT_EQ(0, set(121, 4));
    }
}

TEST_F(SettingWrites, ScheduledCaptureSendsFormatAndTime)
{
    struct Case {
        uint32_t value;
        int format; // -1: not sent
        Bytes schedule;
    };
    const Case cases[] = {{0x0779, 0, {1, 7, 30}}, {0, -1, {0, 0, 0}},       {0x10000, -1, {0, 0, 0}},
                          {0x8000, 0, {0, 0, 0}},  {0x17EF, 1, {1, 23, 59}}, {0x0002, 1, {0, 0, 0}}};
    for (const Case &c : cases) {
        if (c.format >= 0) {
            camera.expect(1, 19, {static_cast<uint8_t>(c.format)});
        }
        camera.expect(1, 17, c.schedule);
        EXPECT_EQ(0, set(168, c.value));
    }
    EXPECT_EQ(-3, set(168, 24 << 8 | 63 << 2));
    EXPECT_EQ("Error setting scheduled capture format, invalid hour[24] for 24hr clock", log_messages().back());
    EXPECT_EQ(-3, set(168, 60 << 2));
    EXPECT_EQ("Error setting scheduled capture format, invalid minute[60]", log_messages().back());
    camera.expect(1, 19, {1}, refused());
    EXPECT_EQ(-101, set(168, 3));
    EXPECT_EQ("Error setting scheduled capture format", log_messages().back());
}

TEST_F(SettingWrites, UnknownPresetsFallBack)
{
    camera.expect(17, 12, {0, 0, 0x0A, 0});
    EXPECT_EQ(0, set(186, 7));
    camera.expect(17, 12, {0, 0, 0x0D, 0});
    EXPECT_EQ(0, set(187, 8));
    EXPECT_THAT(log_messages(),
                ElementsAre("Unknown option id:7 given for Video Easy Presets. Defaulting to Easy Video",
                            "Unknown value:8 given for Multi-Shot Easy Presets, returing Easy RushLapse"));
}

TEST_F(SettingWrites, EasySpeedsAreFormats)
{
    struct Format {
        uint8_t res, fps_60, fps_50;
    };
    const Format formats[] = {
        {4, 0, 13}, {1, 1, 2},  {24, 5, 6}, {24, 8, 9}, {4, 0, 13}, {1, 1, 2},  {24, 5, 6}, {24, 8, 9}, // from 100
        {9, 0, 13}, {9, 1, 2},  {9, 5, 6},  {9, 8, 9},  {9, 0, 13}, {9, 1, 2},  {9, 5, 6},  {9, 8, 9},  // from 108
        {1, 5, 6},  {1, 5, 6},  {29, 8, 9}, {29, 8, 9}, {29, 5, 6}, {29, 5, 6}, {26, 8, 9}, {26, 8, 9}, // from 116
        {28, 5, 6}, {28, 5, 6}, {1, 8, 9},  {1, 8, 9},  {4, 8, 9},  {4, 8, 9},  {4, 5, 6},  {4, 5, 6},  // from 124
        {30, 5, 6}, {30, 5, 6}, {30, 8, 9}, {30, 8, 9}, {28, 8, 9}, {28, 8, 9}};                        // from 132
    const std::map<uint32_t, uint32_t> with_horizon = {{102, 116}, {106, 117}};
    const std::set<uint32_t> leveled = {100, 101, 104, 105, 108, 112};
    for (const uint8_t fov : {uint8_t{3}, uint8_t{8}, uint8_t{10}}) {
        for (const uint8_t video_format : {uint8_t{0}, uint8_t{1}, uint8_t{0xFF}}) {
            setting(SETTINGS_VIDEO_FOV) = fov;
            setting(SETTINGS_SETUP_VIDEO_FORMAT) = video_format;
            for (uint32_t speed = 100; speed < 138; ++speed) {
                SCOPED_TRACE(speed);
                const auto changed = with_horizon.find(speed);
                const Format &format =
                    formats[(fov != 3 && changed != with_horizon.end() ? changed->second : speed) - 100];
                const uint8_t new_fov = fov == 3 ? uint8_t{3} : leveled.count(speed) != 0 ? uint8_t{8} : uint8_t{10};
                camera.expect(2, 3, {format.res, video_format == 0 ? format.fps_60 : format.fps_50, new_fov});
                EXPECT_EQ(0, set(176, 0x100 + speed));
            }
            EXPECT_EQ(-3, set(176, 99));
            EXPECT_EQ(-3, set(176, 138));
        }
    }
    EXPECT_TRUE(log_lines().empty());
    setting(SETTINGS_VIDEO_RESOLUTION) = 24;
    setting(SETTINGS_VIDEO_FPS) = 8;
    g_logLevel = ZV_LOG_INFO;
    EXPECT_EQ(-3, set(176, 0));
    EXPECT_THAT(log_messages(), ElementsAre("res/fps/fov old, 24,8,10\n"));
}

// ---- Easy presets ----

// A preset's rules, one per aspect ratio and its fields of view: what each pair of frame rates gives, the name of
// both in the log, and that of a frame rate that is not offered.
struct Rule {
    std::set<uint32_t> aspect_ratios;
    std::set<uint32_t> fovs;
    uint32_t res_1x, res_2x, res_4x, res_8x; // 0: not offered
    std::string fov_place, fps_place;
};

struct Preset {
    void (*resolve)(uint32_t *, uint32_t, uint32_t, uint32_t);
    std::string name;
    std::vector<Rule> rules;
};

const Preset PRESETS[] = {
    {easy_5_3k_video_get_res,
     "Video",
     {{{1}, {0, 4}, 24, 24, 1, 4, "Video Widescreen", "Video Widescreen"},
      {{1}, {3}, 24, 24, 1, 0, "Video Widescreen", "Video Widescreen"},
      {{1}, {8}, 0, 0, 1, 4, "Video Widescreen", "Video Widescreen"},
      {{1}, {9, 10}, 24, 1, 0, 0, "Video Widescreen", "Video Widescreen"},
      {{4}, {0}, 1, 1, 0, 0, "Video Mobile", "Video Mobile"},
      {{3}, {0}, 24, 1, 0, 0, "Video Universal", "Video Universal"}}},
    {easy_4k_video_get_res,
     "HDR",
     {{{1}, {0, 4}, 1, 1, 0, 4, "HDR Widescreen", "HDR Widescreen"},
      {{1}, {3}, 1, 1, 1, 0, "HDR Widescreen", "HDR Widescreen"},
      {{1}, {8}, 0, 0, 1, 4, "HDR Widescreen", "Video Widescreen"},
      {{1}, {9, 10}, 1, 1, 0, 0, "HDR Widescreen", "HDR Widescreen"},
      {{3, 4}, {0}, 1, 1, 0, 0, "HDR Universal", "HDR Universal"}}},
    {easy_1080p_video_get_res,
     "HDR",
     {{{1}, {0, 4}, 9, 9, 9, 9, "HDR Widescreen", "HDR Widescreen"},
      {{1}, {3, 10}, 9, 9, 9, 0, "HDR Widescreen", "HDR Widescreen"},
      {{1}, {8}, 0, 0, 0, 9, "HDR Widescreen", "Video Widescreen"},
      {{3}, {0}, 9, 9, 0, 0, "HDR Universal", "HDR Universal"}}},
};

// The resolution, or what is logged in its place.
std::pair<uint32_t, std::string> expected(const Preset &preset, uint32_t fps, uint32_t fov, uint32_t aspect_ratio)
{
    std::string line = "Unsupported Aspect Ratio:" + std::to_string(aspect_ratio) + " given for Easy " + preset.name;
    for (const Rule &rule : preset.rules) {
        if (rule.aspect_ratios.count(aspect_ratio) == 0) {
            continue;
        }
        if (rule.fovs.count(fov) == 0) {
            line = "Unsupported FOV:" + std::to_string(fov) + " given for Easy " + rule.fov_place;
            continue;
        }
        const std::map<uint32_t, uint32_t> by_fps = {{8, rule.res_1x}, {9, rule.res_1x}, {5, rule.res_2x},
                                                     {6, rule.res_2x}, {1, rule.res_4x}, {2, rule.res_4x},
                                                     {0, rule.res_8x}, {13, rule.res_8x}};
        const auto res = by_fps.find(fps);
        if (res != by_fps.end() && res->second != 0) {
            return {res->second, ""};
        }
        return {0, "Unsupported FPS value:" + std::to_string(fps) + " given for Easy " + rule.fps_place +
                       " fov:" + std::to_string(fov)};
    }
    return {0, line};
}

TEST(EasyPresets, ResolveEveryCombination)
{
    constexpr uint32_t PRESET_RES = 77;
    for (const Preset &preset : PRESETS) {
        for (uint32_t i = 0; i < 16 * 16 * 8; ++i) {
            const uint32_t fps = i % 16;
            const uint32_t fov = i / 16 % 16;
            const uint32_t aspect_ratio = i / 256;
            const auto [res, line] = expected(preset, fps, fov, aspect_ratio);
            SCOPED_TRACE(testing::Message() << fps << " " << fov << " " << aspect_ratio);
            reset();
            uint32_t resolved = PRESET_RES;
            preset.resolve(&resolved, fps, fov, aspect_ratio);
            EXPECT_EQ(res != 0 ? res : PRESET_RES, resolved);
            EXPECT_EQ(line, log_messages().empty() ? "" : log_messages().back());
        }
    }
}

} // namespace
