#include "simulator.h"

#include "camera_double.h"
#include "csi_double.h"
#include "firmware_peer.h"
#include "interpose.h"
#include "offered_options.h"
#include "setting_writes.h"
#include "zvc_broadcast.h"
#include "zvc_commands_zvx.h"
#include "zvc_fwupdate.h"
#include "zvc_settings.h"
#include "zvc_storage.h"
#include "zvc_video.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <sys/stat.h>
#include <zvservice/availability.h>

using namespace test;
using namespace zv::sim;

namespace {

constexpr size_t FRAME = 20; // of a daemon's answer: header, return code, the payload's and the end element's heads

// The simulated camera in this process, on the queues of the real one: it answers inside the library's waits.
class SimulatedCamera : public testing::Test {
  protected:
    SimulatedCamera() : reply("/t_sim_reply", 10, ZVMSG_MAX), daemon_reply("/t_sim_daemon", 5, 10000)
    {
        reset();
        csi() = {};
        EXPECT_EQ("", camera.open());
        context.mbox_name = reply.name();
        context.mq_rx = reply.descriptor();
        context.mq_tx = mq_open("/to_zvnet", O_WRONLY);
        on_wait([this] { camera.serve(); });
    }
    ~SimulatedCamera() override
    {
        on_wait(nullptr);
        mq_close(context.mq_tx);
    }

    void fault(const char *text)
    {
        FaultRule rule;
        ASSERT_EQ("", parse_fault(text, rule));
        camera.add_fault(rule);
    }

    void set_mode(uint8_t flat_mode)
    {
        EXPECT_EQ(ZV_OK, zvc_send_remote_api_payload(&context, 17, 23, &flat_mode, 1));
        EXPECT_EQ(flat_mode, seen(settings(SETTINGS_SETUP_CURRENT_FLAT_MODE)));
    }

    // A daemon command, and the answers that have come.
    std::vector<test::Bytes> ask_daemon(uint8_t command, const test::Bytes &argument = {})
    {
        post("/to_zvCtlD",
             tlv_message(
                 20, {{65, {command, 0, 0, 0}}, {66, argument}, {68, text("/t_sim_daemon")}, {87, {1}}, {238, {}}}));
        camera.serve();
        return answers();
    }
    // A number in the record that the daemon answers.
    uint64_t seen(Field field)
    {
        constexpr size_t RECORD = 16; // its place in the answer
        const test::Bytes answer = ask_daemon(34).at(0);
        uint64_t number = 0;
        for (size_t i = field.width; i > 0; --i) {
            number = number << 8 | answer.at(RECORD + field.offset + i - 1);
        }
        return number;
    }

    std::vector<test::Bytes> answers()
    {
        std::vector<test::Bytes> all;
        for (test::Bytes message = daemon_reply.receive(); !message.empty(); message = daemon_reply.receive()) {
            all.push_back(message);
        }
        return all;
    }

