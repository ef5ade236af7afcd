// Video format selection. The operations of one exchange are in zvc_operations.cpp.
#include "zvc_video.h"

#include "camera_double.h"
#include "interpose.h"
#include "zvc_commands_zvx.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>
#include <optional>

using namespace test;
using testing::Contains;
using testing::ElementsAre;

namespace {

Bytes settings_record(uint8_t flat_mode, size_t size = 40)
{
    Bytes record(size, 0xEE);
    record[25] = flat_mode;
    return record;
}

// The six reads that every selection begins with.
void expect_reads(CameraDouble &camera, const Bytes &flat_mode = good(settings_record(12)),
                  const Bytes &lens = good({0}), const Bytes &ux_mode = good({1}), const Bytes &format = good({0}),
                  const Bytes &profile = good({0}))
{
    camera.expect(7, 18, {}, good({0}));
    camera.expect(7, 28, {}, flat_mode);
    camera.expect(8, 37, {}, lens);
    camera.expect(7, 73, {}, ux_mode);
    camera.expect(7, 18, {}, format);
    camera.expect(2, 99, {}, profile);
}

class VideoFormat : public testing::Test {
  protected:
    void SetUp() override { reset(); }
    void TearDown() override { gFunctionMap = &zvxCommands; }
};

TEST_F(VideoFormat, ChoosesWhatTheCameraOffers)
{
    struct Horizon {
        uint8_t fov;
        Bytes answer;
    };
    struct Case {
        const char *name;
        int32_t res, fps, fov;
        Bytes fps_list, fov_list; // the answers; an empty second one: not asked
        uint8_t suggested;
        std::vector<Horizon> horizons;
        std::optional<Bytes> written;
        int32_t result;
        std::string last_line;
    };
    const char filter[] = "REMOTE_CAPABILITY_APPLY_FILTER_SETTING_LIST_GET ";
    // clang-format off
    const Case cases[] = {
        {"all offered", 1, 8, 4, good({3, 5, 8, 10}), good({2, 0, 4}), 8, {}, Bytes{1, 8, 4}, 0, ""},
        {"first rate", 1, 1, 4, good({2, 5, 8}), good({2, 0, 4}), 5, {}, Bytes{1, 5, 4}, 0, ""},
        {"rate compared whole", 1, 0x108, 4, good({2, 5, 8}), good({1, 4}), 5, {}, Bytes{1, 5, 4}, 0, ""},
        {"first field of view", 1, 8, 9, good({1, 8}), good({2, 4, 0}), 8, {}, Bytes{1, 8, 4}, 0, ""},
        {"no fields of view", 1, 1, 9, good({2, 5, 8}), good({0}), 5, {}, Bytes{1, 5, 9}, 0, ""},
        {"consent wins over the wanted", 1, 8, 8, good({1, 8}), good({3, 4, 10, 8}), 8, {{10, good({1})}}, Bytes{1, 8, 10}, 0, ""},
        {"consent is 2", 1, 8, 10, good({1, 8}), good({2, 4, 8}), 8, {{8, good({2, 0})}}, Bytes{1, 8, 8}, 0, ""},
        {"switched off consents", 1, 8, 8, good({1, 8}), good({2, 4, 10}), 8, {{10, {2}}}, Bytes{1, 8, 10}, 0, ""},
        {"no consent, wanted further down", 1, 8, 8, good({1, 8}), good({3, 4, 10, 8}), 8, {{10, good({3})}}, Bytes{1, 8, 8}, 0, ""},
        {"no consent, first", 1, 8, 10, good({1, 8}), good({1, 8}), 8, {{8, good({0})}}, Bytes{1, 8, 8}, 0, ""},
        {"empty answer is no consent", 1, 8, 10, good({1, 8}), good({2, 4, 8}), 8, {{8, {0, 9, 9, 9, 0, 0, 0, 1}}}, Bytes{1, 8, 4}, 0, ""},
        {"no horizon wanted", 1, 8, 4, good({1, 8}), good({2, 8, 10}), 8, {}, Bytes{1, 8, 8}, 0, ""},
        {"horizon refused", 1, 8, 8, good({1, 8}), good({2, 10, 8}), 8, {{10, refused()}}, {}, -101, "Failed to get horizon supported option, return err:-101"},
        {"wanted before horizon", 1, 8, 8, good({1, 8}), good({2, 8, 10}), 8, {}, Bytes{1, 8, 8}, 0, ""},
        {"res beyond the write", 31, 8, 4, good({1, 8}), good({1, 4}), 8, {}, {}, -3, "invalid res, 31"},
        {"rates refused", 1, 8, 4, refused(), {}, 8, {}, {}, -101, filter + std::string("error, -101")},
        {"rates empty answer", 1, 8, 4, good({}), {}, 8, {}, {}, -3, filter + std::string("invalid rsp_size, 0")},
        {"no rates", 1, 8, 4, good({0, 8}), {}, 8, {}, {}, -3, filter + std::string("invalid fps_count 0, rsp_size, 2")},
        {"rates cut", 1, 8, 4, good({5, 8, 5, 1, 0}), {}, 8, {}, {}, -3, filter + std::string("invalid fps_count 5, rsp_size, 5")},
        {"four rates in five bytes", 1, 9, 4, good({4, 8, 5, 1, 9}), good({1, 4}), 9, {}, Bytes{1, 9, 4}, 0, ""},
        {"views error", 1, 8, 4, good({1, 8}), firmware_error(2), 8, {}, {}, -1, filter + std::string("error, -1")},
        {"views empty answer", 1, 8, 4, good({1, 8}), good({}), 8, {}, {}, -3, filter + std::string("invalid rsp_size, 0")},
        {"views cut", 1, 8, 4, good({1, 8}), good({2, 4}), 8, {}, {}, -3, filter + std::string("invalid fov_count 2, rsp_size, 2")},
    };
    // clang-format on
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        reset();
        CameraDouble camera;
        expect_reads(camera);
        const auto res = static_cast<uint8_t>(c.res);
        camera.expect(18, 5, {0, 1, 0, 0, 3, 0, res, 7, 0, 45, 0, 0, 2}, c.fps_list);
        if (!c.fov_list.empty()) {
            camera.expect(18, 5, {0, 1, 0, 0, 3, 0, res, 2, c.suggested, 45, 0, 0, 1}, c.fov_list);
        }
        for (const Horizon &horizon : c.horizons) {
            camera.expect(2, 91, {res, c.suggested, horizon.fov}, horizon.answer);
        }
        if (c.written) {
            camera.expect(2, 3, *c.written);
        }
        EXPECT_EQ(c.result, zvc_video_set_res_fps_fov(camera.context(), c.res, c.fps, c.fov));
        EXPECT_EQ(c.last_line, log_messages().empty() ? "" : log_messages().back());
    }
}

