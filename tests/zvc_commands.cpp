#include "zvc_commands.h"

#include "camera_double.h"
#include "interpose.h"
#include "zvc_commands_zvx.h"

#include <cerrno>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>

using namespace test;
using testing::ElementsAre;

namespace {

class Exchange : public testing::Test {
  protected:
    void SetUp() override
    {
        reset();
        fail_nothing();
    }
    void TearDown() override { fail_nothing(); }

    // What zvc_send_remote_api makes of one answer to group 1, action 9: result, and the payload handed out.
    std::pair<int32_t, Bytes> answer(const std::vector<Bytes> &messages)
    {
        CameraDouble camera;
        camera.expect_raw(1, 9, {}, messages);
        const uint8_t request[] = {0, 1, 9, 0, 0};
        const int32_t result = zvc_send_remote_api(camera.context(), request, sizeof request, &payload, &payload_size);
        error_code = camera.context()->rtos_error_code;
        rx_failed = camera.context()->rx_failed;
        return {result, payload != nullptr ? Bytes(payload, payload + payload_size) : Bytes{}};
    }

    static Bytes reply(const Bytes &rsparg)
    {
        return tlv_message(5, {{TLV_CMD, text("YY")}, {TLV_RSPARG, rsparg}, {TLV_END, {}}});
    }