    test::Queue reply;
    test::Queue daemon_reply;
    Simulator camera{62, 1};
    zvc_msg_q_context_t context = {};
};

TEST_F(SimulatedCamera, AnswersSnapshotsAndResynchronisation)
{
    EXPECT_EQ((std::vector<test::Bytes>{tlv_message(21, {{236, {0, 0, 0, 0}}, {69, {4, 3, 2, 1}}, {238, {}}})}),
              ask_daemon(102, {4, 3, 2, 1}));
    EXPECT_EQ(238 + FRAME, ask_daemon(32)[0].size());
    EXPECT_EQ(394 + FRAME, ask_daemon(33)[0].size());
    const test::Bytes whole = ask_daemon(34)[0];
    ASSERT_EQ(634 + FRAME, whole.size());
    EXPECT_EQ(12, whole[16]); // the flat mode, in both parts of the record
    EXPECT_EQ(12, whole[16 + 394 + 25]);
    EXPECT_EQ((std::vector<test::Bytes>{tlv_message(21, {{236, {0x98, 0xFF, 0xFF, 0xFF}}, {238, {}}})}),
              ask_daemon(77));
}

TEST_F(SimulatedCamera, RefusesWhatTheFirmwareDoesNotKnow)
{
    int32_t mode = -1;
    int32_t flat_mode = -1;
    EXPECT_EQ(ZV_OK, zvc_app_get_mode_flat_mode(&context, &mode, &flat_mode));
    EXPECT_EQ(std::pair(0, 12), std::pair(mode, flat_mode));
    EXPECT_EQ(ZV_ERR_NAK, zvc_send_simple_remote_api(&context, 99, 1));
    const uint8_t lies[] = {0, 1, 7, 0, 9};
    EXPECT_EQ(ZV_ERR_NAK, zvc_send_remote_api(&context, lies, sizeof lies, nullptr, nullptr));
    uint8_t *payload = nullptr;
    uint16_t size = 0;
    EXPECT_EQ(ZV_OK, zvc_send_dorsak_command(&context, "AB", lies, 1, &payload, &size));
    EXPECT_EQ(7, size);
}

TEST_F(SimulatedCamera, SurvivesGarbage)
{
    std::mt19937 random(7);
    const test::Bytes commands[] = {
        tlv_message(4, {{TLV_CMD, text("YY")}, {TLV_CMDARG, {0, 1, 7, 0, 0}}, {TLV_SRC, text("/t_sim_reply")}}),
        tlv_message(20, {{TLV_CMD, {30, 0, 0, 0}}, {TLV_CMDARG, {2, 0, 0, 0, 4, 0, 0, 0}}, {TLV_SRC, text("/t_no")}})};
    for (int i = 0; i < 20000; ++i) {
        const size_t link = random() % 2;
        test::Bytes message = commands[link];
        for (uint64_t changes = random() % 5; changes > 0; --changes) {
            message[random() % message.size()] = static_cast<uint8_t>(random());
        }
        message.resize(message.size() - (random() % 4 == 0 ? random() % message.size() : 0));
        post(link == 0 ? "/to_zvnet" : "/to_zvCtlD", message);
        camera.serve();
        reply.receive();
    }
    int32_t mode = -1;
    int32_t flat_mode = -1;
    EXPECT_EQ(ZV_OK, zvc_app_get_mode_flat_mode(&context, &mode, &flat_mode));
}

TEST_F(SimulatedCamera, SurvivesEveryCommandWithAnyPayload)
{
    std::mt19937 random(11);
    for (int i = 0; i < 200000; ++i) {
        test::Bytes payload(random() % 48);
        std::generate(payload.begin(), payload.end(), [&] { return static_cast<uint8_t>(random() % 40); });
        const auto group = static_cast<unsigned>(random() % 20);
        const auto action = static_cast<unsigned>(random() % 100);
        run_remote_command(camera.camera(), zv::RemoteCommand{zv::remote_command(group, action)}, payload);
        camera.camera().advance(random() % 100 == 0 ? 1000000 : 0);
    }
}

TEST_F(SimulatedCamera, ReadsBackWhatWasWritten)
{
    EXPECT_EQ(ZV_OK, zvc_system_set_lens_type(&context, 2));
    EXPECT_EQ(2u, seen(status(STATUS_SYSTEM_CAMERA_LENS_TYPE)));
    EXPECT_EQ(ZV_OK, zvc_broadcast_set_gop_size(&context, 0x01020304));
    EXPECT_EQ(ZV_OK, zvc_broadcast_set_bit_rate(&context, 4000000));
    uint32_t gop_size = 0;
    uint32_t bit_rate = 0;
    EXPECT_EQ(ZV_OK, zvc_broadcast_get_gop_size(&context, &gop_size));
    EXPECT_EQ(ZV_OK, zvc_broadcast_get_bit_rate(&context, &bit_rate));
    EXPECT_EQ(4u, gop_size);
    EXPECT_EQ(4000000u, bit_rate);

    const uint8_t preset[] = {1, 0, 0xD, 0}; // star trail, in a mode with settings of its own
    EXPECT_EQ(ZV_OK, zvc_send_remote_api_payload(&context, 17, 12, preset, sizeof preset));
    EXPECT_EQ(0xD0001u, seen(status(STATUS_APP_ACTIVE_TIMELAPSE_PRESETS, 4)));
    EXPECT_EQ(2u, seen(status(STATUS_APP_ACTIVE_PRESETS_GROUP)));
    EXPECT_EQ(29u, seen(settings(SETTINGS_SETUP_CURRENT_FLAT_MODE)));
    EXPECT_EQ(ZV_OK, zvc_app_set_capture_delay(&context, 2));
    EXPECT_EQ(ZV_OK, zvc_settings_set_onscreen_control(&context, 33, 2));
    EXPECT_EQ(2u, seen(settings(SETTINGS_MULTI_SHOT_CAPTURE_DELAY)));
    EXPECT_EQ(33u, seen(settings(SETTINGS_MULTI_SHOT_ONSCREEN_SHORTCUTS + 2)));
}

TEST_F(SimulatedCamera, OffersFormatsAndRefusesHorizonLevelingWithoutStabilisation)
{
    const auto format = [&] {
        int32_t res = 0;
        int32_t fps = 0;
        int32_t fov = 0;
        EXPECT_EQ(ZV_OK, zvc_video_get_res_fps_fov(&context, &res, &fps, &fov));
        return std::vector{res, fps, fov};
    };
    EXPECT_EQ(ZV_OK, zvc_video_set_res_fps_fov(&context, 24, 0, 9)); // 5.3K has no 240
    EXPECT_EQ((std::vector{24, 5, 8}), format());
    EXPECT_EQ(ZV_OK, zvc_video_set_res_fps_fov(&context, 1, 5, 8)); // 4K at 60 has the horizon lock alone
    EXPECT_EQ((std::vector{1, 5, 10}), format());
    const uint8_t off = 0;
    const uint8_t question[] = {1, 5, 10};
    uint8_t *answer = nullptr;
    uint16_t size = 0;
    EXPECT_EQ(ZV_OK, zvc_send_remote_api_payload(&context, 2, 44, &off, 1));
    EXPECT_EQ(ZV_OK, zvc_send_remote_api_payload_response(&context, 2, 91, question, 3, &answer, &size));
    EXPECT_EQ((test::Bytes{0}), test::Bytes(answer, answer + size));

    uint8_t list[32];
    uint16_t count = 0;
    EXPECT_EQ(ZV_OK, zvc_get_res_list(&context, list, &count));
    EXPECT_THAT(test::Bytes(list, list + count), testing::ElementsAre(24, 26, 1, 28, 4, 6, 9, 29, 30));
}

TEST_F(SimulatedCamera, RecordsAndCounts)
{
    const uint64_t videos = seen(status(STATUS_STORAGE_NUM_TOTAL_VIDEOS, 4));
    const uint64_t space = seen(status(STATUS_STORAGE_REMAINING_SPACE, 8));
    EXPECT_EQ(ZV_OK, zvc_shutter(&context, 1));
    camera.advance(3000000);
    EXPECT_EQ(1u, seen(status(STATUS_SYSTEM_ENCODING_ACTIVE)));
    EXPECT_EQ(3u, seen(status(STATUS_VIDEO_VIDEO_PROGRESS_COUNTER, 4)));
    EXPECT_GT(space, seen(status(STATUS_STORAGE_REMAINING_SPACE, 8)));
    EXPECT_EQ(ZV_ERR, zvc_app_set_mode_sub_mode(&context, 1, 0)); // not while it records
    EXPECT_EQ(FIRMWARE_BUSY, context.rtos_error_code);
    EXPECT_EQ(ZV_OK, zvc_shutter(&context, 0));
    EXPECT_EQ(0u, seen(status(STATUS_SYSTEM_ENCODING_ACTIVE)));
    EXPECT_EQ(videos + 1, seen(status(STATUS_STORAGE_NUM_TOTAL_VIDEOS, 4)));

    const uint64_t photos = seen(status(STATUS_STORAGE_NUM_TOTAL_PHOTOS, 4));
    EXPECT_EQ(ZV_OK, zvc_app_set_mode_sub_mode(&context, 1, 4)); // time lapse, a photo each half second
    EXPECT_EQ(ZV_OK, zvc_shutter(&context, 1));
    camera.advance(10000000);
    EXPECT_EQ(ZV_OK, zvc_shutter(&context, 0));
    EXPECT_EQ(photos + 20, seen(status(STATUS_STORAGE_NUM_TOTAL_PHOTOS, 4)));
    EXPECT_EQ(ZV_OK, zvc_storage_delete_last(&context)); // all of the group
    EXPECT_EQ(photos, seen(status(STATUS_STORAGE_NUM_TOTAL_PHOTOS, 4)));
    EXPECT_EQ(ZV_ERR, zvc_send_simple_remote_api(&context, 2, 27)); // the video's shutter

    const uint8_t every_second = 3;
    const uint8_t off = 0;
    EXPECT_EQ(ZV_OK, zvc_app_set_mode_sub_mode(&context, 1, 0)); // photos at an interval, which ends meanwhile
    EXPECT_EQ(ZV_OK, zvc_send_remote_api_payload(&context, 3, 47, &every_second, 1));
    EXPECT_EQ(ZV_OK, zvc_shutter(&context, 1));
    camera.advance(2000000);
    EXPECT_EQ(ZV_OK, zvc_send_remote_api_payload(&context, 3, 47, &off, 1));
    camera.advance(2000000);
    EXPECT_EQ(0u, seen(status(STATUS_SYSTEM_ENCODING_ACTIVE)));
    EXPECT_EQ(2u, seen(status(STATUS_PHOTO_INTERVAL_CAPTURE_COUNT, 4)));
}

TEST_F(SimulatedCamera, DeletesAndTagsMedia)
{
    const Card &card = camera.camera().card();
    ASSERT_EQ(9u, card.files().size()); // two videos, two photos, a burst of five
    std::string video = card.files().front().name;
    std::replace(video.begin(), video.end(), '\\', '/');
    EXPECT_EQ(ZV_OK, zvc_storage_tag_file(&context, video.c_str(), 20, 1500, 1));
    EXPECT_EQ(1u, seen(status(STATUS_STORAGE_NUM_KEYMARKS)));
    EXPECT_EQ(1500u, seen(status(STATUS_STORAGE_LAST_KEYMARK_TIME_MSEC, 4)));
    EXPECT_EQ(ZV_OK, zvc_storage_delete_file(&context, video.c_str(), 20));
    EXPECT_EQ(ZV_ERR, zvc_storage_delete_file(&context, video.c_str(), 20));
    EXPECT_EQ(FIRMWARE_NO_FILE, context.rtos_error_code);
    EXPECT_EQ(ZV_OK, zvc_storage_delete_group(&context, card.files()[3].name.c_str(), 20));
    EXPECT_EQ(3u, card.files().size());
    file_list_item_t list[2] = {};
    card.files()[0].name.copy(list[0].name, sizeof list[0].name);
    card.files()[2].name.copy(list[1].name, sizeof list[1].name);
    EXPECT_EQ(ZV_OK, zvc_storage_delete_list(&context, list, 2));
    EXPECT_EQ(1u, card.files().size());
    EXPECT_EQ(ZV_OK, zvc_storage_delete_all(&context));
    EXPECT_EQ(ZV_ERR, zvc_storage_delete_last(&context));
}

TEST_F(SimulatedCamera, GoesThroughAFirmwareUpdate)
{
    EXPECT_EQ(ZV_ERR, zvc_fwupdate_flashing_start(&context)); // nothing to flash yet
    EXPECT_EQ(ZV_OK, zvc_fwupdate_download_start(&context));
    EXPECT_EQ(6u, seen(status(STATUS_FWUPDATE_OTA_STATUS)));
    EXPECT_EQ(ZV_OK, zvc_fwupdate_download_done(&context, false));
    EXPECT_EQ(ZV_OK, zvc_fwupdate_flashing_start(&context));
    EXPECT_EQ(1u, seen(status(STATUS_SYSTEM_SYSTEM_BUSY)));
    camera.advance(5000000);
    EXPECT_EQ(0u, seen(status(STATUS_SYSTEM_SYSTEM_BUSY)));
    EXPECT_EQ(0u, seen(status(STATUS_FWUPDATE_OTA_STATUS)));
}

TEST_F(SimulatedCamera, SetsSettingsThroughTheDaemon)
{
    struct Case {
        uint32_t setting;
        uint32_t value;
        Field field;
        uint64_t seen;
    };
    const Case cases[] = {
        {3, 8, settings(SETTINGS_VIDEO_FPS), 8},
        {62, 2500000, settings(SETTINGS_STREAM_BIT_RATE, 4), 2500000},
        {135, 4, status(STATUS_VIDEO_EIS), 4},
        {176, 107, settings(SETTINGS_VIDEO_FPS), 9},
        {168, 0x0779, status(STATUS_APP_SCHEDULED_HOUR), 7},
        {130, 33, settings(SETTINGS_VIDEO_ONSCREEN_SHORTCUTS + 1), 33},
        {42, 8, settings(SETTINGS_BROADCAST_FPS), 8},
        {191, 1, settings(SETTINGS_SETUP_CURRENT_FLAT_MODE), 18},
        {118, 2, settings(SETTINGS_PHOTO_VELLIX_EV), 2}, // the mode is the night photo's now
    };
    const auto set = [this](uint32_t setting, uint32_t value) {
        test::Bytes argument;
        for (const uint32_t number : {setting, value}) {
            for (int shift = 0; shift < 32; shift += 8) {
                argument.push_back(static_cast<uint8_t>(number >> shift));
            }
        }
        return ask_daemon(30, argument).at(0).at(8); // the return code's low byte
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.setting);
        EXPECT_EQ(0, set(c.setting, c.value));
        EXPECT_EQ(c.seen, seen(c.field));
    }
    EXPECT_EQ(0, set(79, 1)); // what the library sends after 139
    EXPECT_EQ(0xFD, set(4, 1));
    EXPECT_EQ(0xFD, set(176, 99));
    EXPECT_EQ(0xFD, set(168, 24 << 8 | 1));
}