TEST_F(VideoFormat, AsksForTheCamerasSituation)
{
    CameraDouble camera;
    expect_reads(camera, good(settings_record(24)), good({2}), good({0}), good({1}), good({6}));
    camera.expect(18, 5, {2, 0, 0, 10, 3, 0, 24, 7, 1, 45, 6, 0, 2}, good({1, 8}));
    camera.expect(18, 5, {2, 0, 0, 10, 3, 0, 24, 2, 8, 45, 6, 0, 1}, good({1, 4}));
    camera.expect(2, 3, {24, 8, 4}, refused());
    g_logLevel = ZV_LOG_DEBUG;
    EXPECT_EQ(-101, zvc_video_set_res_fps_fov(camera.context(), 24, 8, 4));
    EXPECT_THAT(log_messages(),
                ElementsAre("new_res, 24", "new res/ curr fps/ curr fov, 24,8,4",
                            "Querying CAP Remote API filter, lens:2 ux_mode:0 power_profile:0 capture_mode:10 "
                            "resolution:24 video_profile:6 anti_flicker:1",
                            "Remote Capability Suggested_fps, 8",
                            "Querying CAP Remote API filter, lens:2 ux_mode:0 power_profile:0 capture_mode:10 "
                            "resolution:24 video_profile:6 fps:8",
                            "FOV Index 0 is 4", "Reusing new fov same as curr, 4", "Setting new res:24 fps:8 fov:4",
                            "zvc_video_set_res_fps_fov res/fps/fov, 24,8,4", "no ack, got 1"));
}

