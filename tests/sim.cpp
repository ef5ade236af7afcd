#include "simulator.h"

#include "camera_double.h"
#include "csi_double.h"
#include "interpose.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace test;
using namespace zv::sim;

namespace {

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
        camera.faults().add(rule);
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
    constexpr size_t FRAME = 20; // header, return code, the payload's and the end element's heads
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

} // namespace