TEST_F(SimulatedCamera, AnswersFromATrace)
{
    std::stringstream trace;
    camera.set_trace(&trace);
    ask_daemon(33);
    camera.camera().state().set(status(STATUS_APP_DIGITAL_ZOOM), 77);
    const test::Bytes second = ask_daemon(33).at(0);
    fault("drop:command=32");
    ask_daemon(32);
    camera.set_trace(nullptr);
    camera.clear_faults();
    camera.camera().state().set(status(STATUS_APP_DIGITAL_ZOOM), 5);

    ASSERT_EQ("", camera.replay().read(trace));
    EXPECT_EQ(0, ask_daemon(33).at(0).at(16 + STATUS_APP_DIGITAL_ZOOM));
    camera.advance(1);
    EXPECT_EQ(second, ask_daemon(33).at(0));
    EXPECT_EQ(second, ask_daemon(33).at(0));
    EXPECT_EQ(0u, ask_daemon(32).size());
    EXPECT_EQ(5, ask_daemon(34).at(0).at(16 + STATUS_APP_DIGITAL_ZOOM)); // not in the trace
    std::istringstream broken("0.000000 client>moon 0\n");
    EXPECT_THAT(camera.replay().read(broken), testing::StartsWith("line 1: "));
}

TEST_F(SimulatedCamera, LosesAndSpoilsAnswersByRule)
{
    fault("truncate:command=34,bytes=5");
    EXPECT_EQ(5u, ask_daemon(34).at(0).size());
    fault("key:skip=1");
    EXPECT_EQ(4, ask_daemon(102, {4, 3, 2, 1}).at(0).at(16));
    EXPECT_EQ(5, ask_daemon(102, {4, 3, 2, 1}).at(0).at(16));
    fault("refuse:group=1,code=9,count=1");
    fault("error:group=1,code=-7,count=1,skip=1");
    fault("off:group=1,count=1,skip=2");
    EXPECT_EQ(ZV_ERR_NAK, zvc_send_simple_remote_api(&context, 1, 7));
    EXPECT_EQ(9, context.rtos_error_code);
    EXPECT_EQ(ZV_ERR, zvc_send_simple_remote_api(&context, 1, 7));
    EXPECT_EQ(0xF9, context.rtos_error_code);
    uint8_t *payload = nullptr;
    uint16_t size = 0;
    EXPECT_EQ(ZV_OK, zvc_send_remote_api_for_response(&context, 1, 7, &payload, &size));
    EXPECT_EQ((test::Bytes{ZVN_NACK_OFF}), test::Bytes(payload, payload + size));

    fault("die:command=33,ms=1000,count=1");
    EXPECT_EQ(0u, ask_daemon(33).size());
    EXPECT_EQ(0u, ask_daemon(33).size());
    camera.advance(1000000);
    EXPECT_EQ(0u, answers().size()); // forgotten
    EXPECT_EQ(1u, ask_daemon(33).size());
    fault("full:command=33,ms=1000,count=1");
    EXPECT_EQ(0u, ask_daemon(33).size());
    EXPECT_FALSE(post("/to_zvCtlD", test::Bytes{1}));
    camera.advance(1000000);
    camera.serve();
    EXPECT_EQ(1u, ask_daemon(33).size());
}