TEST_F(VideoFormat, GoesOnWithDefaultsButNeedsTheVideoFormat)
{
    CameraDouble camera;
    expect_reads(camera, good(settings_record(12, 39)), good({}), refused(), firmware_error(3), good({}));
    camera.expect(18, 5, {0, 1, 0, 0, 3, 0, 1, 7, 0, 45, 0, 0, 2}, refused());
    g_logLevel = ZV_LOG_WARN;
    EXPECT_EQ(-101, zvc_video_set_res_fps_fov(camera.context(), 1, 8, 4));
    for (const char *line : {"rsp_size exp/act, 40,39", "No corresponding capture_mode for flat_mode -1",
                             "zvc_system_get_lens_type error, -3", "zvc_setup_get_camera_ux_mode error, -101",
                             "zvc_setup_get_video_format error, -1", "zvc_video_get_video_profile error, -3"}) {
        EXPECT_THAT(log_messages(), Contains(line));
    }
    camera.expect(7, 18, {}, refused());
    EXPECT_EQ(-101, zvc_video_set_res_fps_fov(camera.context(), 1, 8, 4));
    EXPECT_EQ("ERROR zvc_setup_get_video_format error, -101", log_lines().back().substr(0, 44));
}

TEST_F(VideoFormat, MapsEveryFlatModeToItsCaptureMode)
{
    const std::map<int, uint8_t> capture_modes = {{12, 0},  {13, 1},  {15, 2},  {16, 3}, {17, 4},  {18, 5},
                                                  {19, 6},  {20, 7},  {21, 8},  {23, 9}, {24, 10}, {25, 11},
                                                  {26, 12}, {29, 13}, {30, 14}, {31, 15}};
    for (int flat_mode = 10; flat_mode < 34; ++flat_mode) {
        SCOPED_TRACE(flat_mode);
        reset();
        g_logLevel = ZV_LOG_WARN;
        CameraDouble camera;
        const auto known = capture_modes.find(flat_mode);
        const uint8_t capture_mode = known != capture_modes.end() ? known->second : 0;
        expect_reads(camera, good(settings_record(static_cast<uint8_t>(flat_mode))));
        camera.expect(18, 5, {0, 1, 0, capture_mode, 3, 0, 1, 7, 0, 45, 0, 0, 2}, refused());
        EXPECT_EQ(-101, zvc_video_set_res_fps_fov(camera.context(), 1, 8, 4));
        const size_t warnings = known != capture_modes.end() ? 0 : 1;
        EXPECT_EQ(2 + warnings, log_lines().size());
    }
}

// An adapter of a camera without the capability query for one of the listed keys.
class WithoutQuery : public ZVXCommand {
  public:
    explicit WithoutQuery(uint8_t key) : m_key(key) {}
    int32_t send_remote_api(zvc_msg_q_context_t *context, const uint8_t *request, int32_t size, uint8_t **rsp,
                            uint16_t *rspsize) override
    {
        if (request[1] == 18 && request[17] == m_key) {
            return ZV_ERR_NOT_SUPPORTED;
        }
        return ZVXCommand::send_remote_api(context, request, size, rsp, rspsize);
    }

  private:
    uint8_t m_key;
};

TEST_F(VideoFormat, WritesUnfilteredWithoutTheCapabilityService)
{
    for (const uint8_t key : {uint8_t{2}, uint8_t{1}}) {
        WithoutQuery adapter(key);
        gFunctionMap = &adapter;
        CameraDouble camera;
        expect_reads(camera);
        if (key == 1) {
            camera.expect(18, 5, {0, 1, 0, 0, 3, 0, 1, 7, 0, 45, 0, 0, 2}, good({1, 8}));
        }
        camera.expect(2, 3, {1, 5, 9});
        EXPECT_EQ(0, zvc_video_set_res_fps_fov(camera.context(), 1, 5, 9));
        EXPECT_TRUE(log_lines().empty());
    }
}

TEST_F(VideoFormat, ResetChoosesAnOfferedResolution)
{
    Bytes many(256, 30);
    many[0] = 255;
    many[200] = 2;
    struct Case {
        uint8_t current;
        Bytes list;
        uint8_t chosen;
    };
    const Case cases[] = {{9, {3, 1, 9, 4}, 9},   {24, {3, 1, 9, 30}, 1}, {1, {2, 9, 4}, 9},
                          {20, {3, 30, 9, 4}, 4}, {20, {2, 25, 22}, 25},  {5, many, 2}};
    for (const Case &c : cases) {
        SCOPED_TRACE(int{c.current});
        CameraDouble camera;
        camera.expect(2, 2, {}, good({c.current, 8, 4}));
        camera.expect(18, 4, {0}, good(c.list));
        expect_reads(camera);
        camera.expect(18, 5, {0, 1, 0, 0, 3, 0, c.chosen, 7, 0, 45, 0, 0, 2}, good({1, 8}));
        camera.expect(18, 5, {0, 1, 0, 0, 3, 0, c.chosen, 2, 8, 45, 0, 0, 1}, good({1, 4}));
        camera.expect(2, 3, {c.chosen, 8, 4});
        EXPECT_EQ(0, zvc_video_reset_to_valid_res_fps_fov(camera.context()));
    }
}

