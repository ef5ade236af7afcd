// A client that polls the camera's state while the daemon loses, doubles, delays and holds back its answers, gives
// those to other commands, and restarts.

#include "bytes.h"
#include "interpose.h"
#include "simulator.h"
#include "zvcontrol_if.h"

#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <mqueue.h>
#include <string>
#include <unistd.h>

using namespace test;
using namespace zv::sim;

namespace {

constexpr uint64_t SECOND = 1000000;

// The simulated camera in this process. Time is its own: it passes between the polls, and inside the library's waits
// until an answer comes or ten seconds are over.
class FaultyDaemon : public testing::Test {
  protected:
    FaultyDaemon()
    {
        reset();
        g_logLevel = ZV_LOG_OFF;
        EXPECT_EQ("", simulator.open());
        EXPECT_EQ(0, zvcontrol_interface_open());
        answers = mq_open(("/to_ZVCU" + std::to_string(getpid())).c_str(), O_RDONLY);
        on_wait([this] { wait(); });
    }
    ~FaultyDaemon() override
    {
        on_wait(nullptr);
        mq_close(answers);
        zvcontrol_interface_close();
    }

    void wait()
    {
        simulator.serve();
        mq_attr state = {};
        for (uint64_t left = 10 * SECOND; left > 0 && mq_getattr(answers, &state) == 0 && state.mq_curmsgs == 0;) {
            const uint64_t step = std::min(left, simulator.next_due().value_or(left));
            simulator.advance(step);
            left -= step;
        }
    }

    Simulator simulator{62, 1};
    mqd_t answers = -1;
};

TEST_F(FaultyDaemon, APollIsFreshOrTheLastSnapshotAndBusy)
{
    for (const char *text :
         {"drop:link=daemon,every=3", "double:link=daemon,every=4", "delay:link=daemon,every=5,ms=4000",
          "delay:link=daemon,every=7,ms=15000", "truncate:link=daemon,every=31",
          "truncate:link=daemon,every=37,bytes=9", "hold:link=daemon,every=13", "foreign:link=daemon,every=11",
          "restart:link=daemon,every=41"}) {
        FaultRule rule;
        ASSERT_EQ("", parse_fault(text, rule));
        simulator.add_fault(rule);
    }
    constexpr uint32_t POLLS = 1000;
    const Field mark = status(STATUS_WIRELESS_SCAN_TIME_MSEC, 4); // nothing else writes it
    uint32_t fresh = 0;
    uint32_t busy = 0;
    uint32_t refused = 0;
    all_status_settings_t last = {};
    for (uint32_t poll = 1; poll <= POLLS; ++poll) {
        simulator.camera().state().set(mark, poll);
        all_status_settings_t snapshot = {};
        const int32_t result = zvcontrol_send_command_param_response_ex(ZVCONTROL_GET_ALL_SETTINGS_STATUS, nullptr, 0,
                                                                        snapshot.bytes, sizeof snapshot.bytes, nullptr);
        if (result == -1) {
            ++refused; // what was cut off
            continue;
        }
        ASSERT_EQ(0, result);
        if (snapshot.bytes[STATUS_SYSTEM_SYSTEM_BUSY] != 0) {
            ++busy;
            snapshot.bytes[STATUS_SYSTEM_SYSTEM_BUSY] = 0;
            ASSERT_TRUE(std::equal(std::begin(last.bytes), std::end(last.bytes), snapshot.bytes)) << poll;
        } else {
            ++fresh;
            ASSERT_EQ(poll, zv::le32(snapshot.bytes + STATUS_WIRELESS_SCAN_TIME_MSEC));
            last = snapshot;
        }
        simulator.advance(SECOND / 2);
    }
    // Every kind was seen often enough to say something.
    EXPECT_GT(fresh, POLLS / 10);
    EXPECT_GT(busy, POLLS / 5);
    EXPECT_GT(refused, 0U);
}

} // namespace