// The settings that are offered with at least one option. None of these may hold an option that is taken away.
std::set<uint32_t> offered_settings(const Camera &camera)
{
    all_status_settings_t record = {};
    std::copy(camera.state().record().begin(), camera.state().record().end(), record.bytes);
    const zvservice::CameraState state = zvservice::read_state(record, 62);
    const zvservice::Availability availability(state, 62);
    std::set<uint32_t> offered;
    for (const auto &[setting, options] : getCameraOptions(62)) {
        if (!availability.options(setting).empty()) {
            offered.insert(setting);
            EXPECT_TRUE(availability.offers(setting, state.settings[setting])) << "setting " << setting;
        }
    }
    return offered;
}

TEST_F(SimulatedCamera, OffersEverySettingInSomeModeAndHoldsWhatItOffers)
{
    std::set<uint32_t> offered = offered_settings(camera.camera());
    const auto sweep = [&] {
        for (const uint8_t ux_mode : test::Bytes{1, 0}) { // pro, easy
            EXPECT_EQ(ZV_OK, zvc_send_remote_api_payload(&context, 7, 74, &ux_mode, 1));
            for (const uint8_t flat_mode : test::Bytes{12, 13, 15, 16, 18, 19, 20, 21, 24, 26, 29, 30, 31}) {
                SCOPED_TRACE(testing::Message() << "user interface " << +ux_mode << ", flat mode " << +flat_mode);
                offered.merge(offered_settings(camera.camera()));
                set_mode(flat_mode);
                offered.merge(offered_settings(camera.camera()));
            }
        }
    };
    sweep();
    // What some settings wait for: a microphone, an interval, an add-on lens that is on.
    camera.camera().state().set(status(STATUS_SYSTEM_SOUND_CAGE_MIC_STATUS), 1);
    for (const auto &[setting, value] : {std::pair(171u, 3u), {189u, 2u}, {190u, 1u}}) {
        EXPECT_EQ(ZV_OK, write_setting(camera.camera(), setting, value));
    }
    sweep();
    for (const auto &[setting, options] : getCameraOptions(62)) {
        EXPECT_TRUE(offered.contains(setting)) << "setting " << setting;
    }
}