TEST_F(VideoFormat, ResetStopsAtAFailure)
{
    CameraDouble camera;
    camera.expect(2, 2, {}, refused());
    EXPECT_EQ(-101, zvc_video_reset_to_valid_res_fps_fov(camera.context()));
    EXPECT_EQ("zvc_video_get_res_fps_fov err=, -101", log_messages().back());
    for (const auto &[answer, result] : {std::pair{refused(), -101}, {good({}), -3}, {good({0}), -3}}) {
        camera.expect(2, 2, {}, good({1, 8, 4}));
        camera.expect(18, 4, {0}, answer);
        EXPECT_EQ(result, zvc_video_reset_to_valid_res_fps_fov(camera.context()));
        EXPECT_EQ("zvc_get_res_list err=, " + std::to_string(result), log_messages().back());
    }
    camera.expect(2, 2, {}, good({1, 8, 4}));
    camera.expect(18, 4, {0}, good({1, 1}));
    camera.expect(7, 18, {}, refused());
    EXPECT_EQ(-101, zvc_video_reset_to_valid_res_fps_fov(camera.context()));
}

TEST_F(VideoFormat, ListsTheResolutions)
{
    const std::string command = "REMOTE_CAPABILITY_SETTING_LIST_GET_BASED_ON_CURRENT_SETTINGS ";
    CameraDouble camera;
    uint8_t list[255] = {};
    uint16_t count = 77;
    for (const auto &[answer, result, line] : {std::tuple{refused(), -101, "error, -101"},
                                               {good({}), -3, "invalid rsp_size, 0"},
                                               {good({3, 1, 9}), -3, "invalid res_count 3, rsp_size, 3"}}) {
        camera.expect(18, 4, {0}, answer);
        EXPECT_EQ(result, zvc_get_res_list(camera.context(), list, &count));
        EXPECT_EQ(command + line, log_messages().back());
        EXPECT_EQ(77, count);
    }
    camera.expect(18, 4, {0}, good({3, 1, 9, 30, 4}));
    EXPECT_EQ(0, zvc_get_res_list(camera.context(), list, &count));
    EXPECT_EQ(3, count);
    EXPECT_EQ((Bytes{1, 9, 30, 0}), Bytes(list, list + 4));
    camera.expect(18, 4, {0}, good({0}));
    EXPECT_EQ(0, zvc_get_res_list(camera.context(), list, &count));
    EXPECT_EQ(0, count);
    EXPECT_EQ(-3, zvc_get_res_list(camera.context(), nullptr, &count));
}

TEST_F(VideoFormat, ReadsTheSettingsRecord)
{
    CameraDouble camera;
    Bytes record(57);
    std::iota(record.begin(), record.end(), uint8_t{0});
    record[25] = 0xF0;
    record[43] = 0xFE;
    int32_t res = 7;
    int32_t fps = 7;
    int32_t shutter = 7;
    camera.expect(7, 30, {}, good(record));
    EXPECT_EQ(0, zvc_video_get_current_res_fps_shutter(camera.context(), &res, &fps, &shutter));
    EXPECT_THAT((std::vector{res, fps, shutter}), ElementsAre(42, -2, 56));
    camera.expect(7, 30, {}, good(record));
    EXPECT_EQ(0, zvc_video_get_current_res_fps_shutter(camera.context(), nullptr, nullptr, &shutter));

    record.pop_back();
    for (const auto &[answer, result] : {std::pair{good(record), -3}, {good({}), -3}, {refused(), -101}}) {
        res = fps = shutter = 7;
        camera.expect(7, 30, {}, answer);
        EXPECT_EQ(result, zvc_video_get_current_res_fps_shutter(camera.context(), &res, nullptr, &shutter));
        EXPECT_THAT((std::vector{res, fps, shutter}), ElementsAre(-1, 7, -1));
    }

    int32_t flat_mode = 7;
    record.resize(40);
    camera.expect(7, 28, {}, good(record));
    EXPECT_EQ(0, zvc_video_get_current_flat_mode(camera.context(), &flat_mode));
    EXPECT_EQ(-16, flat_mode);
    EXPECT_EQ(-3, zvc_video_get_current_flat_mode(camera.context(), nullptr));
    EXPECT_EQ("null flat_mode", log_messages().back());
}

} // namespace
