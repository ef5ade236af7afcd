// Every camera operation of one exchange: its request byte for byte, and what it makes of each kind of answer.
#include "camera_double.h"
#include "csi_double.h"
#include "interpose.h"
#include "zvc_broadcast.h"
#include "zvc_fwupdate.h"
#include "zvc_multishot.h"
#include "zvc_photo.h"
#include "zvc_settings.h"
#include "zvc_setup.h"
#include "zvc_storage.h"
#include "zvc_video.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>

using namespace test;
using testing::ElementsAre;

namespace {

using Context = zvc_msg_q_context_t;
using Values = std::vector<int64_t>;
using Lines = std::vector<std::string>;

// Level and message of the lines that one source file logged.
Lines messages_of(const std::string &file)
{
    Lines messages;
    for (const std::string &line : log_lines()) {
        if (line.find(" @" + file + ":") != std::string::npos) {
            messages.push_back(line.substr(0, line.rfind(" @")));
        }
    }
    return messages;
}

// What a camera can make of a request besides answering it.
struct Failure {
    Bytes answer; // empty: none
    int32_t result;
};
const Failure FAILURES[] = {{refused(5), -101}, {firmware_error(7), -1}, {{}, -81}};

void expect_failure(CameraDouble &camera, const Failure &failure, uint8_t group, uint8_t action, const Bytes &payload)
{
    if (failure.answer.empty()) {
        camera.expect_silence(group, action, payload);
    } else {
        camera.expect(group, action, payload, failure.answer);
    }
}

// ---- Writes ----

struct Write {
    const char *name;
    int32_t (*call)(Context *context);
    uint8_t group, action;
    Bytes payload;
    const char *file; // that logs `line`
    const char *line; // empty: none
};

#define WRITE(function, ...) #function, [](Context * c) { return function(c __VA_OPT__(, ) __VA_ARGS__); }

const char APP[] = "zvc_app.cpp", SYSTEM[] = "zvc_system.cpp", AUDIO[] = "zvc_audio.cpp", PRESET[] = "zvc_preset.cpp";
const char VIDEO[] = "zvc_video.cpp", STREAM[] = "zvc_stream.cpp", PHOTO[] = "zvc_photo.cpp";
const char MULTISHOT[] = "zvc_multishot.cpp", BROADCAST[] = "zvc_broadcast.cpp", SETUP[] = "zvc_setup.cpp";
const char SETTINGS[] = "zvc_settings.cpp", FWUPDATE[] = "zvc_fwupdate.cpp", STORAGE[] = "zvc_storage.cpp";

// clang-format off
const Write WRITES[] = {
    {WRITE(zvc_video_set_res, 300), 2, 95, {44}, VIDEO, ""},
    {WRITE(zvc_video_set_fov, 4), 2, 96, {4}, VIDEO, ""},
    {WRITE(zvc_video_set_fps, 13), 2, 97, {13}, VIDEO, ""},
    {WRITE(zvc_video_vellix_reset), 2, 26, {}, VIDEO, ""},
    {WRITE(zvc_video_vellix_iso_set, 9), 2, 23, {9}, VIDEO, "INFO iso_max, 9"},
    {WRITE(zvc_video_vellix_iso_min_set, -1), 2, 48, {0xFF}, VIDEO, "INFO iso_min, -1"},
    {WRITE(zvc_video_vellix_iso_mode_set, 1), 2, 42, {1}, VIDEO, "INFO iso_mode, 1"},
    {WRITE(zvc_video_set_video_bit_rate, 0x101), 2, 68, {1}, VIDEO, "INFO bit_rate, 257"},
    {WRITE(zvc_video_set_video_bit_depth, 2), 2, 93, {2}, VIDEO, "INFO bit_depth, 2"},
    {WRITE(zvc_video_set_rushlapse_speed_ramp, 6), 2, 81, {6}, VIDEO, ""},
    {WRITE(zvc_video_set_rushlapse_speed_ramp_active, 1), 2, 83, {1}, VIDEO, ""},
    {WRITE(zvc_stream_set_gop_size, 15), 10, 3, {15}, STREAM, ""},
    {WRITE(zvc_stream_set_idr_interval, 2), 10, 5, {2}, STREAM, ""},
    {WRITE(zvc_stream_set_bit_rate, 0x1234), 10, 7, {0x34}, STREAM, ""},
    {WRITE(zvc_photo_vellix_reset), 3, 22, {}, PHOTO, ""},
    {WRITE(zvc_photo_vellix_iso_set, 5), 3, 19, {5}, PHOTO, "INFO iso_max, 5\n"},
    {WRITE(zvc_photo_vellix_iso_min_set, 3), 3, 29, {3}, PHOTO, "INFO iso_min, 3\n"},
    {WRITE(zvc_multishot_vellix_reset), 4, 26, {}, MULTISHOT, ""},
    {WRITE(zvc_multishot_timelapse_rate_set, 11), 4, 7, {11}, MULTISHOT, "INFO timelapse_rate, 11\n"},
    {WRITE(zvc_multishot_nightlapse_rate_set, 13), 4, 9, {13}, MULTISHOT, "INFO nightlapse_rate, 13\n"},
    {WRITE(zvc_multishot_vellix_iso_set, 4), 4, 23, {4}, MULTISHOT, "INFO iso_max, 4\n"},
    {WRITE(zvc_multishot_vellix_iso_min_set, 2), 4, 34, {2}, MULTISHOT, "INFO iso_min, 2\n"},
    {WRITE(zvc_broadcast_set_default_sub_mode, 3), 5, 1, {3}, BROADCAST, ""},
    {WRITE(zvc_broadcast_set_res_fps_fov, 0x109, 8, 4), 5, 3, {9, 8, 4}, BROADCAST, ""},
    {WRITE(zvc_broadcast_set_record_res_fps_fov, 200, 99, 77), 5, 5, {200, 99, 77}, BROADCAST, ""},
    {WRITE(zvc_broadcast_set_start, 1), 5, 6, {1}, BROADCAST, ""},
    {WRITE(zvc_broadcast_set_stop), 5, 7, {}, BROADCAST, ""},
    {WRITE(zvc_broadcast_set_enable, 1), 5, 15, {1}, BROADCAST, ""},
    {WRITE(zvc_broadcast_set_gop_size, 0x01020304), 5, 17, {1, 2, 3, 4}, BROADCAST, ""},
    {WRITE(zvc_broadcast_set_idr_interval, 30), 5, 19, {0, 0, 0, 30}, BROADCAST, ""},
    {WRITE(zvc_broadcast_set_bit_rate, 4000000), 5, 21, {0, 0x3D, 0x09, 0}, BROADCAST, ""},
    {WRITE(zvc_broadcast_set_window_size, 9), 5, 23, {9}, BROADCAST, ""},
    {WRITE(zvc_app_set_mode, 2), 1, 1, {2}, APP, "INFO m, 2"},
    {WRITE(zvc_app_set_set_mode, 3), 1, 1, {3}, APP, "INFO m, 3"},
    {WRITE(zvc_app_set_mode_sub_mode, 1, 2), 1, 5, {1, 2}, APP, "INFO m/sm, 1,2"},
    {WRITE(zvc_app_set_digital_zoom, 50), 1, 12, {50}, APP, "INFO z, 50"},
    {WRITE(zvc_app_set_capture_delay, 3), 1, 15, {3}, APP, ""},
    {WRITE(zvc_system_set_lens_mode, 1), 17, 22, {1, 0xFF}, SYSTEM, ""},
    {WRITE(zvc_system_set_lens, 1), 17, 22, {0xFF, 1}, SYSTEM, ""},
    {WRITE(zvc_system_set_lens_type, 2), 8, 38, {2}, SYSTEM, ""},
    {WRITE(zvc_system_set_lens_status, -2), 8, 47, {0xFE}, SYSTEM, "INFO lens_status:-2"},
    {WRITE(zvc_system_set_button, 4, 9), 8, 18, {4, 9}, SYSTEM, ""},
    {WRITE(zvc_system_set_rc_rotation, 200), 7, 77, {200}, SYSTEM, ""},
    {WRITE(zvc_setup_set_orientation, 255), 7, 9, {255}, SETUP, ""},
    {WRITE(zvc_audio_set_audio_option, 2), 14, 3, {2}, AUDIO, ""},
    {WRITE(zvc_audio_set_mic_option, 5), 14, 11, {5}, AUDIO, ""},
    {WRITE(zvc_settings_set_onscreen_control, 33, 2), 17, 17, {2, 33}, SETTINGS, "INFO control_type_id=2 onscreen_control_type=33"},
    {WRITE(zvc_preset_onscreen_shortcuts_reset), 17, 18, {}, PRESET, ""},
    {WRITE(zvc_storage_delete_last), 9, 9, {}, STORAGE, ""},
    {WRITE(zvc_storage_delete_all), 9, 10, {}, STORAGE, ""},
    {WRITE(zvc_fwupdate_flashing_start), 11, 0, {}, FWUPDATE, ""},
    {WRITE(zvc_fwupdate_download_done, true), 11, 3, {1}, FWUPDATE, "INFO REMOTE_FWUPDATE_DOWNLOAD_DONE user_prompt, 1\n"},
    {WRITE(zvc_video_set_res_fps_fov_camera, 30, 14, 11), 2, 3, {30, 14, 11}, VIDEO, "DEBUG zvc_video_set_res_fps_fov res/fps/fov, 30,14,11"},
    {WRITE(zvc_video_set_easy_res_fps_fov, 4, 0xFFFFFFFF, 8), 2, 3, {4, 0xFF, 8}, VIDEO, "DEBUG zvc_video_set_res_fps_fov res/fps/fov, 4,-1,8"},
};
// clang-format on

TEST(Operations, WritesSendTheirBytesAndReturnTheAnswer)
{
    for (const Write &write : WRITES) {
        SCOPED_TRACE(write.name);
        reset();
        g_logLevel = ZV_LOG_INFO;
        CameraDouble camera;
        camera.expect(write.group, write.action, write.payload);
        EXPECT_EQ(0, write.call(camera.context()));
        EXPECT_EQ(*write.line != 0 ? Lines{write.line} : Lines{}, messages_of(write.file));
        for (const Failure &failure : FAILURES) {
            expect_failure(camera, failure, write.group, write.action, write.payload);
            EXPECT_EQ(failure.result, write.call(camera.context()));
        }
    }
}

TEST(Operations, WritesAboveTheirLimitSendNothing)
{
    struct Case {
        int32_t (*set)(Context *, int32_t);
        int32_t value;
        const char *message;
    };
    const Case cases[] = {
        {zvc_video_vellix_iso_set, 10, "invalid iso_max, 10"},
        {zvc_video_vellix_iso_min_set, 10, "invalid iso_min, 10"},
        {zvc_photo_vellix_iso_set, 6, "invalid iso_max, 6\n"},
        {zvc_photo_vellix_iso_min_set, 6, "invalid iso_min, 6\n"},
        {zvc_multishot_vellix_iso_set, 6, "invalid iso_max, 6\n"},
        {zvc_multishot_vellix_iso_min_set, 6, "invalid iso_min, 6\n"},
        {zvc_multishot_timelapse_rate_set, 12, "invalid timelapse_rate, 12\n"},
        {zvc_multishot_nightlapse_rate_set, 14, "invalid nightlapse_rate, 14\n"},
        {zvc_broadcast_set_window_size, 10, "invalid window_size, 10\n"},
        {zvc_broadcast_set_window_size, -1, "invalid window_size, -1\n"},
        {[](Context *c, int32_t v) { return zvc_video_set_res_fps_fov_camera(c, v, 15, 12); }, 31, "invalid res, 31"},
        {[](Context *c, int32_t v) { return zvc_video_set_res_fps_fov_camera(c, 30, v, 12); }, 15, "invalid fps, 15"},
        {[](Context *c, int32_t v) { return zvc_video_set_res_fps_fov_camera(c, -5, 14, v); }, 12, "invalid fov, 12"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.message);
        reset();
        CameraDouble camera;
        EXPECT_EQ(-3, c.set(camera.context(), c.value));
        EXPECT_THAT(log_messages(), ElementsAre(c.message));
    }
}

// ---- Reads ----

// The log lines of a read: what comes before the numbers in its three messages, and the end of all lines.
struct Style {
    const char *opening; // null: none
    const char *failure;
    const char *size;
    const char *end;
};
const Style PLAIN = {"INFO rsp_size/err, ", "ERROR zvc_send_remote_api error ", "ERROR rsp_size exp/act, ", ""};
const Style FEED = {PLAIN.opening, PLAIN.failure, PLAIN.size, "\n"};
const Style QUIET = {nullptr, PLAIN.failure, PLAIN.size, ""};
const Style QUIET_FEED = {nullptr, PLAIN.failure, PLAIN.size, "\n"};
const Style LENS_STATUS = {nullptr, PLAIN.failure, "ERROR zvc_system_get_lens_status rsp_size exp/act, ", ""};
const Style ORIENTATION = {nullptr, "ERROR zvc_setup_get_orientation:  zvc_send_remote_api error ",
                           "ERROR zvc_setup_get_orientation: rsp_size exp/act, ", ""};
const Style POWER_PROFILE = {nullptr, "ERROR zvc_system_get_power_profile:  zvc_send_remote_api error ",
                             "ERROR zvc_system_get_power_profile: rsp_size exp/act, ", ""};
const Style UX_MODE = {nullptr, "ERROR zvc_setup_get_camera_ux_mode:  zvc_send_remote_api error ",
                       "ERROR zvc_setup_get_camera_ux_mode: rsp_size exp/act, ", ""};

struct Read {
    const char *name;
    std::function<std::pair<int32_t, Values>(Context *)> call;
    std::function<int32_t()> call_with_null; // every output
    uint8_t group, action;
    Bytes answer;
    Values values;
    const char *file;
    const Style &style;
    const char *line;      // of the values; empty: none
    int empty_expects = 0; // what an empty answer should have had; 0: the answer's size
};

constexpr int UNTOUCHED = 77;

// Calls a read with outputs of any type.
template <class... Outputs>
auto reader(int32_t (*function)(Context *, Outputs *...))
{
    return [function](Context *context) {
        std::tuple<Outputs...> outputs{static_cast<Outputs>(UNTOUCHED)...};
        return std::apply(
            [&](Outputs &...output) {
                const int32_t result = function(context, &output...);
                return std::pair(result, Values{output...});
            },
            outputs);
    };
}

template <class... Outputs>
auto null_reader(int32_t (*function)(Context *, Outputs *...))
{
    return [function] { return function(nullptr, static_cast<Outputs *>(nullptr)...); };
}

// The same for a record, one value per byte.
template <class Record>
auto record_reader(int32_t (*function)(Context *, Record *))
{
    return [function](Context *context) {
        Record record;
        std::fill(std::begin(record.bytes), std::end(record.bytes), static_cast<uint8_t>(UNTOUCHED));
        const int32_t result = function(context, &record);
        return std::pair(result, Values(std::begin(record.bytes), std::end(record.bytes)));
    };
}

#define READ_RECORD(function) #function, record_reader(function), null_reader(function)
#define READ(function) #function, reader(function), null_reader(function)

template <class Numbers>
Numbers ascending(size_t count)
{
    Numbers numbers(count);
    std::iota(numbers.begin(), numbers.end(), typename Numbers::value_type{1});
    return numbers;
}

// clang-format off
const Read READS[] = {
    {READ(zvc_video_vellix_iso_get), 2, 22, {0xC1}, {0xC1}, VIDEO, PLAIN, "INFO get iso_max, 193"},
    {READ(zvc_video_vellix_iso_min_get), 2, 47, {7}, {7}, VIDEO, PLAIN, "INFO get iso_min, 7"},
    {READ(zvc_video_get_video_profile), 2, 99, {2}, {2}, VIDEO, PLAIN, "INFO get video_profile, 2"},
    {READ(zvc_video_get_video_bit_rate), 2, 67, {1}, {1}, VIDEO, PLAIN, "INFO get video_bit_rate, 1"},
    {READ(zvc_video_get_video_bit_depth), 2, 92, {2}, {2}, VIDEO, PLAIN, "INFO get video_bit_depth, 2"},
    {READ(zvc_video_get_res_fps_fov), 2, 2, {24, 0xF5, 8}, {24, 0xF5, 8}, VIDEO, PLAIN, "INFO res/fps/fov, 24,245,8"},
    {READ(zvc_photo_vellix_iso_get), 3, 18, {3}, {3}, PHOTO, FEED, "INFO get iso_max, 3\n"},
    {READ(zvc_photo_vellix_iso_min_get), 3, 28, {4}, {4}, PHOTO, FEED, "INFO get iso_min, 4\n"},
    {READ(zvc_multishot_nightlapse_rate_get), 4, 8, {11}, {11}, MULTISHOT, FEED, "INFO get nightlapse_rate, 11\n"},
    {READ(zvc_multishot_vellix_iso_get), 4, 22, {5}, {5}, MULTISHOT, FEED, "INFO get iso_max, 5\n"},
    {READ(zvc_multishot_vellix_iso_min_get), 4, 33, {1}, {1}, MULTISHOT, FEED, "INFO get iso_min, 1\n"},
    {READ(zvc_broadcast_get_default_sub_mode), 5, 0, {0, 0, 1, 2}, {258}, BROADCAST, FEED, "INFO default_sub_mode258\n", 1},
    {READ(zvc_broadcast_get_res_fps_fov), 5, 2, {9, 8, 4}, {9, 8, 4}, BROADCAST, FEED, "INFO res = 9, fsp = 8, fov = 4\n"},
    {READ(zvc_broadcast_get_record_res_fps_fov), 5, 4, {12, 5, 7}, {12, 5, 7}, BROADCAST, FEED, "INFO res = 12, fsp = 5, fov = 7\n"},
    {READ(zvc_broadcast_get_enable), 5, 14, {0, 0, 0, 1}, {1}, BROADCAST, FEED, "INFO enable 1\n", 1},
    {READ(zvc_broadcast_get_gop_size), 5, 16, {30}, {30}, BROADCAST, FEED, "INFO gop_size 30\n"},
    {READ(zvc_broadcast_get_idr_interval), 5, 18, {6}, {6}, BROADCAST, FEED, "INFO idr_interval 6\n"},
    {READ(zvc_broadcast_get_bit_rate), 5, 20, {0xF1, 2, 3, 4}, {0xF1020304}, BROADCAST, FEED, "INFO bit_rate -251526396\n"},
    {READ(zvc_broadcast_get_window_size), 5, 22, {200}, {200}, BROADCAST, FEED, "INFO window_size 200\n"},
    {READ(zvc_broadcast_get_progress_counter), 5, 24, {1, 2, 3, 4}, {0x01020304}, BROADCAST, FEED, "INFO progress counter 16909060\n", 1},
    {READ_RECORD(zvc_broadcast_get_settings), 5, 25, ascending<Bytes>(20), ascending<Values>(20), BROADCAST, FEED, ""},
    {READ_RECORD(zvc_broadcast_get_status), 5, 26, ascending<Bytes>(12), ascending<Values>(12), BROADCAST, FEED, ""},
    {READ(zvc_app_get_mode_sub_mode), 1, 4, {1, 0xC2}, {1, 0xC2}, APP, PLAIN, "INFO m/sm, 1,194"},
    {READ(zvc_app_get_mode_flat_mode), 1, 7, {12, 3}, {3, 12}, APP, PLAIN, "INFO m/fm, 3,12"},
    {READ(zvc_app_get_digital_zoom), 1, 11, {100}, {100}, APP, PLAIN, "INFO z, 100"},
    {READ(zvc_app_get_capture_delay), 1, 14, {3}, {3}, APP, PLAIN, "INFO capture_delay, 3"},
    {READ(zvc_system_get_lens_mode), 17, 21, {0xF1, 2}, {-15}, SYSTEM, QUIET, ""},
    {READ(zvc_system_get_lens), 17, 21, {1, 0xF2}, {-14}, SYSTEM, QUIET, ""},
    {READ(zvc_system_get_lenses), 17, 21, {1, 0xFF}, {1, -1}, SYSTEM, QUIET, ""},
    {READ(zvc_system_get_lens_type), 8, 37, {0xFF}, {-1}, SYSTEM, QUIET, ""},
    {READ(zvc_system_get_lens_status), 8, 46, {0x81}, {-127}, SYSTEM, LENS_STATUS, ""},
    {READ(zvc_system_get_power_profile), 8, 41, {0xFF}, {255}, SYSTEM, POWER_PROFILE, ""},
    {READ(zvc_setup_get_orientation), 7, 8, {0xFF}, {255}, SETUP, ORIENTATION, ""},
    {READ(zvc_setup_get_camera_ux_mode), 7, 73, {1}, {1}, SETUP, UX_MODE, ""},
    {READ(zvc_setup_get_video_format), 7, 18, {1}, {1}, SETUP, FEED, "INFO video_format 1\n"},
    {READ(zvc_settings_get_onscreen_control), 17, 16, {2, 0xA1}, {2, -95}, SETTINGS, QUIET_FEED, "INFO response[0]=2 response[1]=161"},
};
// clang-format on

// One call of `read` with this answer: what it returned and stored, and what its file logged.
void expect_read(const Read &read, const Bytes &answer, int32_t result, const Values &values, const Lines &lines)
{
    reset();
    CameraDouble camera;
    expect_failure(camera, {answer, result}, read.group, read.action, {});
    g_logLevel = ZV_LOG_INFO;
    EXPECT_EQ(std::pair(result, values), read.call(camera.context()));
    EXPECT_EQ(lines, messages_of(read.file));
}

TEST(Operations, ReadsTakeTheWholeAnswerOrNothing)
{
    for (const Read &read : READS) {
        SCOPED_TRACE(read.name);
        const Style &style = read.style;
        const Values untouched(read.values.size(), UNTOUCHED);
        const auto lines = [&](size_t size, int result, const std::string &last) {
            Lines expected;
            if (style.opening != nullptr) {
                expected.push_back(style.opening + std::to_string(size) + "," + std::to_string(result) + style.end);
            }
            if (!last.empty()) {
                expected.push_back(last);
            }
            return expected;
        };
        const auto too_short = [&](size_t expected, size_t size) {
            return style.size + std::to_string(expected) + "," + std::to_string(size) + style.end;
        };

        const size_t size = read.answer.size();
        expect_read(read, good(read.answer), 0, read.values, lines(size, 0, read.line));
        Bytes longer = read.answer;
        longer.push_back(0x55);
        expect_read(read, good(longer), 0, read.values, lines(size + 1, 0, read.line));
        const size_t empty_expects = read.empty_expects != 0 ? static_cast<size_t>(read.empty_expects) : size;
        expect_read(read, good({}), -3, untouched, lines(0, 0, too_short(empty_expects, 0)));
        if (size > 1) {
            const Bytes shorter(read.answer.begin(), read.answer.end() - 1);
            expect_read(read, good(shorter), -3, untouched, lines(size - 1, 0, too_short(size, size - 1)));
        }
        for (const Failure &failure : FAILURES) {
            expect_read(read, failure.answer, failure.result, untouched,
                        lines(0, failure.result, style.failure + std::to_string(failure.result) + style.end));
        }
        reset();
        EXPECT_EQ(-3, read.call_with_null());
        ASSERT_EQ(1u, log_lines().size()); // so it did not get as far as the context
        EXPECT_THAT(log_lines()[0], testing::StartsWith("ERROR null "));
    }
}

// ---- Image controls ----

TEST(ImageControls, IsoNumbers)
{
    const int video[] = {6400, 1600, 400, 3200, 800, 1200, 1000, 200, 100, 400};
    const int photo[] = {800, 400, 200, 100, 1600, 3200, 400};
    for (int code = 0; code < 10; ++code) {
        EXPECT_EQ(video[code], zvc_video_vellix_iso_number(code));
        EXPECT_EQ(photo[std::min(code, 6)], zvc_photo_vellix_iso_number(code));
    }
    EXPECT_EQ(400, zvc_video_vellix_iso_number(-1));
    EXPECT_EQ(400, zvc_photo_vellix_iso_number(-1));
}

TEST(ImageControls, NightLapseRateFallsBackToAutoUnlessLongerThanTheExposure)
{
    struct Case {
        int32_t exposure, rate;
        bool writes;
    };
    const Case cases[] = {{5, 3, false},  {5, 2, true},  {0, 9, true},  {0, 10, false}, {1, 10, false},
                          {2, 10, true},  {2, 11, true}, {3, 1, false}, {4, 1, true},   {6, 3, true},
                          {6, 4, false},  {6, 8, false}, {3, 0, true},  {7, 10, false}, {7, 9, true},
                          {8, 10, false}, {8, 9, true},  {6, 5, false}, {6, 6, false},  {6, 7, false}};
    for (const Case &c : cases) {
        SCOPED_TRACE(c.exposure * 100 + c.rate);
        reset();
        CameraDouble camera;
        if (c.writes) {
            camera.expect(4, 9, {9});
        }
        EXPECT_EQ(0, zvc_multishot_nightlapse_rate_best_fit(camera.context(), c.exposure, c.rate));
    }
    CameraDouble camera;
    for (const auto &[exposure, rate] : {std::pair{9, 0}, {-1, 0}, {0, 12}, {0, -1}}) {
        EXPECT_EQ(-3, zvc_multishot_nightlapse_rate_best_fit(camera.context(), exposure, rate));
    }
    camera.expect(4, 9, {9}, refused());
    EXPECT_EQ(-101, zvc_multishot_nightlapse_rate_best_fit(camera.context(), 6, 0));
    EXPECT_EQ("zvc_multishot_set_nightlapse_rate -101\n", log_messages().back());
}

TEST(ImageControls, WhiteBalanceFits)
{
    struct Case {
        const char *name;
        Bytes answer;
        uint8_t exposure;
        bool writes;
        int32_t result;
        Lines log;
    };
    const char unread[] = "zvc_photo_white_balance_get -1, use default AUTO white balance\n";
    const Case cases[] = {
        {"Auto moves", good({0}), 1, true, 0, {}},
        {"manual stays", good({3}), 1, false, 0, {}},
        {"highest stays", good({12}), 1, false, 0, {}},
        {"Auto exposure", good({0}), 0, false, 0, {}},
        {"four bytes, low first", good({0, 0, 0, 0x80, 9}), 1, false, 0, {}},
        {"second byte counts", good({0, 1}), 0, false, -1, {"invalid white_balance, 256\n", unread}},
        {"nothing is Auto", good({}), 2, true, 0, {}},
        {"invalid", good({13}), 4, true, 0, {"invalid white_balance, 13\n", unread}},
        {"invalid, Auto", good({13}), 0, false, -1, {"invalid white_balance, 13\n", unread}},
        {"unread", firmware_error(9), 4, true, 0, {"rtos_error_code, 9", unread}},
        {"unread, Auto", firmware_error(9), 0, false, -1, {"rtos_error_code, 9", unread}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        reset();
        g_logLevel = ZV_LOG_WARN;
        CameraDouble camera;
        camera.expect(3, 12, {}, c.answer);
        if (c.writes) {
            camera.expect(3, 13, {2});
        }
        EXPECT_EQ(c.result, zvc_photo_set_white_balance_best_fit(camera.context(), c.exposure));
        Lines log = c.log;
        if (c.result != 0) {
            log.emplace_back("zvc_photo_white_balance_set -1\n");
        }
        EXPECT_EQ(log, log_messages());
    }
    reset();
    CameraDouble camera;
    camera.expect(3, 12, {}, good({0}));
    camera.expect(3, 13, {2}, refused());
    EXPECT_EQ(-101, zvc_photo_set_white_balance_best_fit(camera.context(), 1));
    EXPECT_THAT(log_messages(), ElementsAre("no ack, got 1", "zvc_photo_white_balance_set -101\n"));
}

TEST(ImageControls, MultiShotWhiteBalanceFitReadsOnly)
{
    reset();
    g_logLevel = ZV_LOG_WARN;
    CameraDouble camera;
    for (const Bytes &answer : {good({0}), good({13}), refused()}) {
        camera.expect(4, 16, {}, answer);
        EXPECT_EQ(0, zvc_multishot_set_white_balance_best_fit(camera.context(), 3));
    }
    EXPECT_THAT(log_messages(),
                ElementsAre("invalid white_balance, 13\n",
                            "zvc_multishot_white_balance_get -1, use default AUTO white balance\n", "no ack, got 1",
                            "zvc_multishot_white_balance_get -101, use default AUTO white balance\n"));
}

TEST(FirmwareUpdate, DownloadStatesGoToTheSystemInformation)
{
    reset();
    csi() = {};
    EXPECT_EQ(0, zvc_fwupdate_download_start(nullptr));
    EXPECT_EQ(0, zvc_fwupdate_download_cancel(nullptr));
    const std::vector<std::pair<uint8_t, std::string>> stored = {{42, "\x06"}, {42, std::string(1, '\0')}};
    EXPECT_EQ(stored, csi().sets);
    csi().set_result = 5;
    EXPECT_EQ(-1, zvc_fwupdate_download_start(nullptr));
    EXPECT_EQ(-1, zvc_fwupdate_download_cancel(nullptr));
    EXPECT_THAT(log_messages(),
                ElementsAre("error during csi_set ota_state 6\n", "error during csi_set ota_state 0\n"));
}

} // namespace