TEST_F(SimulatedCamera, TakesTheFirstOptionThatANewModeLeaves)
{
    set_mode(15);
    EXPECT_EQ(8u, seen(settings(SETTINGS_VIDEO_FPS))); // looping has 30 alone
    EXPECT_EQ(1u, seen(settings(SETTINGS_VIDEO_RESOLUTION)));
    set_mode(12);
    EXPECT_EQ(8u, seen(settings(SETTINGS_VIDEO_FPS))); // which video has, too
    const uint8_t star_trail[] = {1, 0, 0xD, 0};
    EXPECT_EQ(ZV_OK, zvc_send_remote_api_payload(&context, 17, 12, star_trail, sizeof star_trail));
    EXPECT_EQ(0u, seen(settings(SETTINGS_VIDEO_FOV))); // wide alone
    const uint8_t linear = 4;
    EXPECT_EQ(ZV_OK, zvc_send_remote_api_payload(&context, 2, 96, &linear, 1)); // a write is taken as it comes
    EXPECT_EQ(linear, seen(settings(SETTINGS_VIDEO_FOV)));
}

// What one setting takes can take away another's option in turn.
TEST(OfferedOptions, AreTakenWhateverWasThereBefore)
{
    std::mt19937 random(5);
    for (int i = 0; i < 400; ++i) {
        SCOPED_TRACE(i);
        Camera camera(62, 1);
        for (int writes = 0; writes < 6; ++writes) {
            const auto &[setting, options] = *std::next(getCameraOptions(62).begin(), static_cast<long>(random() % 89));
            write_setting(camera, setting, options[random() % options.size()]->value);
        }
        const auto flat_mode = camera.mode().flat_mode;
        take_offered_options(camera);
        offered_settings(camera);
        EXPECT_EQ(flat_mode, camera.mode().flat_mode);
    }
}

