#include <zvservice/camera.h>

#include "sim_process.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <poll.h>
#include <string>
#include <sys/time.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>
#include <zvctrl/camera_setting_ids.h>
#include <zvctrl/zvc_video.h>

using namespace std::chrono_literals;
using namespace zvservice;
using std::chrono::milliseconds;
using testing::HasSubstr;

namespace {

using Clock = std::chrono::steady_clock;

constexpr uint32_t RESOLUTION = 2;
constexpr uint32_t RESOLUTION_4K = 1;
constexpr uint32_t FPS_60 = 5;
constexpr uint32_t FPS_30 = 8;
constexpr uint32_t FPS_240 = 0; // not with 4K

// How soon a camera that comes back is to be seen.
constexpr milliseconds SOON = 2s;

// How long the tests last that try something over and over.
Clock::time_point end_of_test()
{
    const char *seconds = getenv("ZVSERVICE_SECONDS");
    return Clock::now() + std::chrono::seconds(seconds != nullptr ? strtol(seconds, nullptr, 10) : 1);
}

milliseconds since(Clock::time_point start)
{
    return std::chrono::duration_cast<milliseconds>(Clock::now() - start);
}

bool comes(const std::function<bool()> &condition, milliseconds patience = SOON)
{
    const auto end = Clock::now() + patience;
    while (!condition()) {
        if (Clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(2ms);
    }
    return true;
}

bool comes(const Camera &camera, LinkState link)
{
    return comes([&] { return camera.snapshot()->link == link; });
}

CameraOptions polling_each(milliseconds interval)
{
    CameraOptions options;
    options.poll_interval = interval;
    options.poll_patience = 300ms;
    return options;
}

int32_t read_zoom(zvc_msg_q_context_t *context)
{
    int32_t zoom = 0;
    return zvc_app_get_digital_zoom(context, &zoom);
}

void come_up_from_no_camera_at_all()
{
    Camera camera;
    const std::shared_ptr<const Snapshot> first = camera.snapshot();
    EXPECT_EQ(LinkState::DOWN, first->link);
    EXPECT_EQ(nullptr, first->state);
    EXPECT_EQ(0U, first->revision);
    EXPECT_THAT(*first->epoch, testing::MatchesRegex("[0-9a-f]{8,}"));
    EXPECT_EQ(Outcome::NOT_THERE, camera.refresh().outcome());
    EXPECT_EQ(Outcome::NOT_THERE, camera.start_capture().outcome());
    EXPECT_EQ(Outcome::NOT_THERE, camera.set(SETTING_VIDEO_FPS, FPS_30).result.outcome());
    EXPECT_EQ(Outcome::NOT_THERE, camera.set("video/fps", "30").result.outcome());

    const SimProcess sim;
    ASSERT_TRUE(comes(camera, LinkState::UP));
    const std::shared_ptr<const Snapshot> up = camera.snapshot();
    EXPECT_EQ(1U, up->revision);
    EXPECT_EQ(62U, up->state->model());
    EXPECT_EQ(FPS_60, up->state->option(SETTING_VIDEO_FPS));
    EXPECT_LT(up->age(), 1s);
    EXPECT_EQ(*first->epoch, *up->epoch);
    ASSERT_TRUE(comes([&] { return camera.snapshot()->taken != up->taken; }));
    EXPECT_GE(camera.snapshot()->taken - up->taken, 450ms); // the camera asks for a poll each 500

    for (const Result &result :
         {camera.start_capture(), camera.stop_capture(), camera.delete_last(), camera.delete_all()}) {
        EXPECT_TRUE(result.done()) << result.sentence();
    }
    EXPECT_EQ(Outcome::FIRMWARE_ERROR, camera.tag("100ABCDE/NOTHERE.MP4", 1000).outcome());
    EXPECT_EQ(Outcome::FAILED, camera.tag(std::string(256, 'x'), 1000).outcome());
}

TEST(Camera, ComesUpFromNoCameraAtAllAndWritesNothingToStandardOutput)
{
    testing::internal::CaptureStdout();
    come_up_from_no_camera_at_all();
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
}

TEST(Camera, ComesBackAfterEachRestartInTheMiddleOfPollsAndWrites)
{
    SimProcess sim;
    Camera camera(polling_each(2ms));
    ASSERT_TRUE(comes(camera, LinkState::UP));
    const std::string epoch = *camera.snapshot()->epoch;
    std::atomic<bool> over = false;
    std::thread writer([&] {
        for (uint32_t i = 0; !over; ++i) {
            SetOptions options;
            options.patience = 500ms;
            const Written written = camera.set(SETTING_VIDEO_FPS, i % 2 == 0 ? FPS_30 : FPS_60, options);
            const Outcome outcome = written.result.outcome();
            EXPECT_TRUE(outcome == Outcome::DONE || outcome == Outcome::NO_ANSWER || outcome == Outcome::NOT_THERE)
                << written.result.sentence();
        }
    });
    std::thread reader([&] {
        for (uint64_t revision = 0; !over; std::this_thread::yield()) {
            const std::shared_ptr<const Snapshot> snapshot = camera.snapshot();
            EXPECT_LE(revision, snapshot->revision);
            revision = snapshot->revision;
            EXPECT_EQ(62U, snapshot->state->model());
            EXPECT_EQ(82U, snapshot->state->status_members().size());
        }
    });
    const auto end = end_of_test();
    for (int restart = 0; restart < 2 || Clock::now() < end; ++restart) {
        const uint64_t revision = camera.snapshot()->revision;
        restart % 2 == 0 ? sim.kill() : sim.end();
        std::this_thread::sleep_for(restart % 4 < 2 ? 0ms : 350ms);
        sim.start();
        EXPECT_TRUE(comes([&] { return camera.set(SETTING_VELLIX_EV, restart % 2 == 0 ? 3 : 2).shown; }));
        EXPECT_LT(revision, camera.snapshot()->revision);
    }
    over = true;
    writer.join();
    reader.join();
    EXPECT_EQ(epoch, *camera.snapshot()->epoch);
}

TEST(Camera, AnswersAtOnceWhileItsCameraIsFrozen)
{
    SimProcess sim;
    Camera camera(polling_each(20ms));
    ASSERT_TRUE(comes(camera, LinkState::UP));
    sim.freeze();
    const auto end = end_of_test();
    std::vector<Clock::duration> reads;
    while (Clock::now() < end) {
        const auto start = Clock::now();
        EXPECT_NE(nullptr, camera.snapshot()->state);
        reads.push_back(Clock::now() - start);
        std::this_thread::sleep_for(200us);
    }
    std::sort(reads.begin(), reads.end());
    EXPECT_LT(reads[reads.size() * 99 / 100], 1ms); // the machine may have other work to do
    EXPECT_LT(reads.back(), 100ms);                 // less than any wait for a poll
    EXPECT_EQ(LinkState::STALE, camera.snapshot()->link);
    EXPECT_GT(camera.snapshot()->age(), 400ms);

    const auto start = Clock::now();
    SetOptions options;
    options.patience = 200ms;
    EXPECT_EQ(Outcome::NO_ANSWER, camera.set(SETTING_VIDEO_FPS, FPS_30, options).result.outcome());
    EXPECT_EQ(Outcome::NO_ANSWER, camera.refresh(100ms).outcome());
    EXPECT_LT(since(start), 600ms);

    sim.thaw();
    EXPECT_TRUE(comes(camera, LinkState::UP));
    EXPECT_TRUE(camera.set(SETTING_VELLIX_EV, 3).shown);
}

TEST(Camera, SaysThatItsCameraIsSwitchedOff)
{
    SimProcess sim({"--fault", "off"});
    Camera camera(polling_each(20ms));
    EXPECT_TRUE(comes([&] { return camera.snapshot()->switched_off; }));
    EXPECT_EQ(LinkState::DOWN, camera.snapshot()->link); // and not a camera of all zeroes
    EXPECT_EQ(nullptr, camera.snapshot()->state);
    EXPECT_EQ(Outcome::SWITCHED_OFF, camera.set(SETTING_VIDEO_FPS, FPS_30).result.outcome());
    SimProcess::fault("clear");
    ASSERT_TRUE(comes(camera, LinkState::UP));
    SimProcess::fault("off");
    EXPECT_EQ(Outcome::SWITCHED_OFF, camera.refresh().outcome());
    EXPECT_TRUE(camera.snapshot()->switched_off);
    EXPECT_EQ(LinkState::STALE, camera.snapshot()->link);
    EXPECT_EQ(FPS_60, camera.snapshot()->state->option(SETTING_VIDEO_FPS));
    EXPECT_EQ(Outcome::SWITCHED_OFF, camera.start_capture().outcome());
    EXPECT_EQ(Outcome::SWITCHED_OFF, camera.set(SETTING_VIDEO_FPS, FPS_30).result.outcome());
    SimProcess::fault("clear");
    EXPECT_TRUE(camera.refresh().done());
    EXPECT_EQ(LinkState::UP, camera.snapshot()->link);
    EXPECT_FALSE(camera.snapshot()->switched_off);
}

TEST(Camera, SetsWhatTheRulesAllowAndTellsWhatChangedWithIt)
{
    const SimProcess sim;
    Camera camera(polling_each(10s));
    ASSERT_TRUE(comes(camera, LinkState::UP));
    struct {
        uint32_t setting;
        uint32_t option;
        bool force;
        Outcome outcome;
        const char *sentence;
        const char *change; // of the settings
    } const rows[] = {
        {4, 0, false, Outcome::NO_SUCH_SETTING, "this camera has no setting 4", ""},
        {SETTING_VIDEO_FPS, 99, true, Outcome::NO_SUCH_OPTION, "setting 3, video/fps, has no option 99", ""},
        {SETTING_VIDEO_FPS, FPS_30, false, Outcome::DONE, "", "\"3\":8"},
        {RESOLUTION, RESOLUTION_4K, false, Outcome::DONE, "", ""}, // as it is already
        {SETTING_VIDEO_FPS, FPS_240, false, Outcome::FORBIDDEN, "3 video/fps: 240 is not available now", ""},
        {SETTING_VIDEO_FPS, FPS_240, true, Outcome::DONE, "", "\"3\":0"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.option);
        const uint64_t revision = camera.snapshot()->revision;
        SetOptions options;
        options.force = row.force;
        const Written written = camera.set(row.setting, row.option, options);
        EXPECT_EQ(row.outcome, written.result.outcome()) << written.result.sentence();
        EXPECT_THAT(written.result.sentence(), HasSubstr(row.sentence));
        EXPECT_EQ(row.outcome == Outcome::DONE, written.shown);
        EXPECT_THAT(written.change.settings, HasSubstr(row.change));
        EXPECT_EQ(*row.change == '\0', written.change.empty());
        EXPECT_EQ(revision + (*row.change != '\0' ? 1 : 0), camera.snapshot()->revision);
        EXPECT_EQ(row.outcome == Outcome::FORBIDDEN, !written.result.reasons().empty());
    }
    EXPECT_THAT(camera.set("video/fps", "30").change.settings, HasSubstr("\"3\":8"));
    EXPECT_EQ(Outcome::NO_SUCH_SETTING, camera.set("video/fsp", "30").result.outcome());
    EXPECT_EQ(Outcome::NO_SUCH_OPTION, camera.set("video/fps", "31").result.outcome());

    SimProcess::fault("drop:link=daemon"); // what is set can't be seen
    SetOptions options;
    options.confirmation = 100ms;
    const Written unseen = camera.set(SETTING_VIDEO_FPS, FPS_60, options);
    EXPECT_TRUE(unseen.result.done()) << unseen.result.sentence();
    EXPECT_FALSE(unseen.shown);
}

TEST(Camera, PollsAtOnceWhenItIsAsked)
{
    const SimProcess sim;
    Camera camera(polling_each(10s));
    ASSERT_TRUE(camera.refresh().done());
    EXPECT_TRUE(camera.call("set the rate", [](auto *context) { return zvc_video_set_fps(context, 8); }).done());
    EXPECT_EQ(FPS_60, camera.snapshot()->state->option(SETTING_VIDEO_FPS));
    EXPECT_TRUE(camera.refresh().done());
    EXPECT_EQ(FPS_30, camera.snapshot()->state->option(SETTING_VIDEO_FPS));
    EXPECT_EQ(2U, camera.snapshot()->revision);
}

TEST(Camera, SendsNothingOfACallThatGaveUpBehindAnother)
{
    const SimProcess sim({"--fault", "drop:link=camera,count=1"});
    Camera camera;
    const auto start = Clock::now();
    std::atomic<bool> begun = false;
    const auto unanswered = [&begun](zvc_msg_q_context_t *context) {
        begun = true;
        return read_zoom(context);
    };
    auto first = std::async(std::launch::async, [&] { return camera.call("read the zoom", unanswered, 600ms); });
    ASSERT_TRUE(comes([&] { return begun.load(); }));
    std::atomic<bool> sent = false;
    const auto in_vain = [&sent](zvc_msg_q_context_t *) {
        sent = true;
        return 0;
    };
    const Result second = camera.call("wait in vain", in_vain, 100ms);
    EXPECT_EQ(Outcome::NO_ANSWER, second.outcome());
    EXPECT_THAT(second.sentence(), HasSubstr("cannot wait in vain: other calls were before it"));
    EXPECT_LT(since(start), 400ms);
    EXPECT_TRUE(camera.call("come third", read_zoom).done());
    EXPECT_EQ(Outcome::NO_ANSWER, first.get().outcome());
    EXPECT_GE(since(start), 600ms);
    EXPECT_FALSE(sent);
    const auto failing = [](zvc_msg_q_context_t *) -> int32_t { throw std::runtime_error("no luck"); };
    EXPECT_EQ(Outcome::FAILED, camera.call("fail", failing).outcome());
}

TEST(Subscription, BeginsWithTheWholeAndMissesNoChange)
{
    std::optional<Camera> camera(std::in_place, polling_each(20ms));
    Subscription slow = camera->subscribe(); // first, so that it has what the quick one gets
    Subscription quick = camera->subscribe();
    const auto next = [&quick] { return quick.next(2s).value(); };
    EXPECT_EQ(Event::Kind::WHOLE, next().kind);
    EXPECT_FALSE(quick.next(1ms));
    pollfd source = {quick.descriptor(), POLLIN, 0};
    EXPECT_EQ(0, poll(&source, 1, 0));

    std::optional<SimProcess> sim(std::in_place);
    EXPECT_EQ(1, poll(&source, 1, 2000));
    const Event first = next();
    ASSERT_EQ(Event::Kind::CHANGE, first.kind);
    EXPECT_EQ(1U, first.change->revision);
    EXPECT_EQ(LinkState::UP, first.snapshot->link);
    EXPECT_EQ(Event::Kind::LINK, next().kind);
    for (uint64_t revision = 2; revision < 2 + Subscription::EVENT_MAX + 5; ++revision) {
        const auto option = static_cast<uint32_t>(revision % 2);
        ASSERT_TRUE(camera->set(SETTING_VELLIX_EV, option).shown);
        const Event event = next();
        ASSERT_EQ(Event::Kind::CHANGE, event.kind);
        EXPECT_EQ(revision, event.change->revision);
        EXPECT_EQ(revision, event.snapshot->revision);
        EXPECT_EQ("{\"revision\":" + std::to_string(revision) +
                      ",\"status\":{},\"settings\":{\"118\":" + std::to_string(option) + "}}",
                  event.change->json());
    }
    sim.reset();
    const Event gone = next();
    EXPECT_EQ(Event::Kind::LINK, gone.kind);
    EXPECT_EQ(LinkState::DOWN, gone.snapshot->link);

    std::optional<Event> whole = slow.next(0ms);
    ASSERT_TRUE(whole);
    EXPECT_EQ(Event::Kind::WHOLE, whole->kind);
    EXPECT_EQ(gone.snapshot, whole->snapshot);
    EXPECT_FALSE(slow.ended());
    auto waiting = std::async(std::launch::async, [&slow] { return slow.next(5s).has_value(); });
    camera.reset();
    EXPECT_FALSE(waiting.get());
    EXPECT_TRUE(slow.ended());
    EXPECT_EQ(1, poll(&source, 1, 0));
    EXPECT_FALSE(quick.next(5s));
}

// What is wrong in a forked child, as its exit code.
int look_around_in_child(std::optional<Camera> &camera, std::optional<Subscription> &subscription, uint64_t revision)
{
    if (camera->snapshot()->state == nullptr || camera->snapshot()->revision < revision ||
        camera->statistics().polls != OutcomeCounts()) {
        return 1;
    }
    if (camera->refresh().outcome() != Outcome::NOT_THERE || camera->start_capture().outcome() != Outcome::NOT_THERE ||
        camera->set(SETTING_VIDEO_FPS, FPS_30).result.outcome() != Outcome::NOT_THERE) {
        return 2;
    }
    if (subscription->next(1s) || !subscription->ended()) {
        return 3;
    }
    Subscription own = camera->subscribe();
    if (!own.next(0ms) || own.next(1s) || !own.ended()) {
        return 4;
    }
    subscription.reset();
    camera.reset();
    return 0;
}

TEST(Camera, StaysWithTheParentAfterAFork)
{
    const SimProcess sim;
    std::optional<Camera> camera(std::in_place, polling_each(1ms));
    ASSERT_TRUE(comes(*camera, LinkState::UP));
    std::optional<Subscription> subscription(camera->subscribe());
    for (int i = 0; i < 20; ++i) {
        const uint64_t revision = camera->snapshot()->revision;
        const pid_t child = fork();
        ASSERT_LE(0, child);
        if (child == 0) {
            alarm(10);
            _exit(look_around_in_child(camera, subscription, revision));
        }
        EXPECT_TRUE(camera->set(SETTING_VIDEO_FPS, i % 2 == 0 ? FPS_30 : FPS_60).shown);
        int status = -1;
        EXPECT_EQ(child, waitpid(child, &status, 0));
        EXPECT_EQ(0, status);
    }
    EXPECT_TRUE(camera->refresh().done());
    EXPECT_TRUE(camera->start_capture().done());
    EXPECT_FALSE(subscription->ended());
}

TEST(Camera, IsNotDisturbedBySignals)
{
    const SimProcess sim;
    Camera camera(polling_each(1ms));
    ASSERT_TRUE(comes(camera, LinkState::UP));
    struct sigaction action = {};
    struct sigaction before = {};
    action.sa_handler = [](int) {};
    ASSERT_EQ(0, sigaction(SIGALRM, &action, &before));
    const itimerval storm = {{0, 5000}, {0, 5000}};
    setitimer(ITIMER_REAL, &storm, nullptr);
    for (const auto end = end_of_test(); Clock::now() < end;) {
        EXPECT_TRUE(camera.refresh().done());
        EXPECT_TRUE(camera.call("read the zoom", read_zoom).done());
        EXPECT_EQ(LinkState::UP, camera.snapshot()->link);
    }
    const itimerval calm = {};
    setitimer(ITIMER_REAL, &calm, nullptr);
    sigaction(SIGALRM, &before, nullptr);
}

TEST(Camera, ServesManyReadersAndWritersAtOnce)
{
    const SimProcess sim;
    Camera camera(polling_each(1ms));
    ASSERT_TRUE(comes(camera, LinkState::UP));
    const auto end = end_of_test();
    std::vector<std::thread> threads;
    threads.reserve(10);
    for (int reader = 0; reader < 8; ++reader) {
        threads.emplace_back([&camera, end, listens = reader % 2 == 0] {
            Subscription changes = camera.subscribe();
            for (uint64_t revision = 0; Clock::now() < end;) {
                const std::optional<Event> event = listens ? changes.next(5ms) : std::nullopt;
                const std::shared_ptr<const Snapshot> snapshot = event ? event->snapshot : camera.snapshot();
                if (listens == event.has_value()) {
                    EXPECT_LE(revision, snapshot->revision);
                    revision = snapshot->revision;
                }
                const std::string now = ",\"3\":" + std::to_string(snapshot->state->option(SETTING_VIDEO_FPS)) + ",";
                EXPECT_THAT(snapshot->state->settings_document(), HasSubstr(now));
            }
        });
    }
    for (const uint32_t setting : {SETTING_VIDEO_FPS, SETTING_VELLIX_EV}) {
        threads.emplace_back([&camera, end, setting] {
            for (uint32_t i = 0; Clock::now() < end; ++i) {
                const uint32_t option = setting == SETTING_VELLIX_EV ? i % 5 : i % 2 == 0 ? FPS_30 : FPS_60;
                const Written written = camera.set(setting, option);
                EXPECT_TRUE(written.result.done()) << written.result.sentence();
                EXPECT_TRUE(written.shown);
                EXPECT_EQ(option, camera.snapshot()->state->option(setting));
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
}

TEST(DaemonLink, IsOpenOnceInAProcess)
{
    const SimProcess sim;
    for (int round = 0; round < 50; ++round) {
        DaemonLink links[2];
        std::atomic<int> ready = 0;
        const auto open = [&ready](DaemonLink &link) {
            for (++ready; ready < 2;) { // both at once
            }
            return link.open().done();
        };
        auto other = std::async(std::launch::async, open, std::ref(links[1]));
        const bool is_open = open(links[0]);
        EXPECT_NE(is_open, other.get());
    }
}

TEST(Camera, EndsWithinASecondWhateverItsCameraDoes)
{
    SimProcess sim;
    std::optional<Camera> cameras[2];
    for (std::optional<Camera> &camera : cameras) {
        camera.emplace();
    }
    const auto is_up = [](const std::optional<Camera> &camera) { return camera->snapshot()->link == LinkState::UP; };
    ASSERT_TRUE(comes([&] { return is_up(cameras[0]) || is_up(cameras[1]); }));
    std::optional<Camera> &camera = cameras[is_up(cameras[0]) ? 0 : 1];
    std::optional<Camera> &second = cameras[is_up(cameras[0]) ? 1 : 0]; // the process has one link to the daemon
    EXPECT_THAT(second->refresh().sentence(), HasSubstr("this process has it open already"));
    EXPECT_EQ(LinkState::DOWN, second->snapshot()->link);
    EXPECT_NE(*camera->snapshot()->epoch, *second->snapshot()->epoch);

    sim.freeze();
    const auto capture = [&camera] { return camera->start_capture(); };
    std::future<Result> waiting[] = {
        // one call under way, one after it, and a poll
        std::async(std::launch::async, capture),
        std::async(std::launch::async, capture),
        std::async(std::launch::async, [&camera] { return camera->refresh(); }),
    };
    std::this_thread::sleep_for(100ms);
    const auto start = Clock::now();
    camera.reset();
    EXPECT_LT(since(start), 1s);
    for (std::future<Result> &result : waiting) {
        EXPECT_EQ(std::future_status::ready, result.wait_for(100ms));
        const Result ended = result.get();
        EXPECT_EQ(Outcome::NO_ANSWER, ended.outcome()) << ended.sentence();
    }
    sim.thaw();
    EXPECT_TRUE(comes(*second, LinkState::UP));

    const auto stay = [](zvc_msg_q_context_t *) {
        std::this_thread::sleep_for(1300ms);
        return 0;
    };
    EXPECT_EQ(Outcome::NO_ANSWER, second->call("stay", stay, 10ms).outcome());
    const auto stuck = Clock::now();
    second.reset();
    EXPECT_LT(since(stuck), 1s);
    std::this_thread::sleep_for(500ms); // its thread comes, and takes the rest with it
}

} // namespace
