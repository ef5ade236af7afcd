#include "zvMsg.h"

#include "camera_double.h"
#include "interpose.h"
#include "zvMbox.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace test;
using testing::ElementsAre;

namespace {

const std::string FROM = "/t_from" + std::to_string(getpid());
const std::string TO = "/t_to" + std::to_string(getpid());
const std::string RELAY = "/t_relay" + std::to_string(getpid());

bool exists(const std::string &name)
{
    const mqd_t queue = mq_open(name.c_str(), O_RDONLY);
    return queue != -1 && mq_close(queue) == 0;
}

class Request : public testing::Test {
  protected:
    void SetUp() override
    {
        reset();
        fail_nothing();
        build();
    }
    void TearDown() override
    {
        fail_nothing();
        g_debug_level = 0x285420;
        EXPECT_FALSE(exists(FROM)) << "the reply mailbox was left behind";
    }

    void build(uint32_t size = ZVMSG_MAX)
    {
        const uint8_t argument[] = {0xA1, 0xA2};
        iobuf.size = size;
        zvmsg_build(&iobuf, "YY", argument, sizeof argument, 4);
    }

    // Answers the request with `message` while it waits.
    int32_t exchange(const Bytes &message)
    {
        build();
        Queue destination(TO, 2, ZVMSG_MAX);
        on_wait([&] {
            const mqd_t reply = mq_open(FROM.c_str(), O_WRONLY);
            ASSERT_NE(-1, reply);
            EXPECT_EQ(0, mq_send(reply, reinterpret_cast<const char *>(message.data()), message.size(), 0));
            mq_close(reply);
        });
        const int32_t result = zvmsg_send_timedreceive(&iobuf, FROM.c_str(), TO.c_str(), nullptr, 0);
        on_wait(nullptr);
        EXPECT_EQ(result, iobuf.len);
        EXPECT_FALSE(exists(FROM));
        return result;
    }