TEST(SimulatedTime, FollowsFromTheSeed)
{
    const auto record_after_an_hour = [](uint32_t seed) {
        Camera camera(62, seed);
        camera.advance(3600ull * 1000000);
        return test::Bytes(camera.state().record().begin(), camera.state().record().end());
    };
    EXPECT_EQ(record_after_an_hour(1), record_after_an_hour(1));
    EXPECT_NE(record_after_an_hour(1), record_after_an_hour(2));
}

TEST(FaultRules, SayWhatIsWrongWithThem)
{
    FaultRule rule;
    EXPECT_EQ("", parse_fault("refuse:group=2,action=27,code=-5", rule));
    EXPECT_THAT(parse_fault("drip", rule), testing::StartsWith("unknown fault 'drip'; known are drop, delay"));
    EXPECT_EQ("'every' is no NAME=VALUE", parse_fault("drop:every", rule));
    EXPECT_EQ("every takes a number, not '3x'", parse_fault("drop:every=3x", rule));
    EXPECT_EQ("every is 1 or more", parse_fault("drop:every=0", rule));
    EXPECT_EQ("drop has no option 'ms'", parse_fault("drop:ms=3", rule));
    EXPECT_EQ("ms cannot be negative", parse_fault("delay:ms=-3", rule));
    EXPECT_EQ("link is daemon or camera, not 'moon'", parse_fault("drop:link=moon", rule));
    EXPECT_EQ("", parse_fault("freeze:link=daemon,ms=5", rule));
    for (const std::string name : {"command", "every", "count"}) {
        EXPECT_EQ("freeze begins at once and selects no requests: it has no '" + name + "'",
                  parse_fault("freeze:" + name + "=1", rule));
    }
}

