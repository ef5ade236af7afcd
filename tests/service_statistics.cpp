#include <zvservice/statistics.h>

#include "sim_process.h"

#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>
#include <thread>
#include <zvctrl/camera_setting_ids.h>
#include <zvservice/camera.h>

using namespace std::chrono_literals;
using namespace zvservice;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr uint32_t FPS_60 = 5;
constexpr uint32_t FPS_240 = 0; // not with 4K, which it begins with

uint64_t count(const OutcomeCounts &counts, Outcome outcome)
{
    return counts[static_cast<size_t>(outcome)];
}

template <class Counts>
uint64_t sum(const Counts &counts)
{
    return std::accumulate(counts.begin(), counts.end(), uint64_t{0});
}

// What took exactly as long as a bound is in that bound's bucket.
TEST(MetricsText, IsWrittenFamilyByFamily)
{
    Histogram histogram;
    for (const auto time : {0ns, 100000ns, 100001ns, 1000000000ns, 1000000001ns, 15000000000ns, 15000000001ns}) {
        histogram.add(time);
    }
    MetricsText text;
    text.family("zv_requests", "counter", "Requests \"served\",\nby \\status.");
    text.sample(R"(status="200")", uint64_t{18446744073709551615U});
    text.sample(R"(status="404")", uint64_t{0});
    text.family("zv_age", "gauge", "Age.");
    text.sample("", -0.5);
    text.family("zv_request_seconds", "histogram", "Time.");
    text.sample(R"(method="GET")", histogram);
    EXPECT_EQ(R"(# TYPE zv_requests counter
# HELP zv_requests Requests \"served\",\nby \\status.
zv_requests_total{status="200"} 18446744073709551615
zv_requests_total{status="404"} 0
# TYPE zv_age gauge
# HELP zv_age Age.
zv_age -0.5
# TYPE zv_request_seconds histogram
# UNIT zv_request_seconds seconds
# HELP zv_request_seconds Time.
zv_request_seconds_bucket{method="GET",le="0.0001"} 2
zv_request_seconds_bucket{method="GET",le="0.00025"} 3
zv_request_seconds_bucket{method="GET",le="0.0005"} 3
zv_request_seconds_bucket{method="GET",le="0.001"} 3
zv_request_seconds_bucket{method="GET",le="0.0025"} 3
zv_request_seconds_bucket{method="GET",le="0.01"} 3
zv_request_seconds_bucket{method="GET",le="0.05"} 3
zv_request_seconds_bucket{method="GET",le="0.25"} 3
zv_request_seconds_bucket{method="GET",le="1.0"} 4
zv_request_seconds_bucket{method="GET",le="2.5"} 5
zv_request_seconds_bucket{method="GET",le="5.0"} 5
zv_request_seconds_bucket{method="GET",le="15.0"} 6
zv_request_seconds_bucket{method="GET",le="+Inf"} 7
zv_request_seconds_count{method="GET"} 7
zv_request_seconds_sum{method="GET"} 32.000200003
# EOF
)",
              text.end());
}