    zvIoBuf_t iobuf = {};
};

const Bytes ANSWER = tlv_message(5, {{TLV_CMD, text("YY")},
                                     {TLV_CMDARG, {}},
                                     {TLV_RSPARG, {7, 8, 9}},
                                     {TLV_SRC, text("/a")},
                                     {TLV_DST, text("/b")},
                                     {TLV_END, {}}});

TEST_F(Request, IsPostedToItsDestinationOrTheRelay)
{
    Queue destination(TO, 2, ZVMSG_MAX);
    Queue relay(RELAY, 2, ZVMSG_MAX);
    const Bytes expected = tlv_message(4, {{TLV_CMD, text("YY")},
                                           {TLV_CMDARG, {0xA1, 0xA2}},
                                           {TLV_SRC, text(FROM.c_str())},
                                           {TLV_DST, text(TO.c_str())},
                                           {TLV_END, {}}});
    EXPECT_EQ(0, zvmsg_send(&iobuf, FROM.c_str(), TO.c_str(), nullptr, 0));
    EXPECT_EQ(expected, destination.receive());
    build();
    EXPECT_EQ(0, zvmsg_send(&iobuf, FROM.c_str(), TO.c_str(), RELAY.c_str(), 0));
    EXPECT_EQ(expected, relay.receive());
    EXPECT_TRUE(destination.empty());
    EXPECT_EQ(static_cast<int32_t>(expected.size()), iobuf.len);
}

TEST_F(Request, GetsItsAnswer)
{
    ASSERT_EQ(static_cast<int32_t>(ANSWER.size()), exchange(ANSWER));
    EXPECT_EQ(ANSWER, Bytes(iobuf.buf, iobuf.buf + iobuf.len));
    uint8_t *payload = nullptr;
    uint16_t size = 0;
    zvmsg_response(&iobuf, &payload, &size);
    EXPECT_EQ((Bytes{7, 8, 9}), Bytes(payload, payload + size));

    Bytes longer = ANSWER;
    longer.push_back(0xEE);
    EXPECT_EQ(static_cast<int32_t>(longer.size()), exchange(longer));
    EXPECT_TRUE(log_messages().empty());
}

TEST_F(Request, TimesOut)
{
    Queue destination(TO, 2, ZVMSG_MAX);
    EXPECT_EQ(-1, zvmsg_send_timedreceive(&iobuf, FROM.c_str(), TO.c_str(), nullptr, 0));
    EXPECT_EQ(-1, iobuf.len);
    EXPECT_FALSE(exists(FROM));
    build();
    EXPECT_EQ(-1, zvmsg_send_timedreceive_w_time(&iobuf, FROM.c_str(), TO.c_str(), nullptr, 0, 3));
    EXPECT_THAT(waits().selects, ElementsAre(10, 3));
    EXPECT_THAT(log_messages(),
                ElementsAre("Warning: 10 seconds timeout expired", "Warning: 3 seconds timeout expired"));
    build();
    EXPECT_EQ(-1, zvmsg_send_timedreceive(&iobuf, FROM.c_str(), TO.c_str(), nullptr, 0)); // lost: the mailbox is full
    EXPECT_THAT(log_messages()[2], testing::StartsWith("No Longer an ASSERT: Mailbox Full"));
}

TEST_F(Request, TurnsAwayWhatIsNoAnswer)
{
    // Cut where the request's own end would complete it.
    Bytes shorter = tlv_message(5, {{TLV_CMD, text("YY")},
                                    {TLV_CMDARG, {0xA1, 0xA2}},
                                    {TLV_SRC, text(FROM.c_str())},
                                    {TLV_DST, text(TO.c_str())},
                                    {TLV_END, {}}});
    shorter.resize(shorter.size() - 4);
    Bytes overrun = ANSWER;
    overrun[12] = 0x7F;
    const Bytes no_source = tlv_message(5, {{TLV_CMD, text("YY")}, {TLV_DST, text("/somewhere")}, {TLV_END, {}}});
    for (const Bytes &message : {shorter, overrun, no_source, Bytes{0}, Bytes(1500, 0xFF)}) {
        reset();
        EXPECT_EQ(-1, exchange(message));
        EXPECT_EQ(1u, log_messages().size());
    }
    reset();
    g_logLevel = ZV_LOG_INFO;
    exchange({0, 5, 0, 5, 0xAB});
    EXPECT_THAT(log_messages(),
                ElementsAre("TLV_ERROR: MSG len is too short (5 < 18)\n", "zvmsg_send_timedreceive:", "\n",
                            "ERROR      00000000  00050005 ab" + std::string(26, ' ') + ".....           \n"));

    reset();
    fail(Call::MQ_RECEIVE, EIO);
    EXPECT_EQ(-1, exchange(ANSWER));
    build(ZVMSG_MAX - 1); // too small for the reply mailbox
    on_wait([] {
        const mqd_t reply = mq_open(FROM.c_str(), O_WRONLY);
        mq_send(reply, "", 1, 0);
        mq_close(reply);
    });
    Queue destination(TO, 2, ZVMSG_MAX);
    EXPECT_EQ(-1, zvmsg_send_timedreceive(&iobuf, FROM.c_str(), TO.c_str(), nullptr, 0));
}

TEST_F(Request, EndsInOrderWithoutAMailbox)
{
    EXPECT_EQ(-1, zvmsg_send(&iobuf, FROM.c_str(), TO.c_str(), nullptr, 0));
    EXPECT_EQ(ENOENT, errno);
    build();
    EXPECT_EQ(-1, zvmsg_send_timedreceive(&iobuf, FROM.c_str(), TO.c_str(), nullptr, 0));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_EQ(-1, iobuf.len);
    EXPECT_FALSE(exists(FROM));
    EXPECT_TRUE(waits().selects.empty());

    Queue destination(TO, 2, ZVMSG_MAX);
    {
        Queue held(FROM, 2, ZVMSG_MAX);
        build();
        EXPECT_EQ(-1, zvmsg_send_timedreceive(&iobuf, FROM.c_str(), TO.c_str(), nullptr, 0));
        EXPECT_EQ(EEXIST, errno);
        EXPECT_TRUE(exists(FROM)) << "another request's mailbox was taken away";
    }
    EXPECT_EQ(5u, waits().sleeps.size());
    EXPECT_TRUE(destination.empty());
}

TEST_F(Request, IsTracedInItsDirection)
{
    Queue destination(TO, 10, ZVMSG_MAX);
    g_logLevel = ZV_LOG_INFO;
    const auto traced = [this](int32_t direction) {
        log_lines().clear();
        build();
        zvmsg_send(&iobuf, FROM.c_str(), TO.c_str(), nullptr, direction);
        return !log_messages().empty();
    };
    EXPECT_FALSE(traced(25));
    g_debug_level |= 0x100;
    const std::pair<int32_t, bool> cases[] = {{25, true},  {26, true},  {24, false}, {0, false},
                                              {29, false}, {30, false}, {-1, false}};
    for (const auto &[direction, expected] : cases) {
        EXPECT_EQ(expected, traced(direction)) << direction;
    }
    traced(25);
    EXPECT_THAT(log_messages()[1], testing::StartsWith("        >XX 00000000  0"));

    zvc_msg_q_context_t context = {FROM.c_str(), destination.descriptor(), -1, iobuf, 0, 0, 0};
    log_lines().clear();
    zvmsg_build(&context.iobuf, "YY", nullptr, 0, 4);
    EXPECT_EQ(0, zvc_send_context(&context, "/to_camera", nullptr, 26));
    EXPECT_THAT(log_messages()[1], testing::StartsWith("        <XX 00000000  0"));
}

TEST_F(Request, AMessageThatDoesNotFitEndsTheProcess)
{
    EXPECT_EXIT(
        {
            g_logLevel = ZV_LOG_INFO;
            build(40);
            signal(SIGABRT, [](int) {
                const bool named = log_lines().back().find(":0 == tlv_validate(iobuf->buf)\n") != std::string::npos;
                _exit(named ? 7 : 1);
            });
            zvmsg_send(&iobuf, FROM.c_str(), TO.c_str(), nullptr, 0);
        },
        testing::ExitedWithCode(7), "");
}

} // namespace