TEST_F(SimulatedCamera, DropsDoublesAndDelaysByRule)
{
    fault("drop:link=daemon,every=3");
    fault("double:command=33,skip=1,count=1");
    fault("delay:ms=15000,command=32");
    EXPECT_EQ(1u, ask_daemon(33).size());
    EXPECT_EQ(2u, ask_daemon(33).size());
    EXPECT_EQ(0u, ask_daemon(33).size());
    EXPECT_EQ(0u, ask_daemon(32).size());
    camera.advance(14999999);
    EXPECT_EQ(0u, answers().size());
    camera.advance(1);
    EXPECT_EQ(1u, answers().size());
}

// The sizes of the records in a daemon's answers.
std::vector<size_t> records(const std::vector<test::Bytes> &answers)
{
    std::vector<size_t> sizes(answers.size());
    std::transform(answers.begin(), answers.end(), sizes.begin(),
                   [](const test::Bytes &answer) { return answer.size() - FRAME; });
    return sizes;
}

TEST_F(SimulatedCamera, AnswersAnotherRequestByRule)
{
    using Sizes = std::vector<size_t>;
    fault("foreign:link=daemon,count=3");
    EXPECT_EQ((Sizes{394, 238}), records(ask_daemon(32)));
    EXPECT_EQ((Sizes{238, 394}), records(ask_daemon(33)));
    fault("drop:link=daemon,count=1");
    EXPECT_EQ((Sizes{394}), records(ask_daemon(34))); // in place of the right one

    // On the camera link the answer names the request that it belongs to.
    const auto ask_camera = [&](const test::Bytes &argument) {
        post("/to_zvnet",
             tlv_message(4,
                         {{TLV_CMD, text("YY")}, {TLV_CMDARG, argument}, {TLV_SRC, text("/t_sim_reply")}, {238, {}}}));
        camera.serve();
        std::vector<test::Bytes> arguments;
        for (test::Bytes answer = reply.receive(); !answer.empty(); answer = reply.receive()) {
            const auto echo = find_element(answer, TLV_CMDARG);
            arguments.emplace_back(echo->begin(), echo->end());
            EXPECT_EQ(0, find_element(answer, TLV_RSPARG)->front());
        }
        return arguments;
    };
    fault("foreign:link=camera");
    const test::Bytes zoom = {0, 1, 11, 0, 0};
    const test::Bytes format = {0, 7, 18, 0, 0};
    EXPECT_EQ((std::vector{format, zoom}), ask_camera(zoom));
    EXPECT_EQ((std::vector{zoom, format}), ask_camera(format));
}

TEST_F(SimulatedCamera, HoldsAnswersBackUntilALaterRequest)
{
    using Sizes = std::vector<size_t>;
    fault("hold:command=32,count=1");
    EXPECT_EQ((Sizes{}), records(ask_daemon(32)));
    camera.advance(3600ull * 1000000);
    EXPECT_EQ(ZV_OK, zvc_send_simple_remote_api(&context, 1, 7)); // another link's
    EXPECT_EQ((Sizes{238, 394}), records(ask_daemon(33)));
    fault("hold:command=34,requests=2,count=1");
    EXPECT_EQ((Sizes{}), records(ask_daemon(34)));
    EXPECT_EQ((Sizes{394}), records(ask_daemon(33)));
    EXPECT_EQ((Sizes{634, 238}), records(ask_daemon(32)));
}