TEST(Statistics, CountWhatPollsAndCallsCameTo)
{
    CameraOptions options;
    options.poll_interval = 10s; // polls are the test's own, but for the first and those that look after a lost camera
    options.poll_patience = 100ms;
    Camera camera(options);
    EXPECT_EQ(Outcome::NOT_THERE, camera.start_capture().outcome());
    EXPECT_EQ(Outcome::NOT_THERE, camera.refresh().outcome());
    SimProcess sim;
    ASSERT_TRUE(camera.refresh().done());
    for (const auto &[fault, outcome] : {std::pair("off", Outcome::SWITCHED_OFF), std::pair("refuse", Outcome::FAILED),
                                         std::pair("drop:link=daemon", Outcome::NO_ANSWER)}) {
        SCOPED_TRACE(fault);
        const Statistics before = camera.statistics();
        SimProcess::fault(fault);
        EXPECT_EQ(outcome, camera.refresh().outcome());
        SimProcess::fault("clear");
        for (int i = 0; i < 100 && !camera.refresh().done(); ++i) { // it may have to come into step
            std::this_thread::sleep_for(10ms);
        }
        const Statistics after = camera.statistics();
        EXPECT_LT(count(before.polls, outcome), count(after.polls, outcome));
        EXPECT_LT(count(before.polls, Outcome::DONE), count(after.polls, Outcome::DONE));
    }

    EXPECT_TRUE(camera.set(SETTING_VIDEO_FPS, FPS_60).result.done());
    EXPECT_EQ(Outcome::FORBIDDEN, camera.set(SETTING_VIDEO_FPS, FPS_240).result.outcome());
    EXPECT_EQ(Outcome::NO_SUCH_SETTING, camera.set("video/fsp", "30").result.outcome());
    EXPECT_EQ(Outcome::FIRMWARE_ERROR, camera.tag("100ABCDE/NOTHERE.MP4", 1000).outcome());
    SimProcess::fault("refuse:link=camera,count=1");
    EXPECT_EQ(Outcome::REFUSED, camera.delete_last().outcome());
    sim.freeze();
    auto first = std::async(std::launch::async, [&camera] { return camera.start_capture(300ms); });
    auto second = std::async(std::launch::async, [&camera] { return camera.stop_capture(200ms); });
    while (second.wait_for(5ms) != std::future_status::ready) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(0U, count(camera.statistics().calls, Outcome::FORBIDDEN));
        EXPECT_LT(std::chrono::steady_clock::now() - start, 100ms);
    }
    EXPECT_EQ(Outcome::NO_ANSWER, first.get().outcome());
    EXPECT_EQ(Outcome::NO_ANSWER, second.get().outcome());
    sim.thaw();

    const Statistics statistics = camera.statistics();
    EXPECT_THAT(statistics.calls, ElementsAre(1, 0, 0, 2, 1, 1, 1, 0, 0, 0, 0, 0));
    EXPECT_EQ(sum(statistics.calls), sum(statistics.call_time.counts));
    EXPECT_GE(statistics.call_time.sum, 0.45); // the two that gave up
    EXPECT_LT(statistics.call_time.sum, 5);
    const uint64_t answered = count(statistics.polls, Outcome::DONE) + count(statistics.polls, Outcome::SWITCHED_OFF);
    EXPECT_EQ(answered, sum(statistics.poll_time.counts));
}

TEST(Statistics, AreMetricsWithTheStatusesThatAreNumbers)
{
    MetricsText none;
    write_metrics(none, Snapshot(), Statistics());
    EXPECT_THAT(none.end(), Not(HasSubstr("zv_state")));

    all_status_settings_t record = {};
    uint8_t *values = record.bytes + ALL_STATUS_OFFSET;
    values[STATUS_SYSTEM_ENCODING_ACTIVE] = 1;
    values[STATUS_WIRELESS_WIFI_BARS] = 0xFE; // signed
    Snapshot snapshot;
    snapshot.link = LinkState::STALE;
    snapshot.revision = 17;
    snapshot.state = std::make_shared<const State>(record, 62);
    snapshot.taken = std::chrono::steady_clock::now();
    Statistics statistics;
    statistics.polls[static_cast<size_t>(Outcome::NO_ANSWER)] = 3;
    MetricsText text;
    write_metrics(text, snapshot, statistics);
    const std::string metrics = text.end();
    for (const char *lines : {
             "zv_polls_total{outcome=\"done\"} 0\n",
             "zv_polls_total{outcome=\"no_answer\"} 3\n",
             "zv_calls_total{outcome=\"system_limit\"} 0\n",
             "zv_link{zv_link=\"up\"} 0\nzv_link{zv_link=\"stale\"} 1\nzv_link{zv_link=\"down\"} 0\n",
             "zv_revision 17\n",
             "# UNIT zv_state_age_seconds seconds\n",
             "zv_status_system_encoding_active{status=\"10\"} 1\n",
             "zv_status_wireless_state{status=\"19\"} 0\nzv_status_wireless_state{status=\"22\"} 0\n",
             "zv_status_wireless_wifi_bars{status=\"56\"} -2.0\n",
         }) {
        EXPECT_THAT(metrics, HasSubstr(lines));
    }
    EXPECT_THAT(metrics, Not(HasSubstr("forbidden")));
    EXPECT_THAT(metrics, Not(HasSubstr("ssid")));
}

} // namespace