    uint8_t *payload = nullptr;
    uint16_t payload_size = 0;
    uint8_t error_code = 0;
    uint8_t rx_failed = 0;
};

TEST_F(Exchange, BuildsTheMessageByteForByte)
{
    Queue relay("/t_bytes_relay", 2, ZVMSG_MAX);
    zvc_msg_q_context_t context = {};
    context.mbox_name = "/to_web";
    context.mq_tx = relay.descriptor();
    const uint8_t argument[] = {0x00, 0x01, 0x09, 0x00, 0x00};
    zvc_reset_context(&context);
    EXPECT_EQ(0, zvc_send_zvmsg_async(&context, 4, "/to_camera", "/to_zvnet", "YY", argument, sizeof argument));
    EXPECT_EQ((Bytes{0x00, 0x35, 0x00, 0x04, 0x00, 0x00, 0x02, 0x41, 0x59, 0x59, 0x00, 0x00, 0x05, 0x42,
                     0x00, 0x01, 0x09, 0x00, 0x00, 0x00, 0x00, 0x01, 0x57, 0x01, 0x00, 0x00, 0x07, 0x44,
                     0x2F, 0x74, 0x6F, 0x5F, 0x77, 0x65, 0x62, 0x00, 0x00, 0x0A, 0x43, 0x2F, 0x74, 0x6F,
                     0x5F, 0x63, 0x61, 0x6D, 0x65, 0x72, 0x61, 0x00, 0x00, 0x00, 0xEE}),
              relay.receive());
}

TEST_F(Exchange, ReadsEveryFormOfAnswer)
{
    struct Case {
        const char *name;
        Bytes rsparg;
        int32_t result;
        Bytes payload;
        uint8_t error_code;
        std::vector<std::string> log;
    };
    const Case cases[] = {
        {"good", {0, 9, 8, 7, 0, 0, 2, 0xAA, 0xBB}, 0, {0xAA, 0xBB}, 0, {}},
        {"no payload", {0, 9, 8, 7, 0, 0, 0}, 0, {}, 0, {}},
        {"announces too much", {0, 9, 8, 7, 0, 0, 100, 1, 2}, 0, {1, 2}, 0, {"truncating remote_payload_size, 100, 2"}},
        {"announces less", {0, 9, 8, 7, 0, 0, 1, 5, 6}, 0, {5}, 0, {}},
        {"switched off", {2}, 0, {2}, 0, {"Got a ZVN_NACK_OFF"}},
        {"one other byte", {0}, -3, {}, 0, {"invalid zvmsg_rsp_size, 1", "ACK byte:0 (0=GOOD, 1=NAK)"}},
        {"six bytes", {1, 9, 8, 7, 0, 0}, -3, {}, 0, {"invalid zvmsg_rsp_size, 6", "ACK byte:1 (0=GOOD, 1=NAK)"}},
        {"empty", {}, -3, {}, 0, {"invalid zvmsg_rsp_size, 0"}},
        {"refused", {3, 9, 8, 7, 4, 0, 0}, -101, {}, 3, {"no ack, got 3"}},
        {"firmware error", {0, 9, 8, 7, 0xFE, 0, 0}, -1, {}, 0xFE, {"rtos_error_code, -2"}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        reset();
        payload = nullptr;
        g_logLevel = ZV_LOG_WARN;
        EXPECT_EQ(std::pair(c.result, c.payload), answer({reply(c.rsparg)}));
        EXPECT_EQ(c.error_code, error_code);
        EXPECT_EQ(c.log, log_messages());
    }
}

TEST_F(Exchange, TakesNothingFromAnAnswerThatLiesAboutItsLength)
{
    Bytes cut = reply({0, 1, 2, 3, 0, 0, 1, 9});
    cut.resize(cut.size() - 6);
    Bytes overrun = reply({0, 1, 2, 3, 0, 0, 1, 9});
    overrun[11] = 200; // the length of TLV_RSPARG, while the message's own length agrees
    const Bytes without = tlv_message(5, {{TLV_CMD, text("YY")}, {TLV_END, {}}});
    for (const Bytes &message : {cut, overrun, without, Bytes{0}, Bytes{0xFF, 0xFF, 0, 5}}) {
        payload = nullptr;
        EXPECT_EQ(std::pair(-3, Bytes{}), answer({message}));
    }
}

TEST_F(Exchange, TimesOutAfterTenSeconds)
{
    EXPECT_EQ(std::pair(-81, Bytes{}), answer({}));
    EXPECT_THAT(waits().selects, ElementsAre(10));
    EXPECT_EQ(1, rx_failed);
    EXPECT_THAT(log_messages(), ElementsAre("Warning: 10 seconds timeout expired",
                                            "Timed out (10sec) on receive on message queue, len=-1 errno=110",
                                            "zvmsg_send timeout waiting for response from /to_camera, ret -81",
                                            "zvc_send_zvmsg error, -81"));
    EXPECT_THAT(log_lines().front(), testing::StartsWith("INFO Warning:"));

    reset();
    fail(Call::MQ_RECEIVE, EIO);
    EXPECT_EQ(-81, answer({reply({0, 0, 0, 0, 0, 0, 0})}).first);
    EXPECT_EQ("Error receiving message (-1) from message queue, len=-1 errno=5", log_messages().front());
}

TEST_F(Exchange, DropsWhatWaitedBeforeTheRequest)
{
    CameraDouble camera;
    camera.reply().send(reply({0, 0, 0, 0, 0, 0, 1, 0x77}));
    camera.reply().send({1, 2, 3});
    camera.expect(1, 9, {}, good({0x42}));
    g_logLevel = ZV_LOG_DEBUG;
    ASSERT_EQ(0, zvc_send_remote_api_for_response(camera.context(), 1, 9, &payload, &payload_size));
    EXPECT_EQ(0x42, payload[0]);
    EXPECT_THAT(log_messages(),
                ElementsAre("There are 2 outstanding messages in the rx queue", "Trash msg length 26 received",
                            "Trash msg length 3 received", "clearing out queue 2 messages"));
}

TEST_F(Exchange, DropsTheAnswerToAnotherRequest)
{
    // What an answer to request 1/9 repeats as its arguments, or nothing.
    const auto repeating = [](const std::optional<Bytes> &arguments, uint8_t mark) {
        std::vector<Element> elements = {{TLV_CMD, text("YY")}, {TLV_RSPARG, good({mark})}, {TLV_END, {}}};
        if (arguments) {
            elements.insert(elements.begin() + 1, {TLV_CMDARG, *arguments});
        }
        return tlv_message(5, elements);
    };
    Bytes cut = repeating(Bytes{0, 1, 8, 0, 0}, 7);
    cut.pop_back();
    struct Case {
        const char *name;
        Bytes answer;
        bool dropped;
    };
    const Case cases[] = {
        {"the same request", repeating(Bytes{0, 1, 9, 0, 0}, 7), false},
        {"another action", repeating(Bytes{0, 1, 8, 0, 0}, 7), true},
        {"another group", repeating(Bytes{0, 2, 9, 0, 0}, 7), true},
        {"another payload", repeating(Bytes{0, 1, 9, 0, 2, 5, 6}, 7), true},
        {"nothing", repeating({}, 7), false},
        {"an empty request", repeating(Bytes{}, 7), false},
        {"a short request", repeating(Bytes{0, 1, 8, 0}, 7), false},
        {"a reserved byte", repeating(Bytes{1, 1, 8, 0, 0}, 7), false},
        {"a payload that is not there", repeating(Bytes{0, 1, 8, 0, 1}, 7), false},
        {"more than the payload", repeating(Bytes{0, 1, 8, 0, 1, 2, 3}, 7), false},
    };
    const Bytes right = repeating(Bytes{0, 1, 9, 0, 0}, 0x42);
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        reset();
        EXPECT_EQ(std::pair(0, Bytes{c.dropped ? uint8_t{0x42} : uint8_t{7}}), answer({c.answer, right}));
        EXPECT_EQ(c.dropped, !log_messages().empty());
    }
    payload = nullptr;
    EXPECT_EQ(std::pair(-3, Bytes{}), answer({cut, right})); // a malformed one tells nothing

    // The wait ends with its limit, however many such answers come.
    reset();
    CameraDouble camera;
    camera.expect_silence(1, 9);
    for (int i = 1; i <= 12; ++i) {
        after(i * 900'000, [&] { camera.reply().send(repeating(Bytes{0, 1, 8, 0, 0}, 7)); });
    }
    const int64_t begin = now();
    EXPECT_EQ(-81, zvc_send_simple_remote_api(camera.context(), 1, 9));
    EXPECT_EQ(10'000'000, now() - begin);
    EXPECT_EQ("Dropped the answer to another request, gid/aid, 1,8", log_messages().front());

    // What is no remote API request gets whatever comes.
    Queue relay("/t_any_relay", 2, ZVMSG_MAX);
    Queue reply_queue("/t_any_reply", 2, ZVMSG_MAX);
    zvc_msg_q_context_t context = {"/to_web", relay.descriptor(), reply_queue.descriptor(), {}, 0, 0, 0};
    on_wait([&] { reply_queue.send(repeating(Bytes{0, 1, 8, 0, 0}, 7)); });
    EXPECT_EQ(0, zvc_send_dorsak_command(&context, "YY", nullptr, 0, &payload, &payload_size));
    EXPECT_EQ(8, payload_size);
}

TEST_F(Exchange, WaitsForRoomWithinItsTenSeconds)
{
    Queue relay("/t_full_relay", 1, ZVMSG_MAX);
    Queue reply_queue("/t_full_reply", 2, ZVMSG_MAX);
    for (const int flags : {0, O_NONBLOCK}) {
        const mqd_t tx = mq_open(relay.name(), O_WRONLY | flags);
        zvc_msg_q_context_t context = {"/to_web", tx, reply_queue.descriptor(), {}, 0, 0, 0};
        relay.send({1});
        EXPECT_EQ(0, zvc_send_simple_remote_api_async(&context, 1, 9)); // a post is lost at once

        int64_t begin = now();
        EXPECT_EQ(-81, zvc_send_simple_remote_api(&context, 1, 9));
        EXPECT_EQ(10'000'000, now() - begin);
        EXPECT_EQ(1, context.rx_failed);

        // Room comes after 4 seconds, and with it an answer that is nobody's; the right one comes 5 seconds later.
        reset();
        after(4'000'000, [&] {
            EXPECT_EQ(Bytes{1}, relay.receive());
            reply_queue.send(reply(good({7})));
        });
        after(9'000'000, [&] { reply_queue.send(reply(good({0x42}))); });
        begin = now();
        EXPECT_EQ(0, zvc_send_remote_api_for_response(&context, 1, 9, &payload, &payload_size));
        EXPECT_EQ(9'000'000, now() - begin);
        EXPECT_EQ(Bytes{0x42}, Bytes(payload, payload + payload_size));
        EXPECT_THAT(log_messages(),
                    ElementsAre("There are 1 outstanding messages in the rx queue", "clearing out queue 1 messages"));
        EXPECT_FALSE(relay.receive().empty());

        after(4'000'000, [&] { relay.receive(); });
        relay.send({1});
        begin = now();
        EXPECT_EQ(-81, zvc_send_simple_remote_api(&context, 1, 9));
        EXPECT_EQ(10'000'000, now() - begin);
        relay.receive();
        mq_close(tx);
    }
}

TEST_F(Exchange, RefusesAContextThatWasNeverSetUp)
{
    zvc_msg_q_context_t empty = {};
    EXPECT_EQ(-3, zvc_reset_context(nullptr));
    EXPECT_EQ(-3, zvc_send_zvmsg_async(&empty, 4, "/a", "/b", "YY", nullptr, 0));
    EXPECT_EQ(-3, zvc_send_simple_remote_api(nullptr, 1, 2));
    EXPECT_EQ(-3, zvc_send_simple_remote_api_async(&empty, 1, 2));
    EXPECT_EQ("null context", log_messages().front());
    EXPECT_EQ("zvc_send_zvmsg error, -3", log_messages().back());
}

TEST_F(Exchange, SendsTheSourceOnce)
{
    CameraDouble camera;
    camera.context()->asource = 5;
    camera.expect(1, 2, {});
    camera.expect(1, 2, {});
    EXPECT_EQ(0, zvc_send_simple_remote_api(camera.context(), 1, 2));
    EXPECT_EQ(0, zvc_send_simple_remote_api(camera.context(), 1, 2));
    EXPECT_EQ(5, camera.received()[0][23]);
    EXPECT_EQ(1, camera.received()[1][23]);
}

TEST_F(Exchange, HandsOutNothingToACallerWithOneArgument)
{
    CameraDouble camera;
    camera.expect(1, 9, {}, good({1}));
    uint8_t mark = 0;
    payload = &mark;
    EXPECT_EQ(0, zvc_send_remote_api_for_response(camera.context(), 1, 9, &payload, nullptr));
    EXPECT_EQ(&mark, payload);
}

TEST_F(Exchange, PayloadCallsLogTheirFailureOnceMore)
{
    struct Case {
        int32_t action;
        int32_t (*send)(zvc_msg_q_context_t *, int32_t, int32_t, const uint8_t *, int32_t);
        std::vector<std::string> log;
    };
    const Case cases[] = {
        {14, zvc_send_remote_api_payload, {"no ack, got 1", "zvc_send_remote_api error, -101"}},
        {15, zvc_send_remote_api_payload, {"no ack, got 1"}},
        {15, command_params_payload, {"no ack, got 1", "zvc_send_remote_api_payload error, -101"}},
    };
    for (const Case &c : cases) {
        reset();
        CameraDouble camera;
        camera.expect(9, static_cast<uint8_t>(c.action), {0xC1, 0xC2}, refused());
        const uint8_t bytes[] = {0xC1, 0xC2};
        EXPECT_EQ(-101, c.send(camera.context(), 9, c.action, bytes, 2));
        EXPECT_EQ(c.log, log_messages());
    }
    reset();
    EXPECT_EQ(-3, zvc_send_remote_api_payload(nullptr, 1, 2, nullptr, 0));
    EXPECT_THAT(log_messages(), ElementsAre("null context", "invalid payload_buf_size, 0"));
}

TEST_F(Exchange, NamedSendsChooseCategoryAndDestination)
{
    Queue relay("/t_named_relay", 4, ZVMSG_MAX);
    Queue reply_queue("/t_named_reply", 4, ZVMSG_MAX);
    zvc_msg_q_context_t context = {"/to_web", relay.descriptor(), reply_queue.descriptor(), {}, 0, 0, 0};
    on_wait([&] { reply_queue.send(reply({})); });
    EXPECT_EQ(0, zvc_send_dorsak_command(&context, "ZZtop", nullptr, 0, nullptr, nullptr));
    EXPECT_EQ(0, zvc_send_camera_command_via_zvNet(&context, "PW", nullptr, 0, nullptr, nullptr));
    const Bytes to_relay = relay.receive();
    const Bytes to_camera = relay.receive();
    EXPECT_EQ(2, to_relay[3]);
    EXPECT_EQ(text("ZZ"), Bytes(to_relay.begin() + 8, to_relay.begin() + 10));
    EXPECT_EQ(text("/to_zvnet"), Bytes(to_relay.end() - 13, to_relay.end() - 4));
    EXPECT_EQ(4, to_camera[3]);
    EXPECT_EQ(text("/to_camera"), Bytes(to_camera.end() - 14, to_camera.end() - 4));
}

TEST_F(Exchange, AMessageThatDoesNotFitEndsTheProcess)
{
    CameraDouble camera;
    const Bytes large(1480, 1);
    EXPECT_DEATH(zvc_send_remote_api_payload(camera.context(), 1, 2, large.data(), 1480),
                 "0 == \\(int\\)tlv_validate\\(context->iobuf.buf\\)");
}

TEST(ProtocolAdapter, IsANumberThatSelectsNothing)
{
    reset();
    EXPECT_EQ(0, zvc_get_protocol_adapter());
    zvc_select_protocol_adapter(7);
    EXPECT_EQ(7, zvc_get_protocol_adapter());
    CameraDouble camera;
    camera.expect(1, 9, {});
    EXPECT_EQ(0, zvc_send_simple_remote_api(camera.context(), 1, 9));
    zvc_select_protocol_adapter(0);
}

TEST(Shutter, TakesTheFlatModesAction)
{
    struct Case {
        uint8_t flat_mode;
        uint8_t group, start, stop;
    };
    const Case cases[] = {{12, 2, 27, 28}, {24, 2, 27, 28}, {16, 3, 23, 24}, {18, 3, 23, 24}, {19, 4, 27, 28},
                          {21, 4, 27, 28}, {25, 1, 9, 10},  {26, 1, 9, 10},  {23, 1, 9, 10},  {27, 1, 9, 10},
                          {29, 1, 9, 10},  {30, 1, 9, 10},  {31, 1, 9, 10},  {13, 2, 27, 28}, {14, 2, 27, 28},
                          {15, 2, 27, 28}, {17, 3, 23, 24}, {20, 4, 27, 28}};
    reset();
    for (const Case &c : cases) {
        CameraDouble camera;
        for (const uint8_t on : {uint8_t{0}, uint8_t{7}}) {
            camera.expect(1, 7, {}, good({c.flat_mode, 0}));
            camera.expect(c.group, on != 0 ? c.start : c.stop, {});
            EXPECT_EQ(0, zvc_shutter(camera.context(), on));
        }
    }
    for (const uint8_t unknown : {uint8_t{22}, uint8_t{28}, uint8_t{255}}) {
        CameraDouble camera;
        camera.expect(1, 7, {}, good({unknown, 0}));
        EXPECT_EQ(-3, zvc_shutter(camera.context(), 1));
        EXPECT_EQ("shutter descriptor not found", log_messages().back());
    }
    CameraDouble camera;
    camera.expect(1, 7, {}, refused());
    EXPECT_EQ(-101, zvc_shutter(camera.context(), 1));
    camera.expect(1, 7, {}, good({12, 0}));
    camera.expect(2, 27, {}, refused());
    EXPECT_EQ(-3, zvc_shutter(camera.context(), 1));
    EXPECT_EQ("command g/a, 2,27, error, -101", log_messages().back());
}

} // namespace