TEST_F(SimulatedCamera, MakesItsQueuesAnewByRule)
{
    const auto exists = [](const char *name) {
        const mqd_t queue = mq_open(name, O_WRONLY);
        return queue >= 0 && mq_close(queue) == 0;
    };
    const auto is_removed = [](mqd_t queue) {
        struct stat file = {};
        return fstat(queue, &file) == 0 && file.st_nlink == 0;
    };
    fault("hold:command=33,count=1");
    EXPECT_EQ(0u, ask_daemon(33).size());
    fault("restart:link=daemon,ms=1000,count=1");
    const mqd_t daemon = mq_open("/to_zvCtlD", O_WRONLY);
    EXPECT_EQ(0u, ask_daemon(32).size());
    EXPECT_FALSE(exists("/to_zvCtlD"));
    EXPECT_TRUE(is_removed(daemon));
    EXPECT_EQ(0, mq_send(daemon, "lost", 4, 0));
    EXPECT_EQ(ZV_OK, zvc_send_simple_remote_api(&context, 1, 7)); // the relay knows nothing of it
    EXPECT_EQ(1000000u, camera.next_due());
    camera.advance(1000000);
    EXPECT_EQ(1u, ask_daemon(32).size()); // and nothing of what was held before

    fault("restart:group=1,ms=0,count=1"); // both, at once
    mq_close(daemon);
    const mqd_t second = mq_open("/to_zvCtlD", O_WRONLY);
    EXPECT_NE(ZV_OK, zvc_send_simple_remote_api(&context, 1, 7));
    EXPECT_TRUE(is_removed(second));
    EXPECT_TRUE(is_removed(context.mq_tx));
    EXPECT_EQ(1u, ask_daemon(32).size());
    mq_close(context.mq_tx);
    mq_close(second);
    context.mq_tx = mq_open("/to_zvnet", O_WRONLY);
    EXPECT_EQ(ZV_OK, zvc_send_simple_remote_api(&context, 1, 7));

    fault("restart:link=daemon,ms=1000"); // no request is selected: now, and once
    EXPECT_FALSE(exists("/to_zvCtlD"));
    EXPECT_TRUE(exists("/to_zvnet"));
    camera.advance(1000000);
    EXPECT_EQ(1u, ask_daemon(32).size());
    EXPECT_EQ(1u, ask_daemon(32).size());
    fault("restart:ms=1000");
    EXPECT_FALSE(exists("/to_zvCtlD") || exists("/to_zvnet"));
}

TEST_F(SimulatedCamera, FreezesAndThawsByOrder)
{
    using Sizes = std::vector<size_t>;
    fault("delay:command=33,ms=1000,count=1");
    EXPECT_EQ(0u, ask_daemon(33).size());
    fault("freeze:link=daemon");
    EXPECT_EQ(0u, ask_daemon(32).size());
    EXPECT_EQ(0u, ask_daemon(34).size());
    camera.advance(3600ull * 1000000);
    camera.serve();
    EXPECT_EQ(0u, answers().size());
    EXPECT_EQ(std::nullopt, camera.next_due());
    EXPECT_EQ(ZV_OK, zvc_send_simple_remote_api(&context, 1, 7)); // the relay is awake
    fault("thaw:link=camera");
    camera.serve();
    EXPECT_EQ(0u, answers().size());
    fault("thaw");
    camera.serve();
    EXPECT_EQ((Sizes{394, 238, 634}), records(answers())); // nothing is lost, and all in order

    fault("die:command=32,ms=1000,count=1"); // its end goes unnoticed before that of the freeze
    EXPECT_EQ(0u, ask_daemon(32).size());
    fault("freeze:ms=2000");
    EXPECT_EQ(2000000u, camera.next_due());
    camera.advance(1999999);
    EXPECT_EQ(0u, ask_daemon(33).size());
    EXPECT_NE(ZV_OK, zvc_send_simple_remote_api(&context, 1, 7));
    camera.advance(1);
    camera.serve();
    EXPECT_EQ(0u, answers().size());
    EXPECT_EQ(1u, ask_daemon(33).size());

    const auto thaws = [&](const std::function<void()> &order) {
        fault("freeze");
        const bool frozen = ask_daemon(33).empty();
        order();
        return frozen && !ask_daemon(33).empty();
    };
    EXPECT_TRUE(thaws([&] { camera.clear_faults(); }));
    EXPECT_TRUE(thaws([&] { fault("restart:ms=0"); }));
}

TEST_F(SimulatedCamera, IsSwitchedOffAndOn)
{
    using Sizes = std::pair<size_t, size_t>; // of what both links answer
    const auto ask = [&] {
        uint8_t *payload = nullptr;
        uint16_t size = 0;
        reply.receive();
        EXPECT_EQ(ZV_OK, zvc_send_remote_api_for_response(&context, 1, 7, &payload, &size));
        return Sizes(records(ask_daemon(33)).at(0), size);
    };
    const Sizes on = ask();
    fault("off:link=camera,group=1");
    fault("off");
    const Sizes off = ask();
    fault("drop:command=32");
    fault("on:link=daemon");
    EXPECT_EQ(Sizes(on.first, off.second), ask());
    fault("on");
    EXPECT_EQ(on, ask());
    EXPECT_EQ(0u, ask_daemon(32).size()); // no other rule is ended
}

} // namespace
