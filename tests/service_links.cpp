// Both links against a simulated camera that is another process, which dies, freezes and comes back. Real queues, real
// time.
#include "queue_names.h"
#include "sim_process.h"

#include <zvservice/catalogue.h>
#include <zvservice/links.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <mqueue.h>
#include <optional>
#include <string>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>
#include <zvctrl/camera_records.h>
#include <zvctrl/camera_setting_ids.h>
#include <zvctrl/zvDbg.h>
#include <zvctrl/zvc_commands_zvx.h>

namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using testing::HasSubstr;
using zvservice::CameraLink;
using zvservice::DaemonLink;
using zvservice::Outcome;
using zvservice::Result;
using Clock = std::chrono::steady_clock;

constexpr milliseconds ENOUGH = 2s; // for an answer that comes
constexpr milliseconds PATIENCE = 200ms;
constexpr milliseconds SLACK = 400ms; // what a busy machine adds
constexpr milliseconds SHORT = 20ms;

constexpr uint8_t NEW_ZOOM = 30; // a camera begins with none

// Shows a result that was not expected.
testing::AssertionResult comes_to(Outcome outcome, const Result &result)
{
    return (result.outcome() == outcome ? testing::AssertionSuccess() : testing::AssertionFailure())
           << "outcome " << static_cast<int>(result.outcome()) << ", code " << result.code() << ", "
           << result.sentence();
}

#define EXPECT_OUTCOME(expected, result) EXPECT_TRUE(comes_to(Outcome::expected, result))

// The messages that wait in a queue, or -1 where there is no such queue.
long waiting_in(const std::string &name)
{
    const mqd_t queue = mq_open(name.c_str(), O_RDONLY);
    mq_attr state = {};
    state.mq_curmsgs = -1;
    if (queue >= 0) {
        mq_getattr(queue, &state);
        mq_close(queue);
    }
    return state.mq_curmsgs;
}

bool exists(const std::string &name)
{
    return waiting_in(name) >= 0;
}

// Makes a queue, and returns whether that was possible.
bool make(const std::string &name, long messages, long size)
{
    mq_attr attributes = {};
    attributes.mq_maxmsg = messages;
    attributes.mq_msgsize = size;
    const mqd_t queue = mq_open(name.c_str(), O_RDONLY | O_CREAT, 0600, &attributes);
    return queue >= 0 && mq_close(queue) == 0;
}

std::string response_queue(pid_t process)
{
    return zv::RESPONSE_QUEUE_PREFIX + std::to_string(process);
}

// Runs `body` in a child, where no expectation may fail. No thread starts there: the thread sanitizer does not allow
// it.
void in_child(const std::function<void()> &body)
{
    const pid_t child = fork();
    if (child == 0) {
        body();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(0, status) << "in the child";
}

// A second, unless more is asked for.
std::chrono::seconds length_of_test()
{
    const char *length = std::getenv("ZVSERVICE_SECONDS");
    return std::chrono::seconds(length != nullptr ? std::strtol(length, nullptr, 10) : 1);
}

// Sets a limit of this process, and returns what it was.
rlim_t set_limit(decltype(RLIMIT_NOFILE) resource, rlim_t value)
{
    rlimit limit = {};
    EXPECT_EQ(0, getrlimit(resource, &limit));
    const rlim_t before = std::exchange(limit.rlim_cur, value);
    EXPECT_EQ(0, setrlimit(resource, &limit));
    return before;
}

template <class Call>
milliseconds time_of(const Call &call)
{
    const Clock::time_point begin = Clock::now();
    call();
    return std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
}

class ServiceLinks : public testing::Test {
  protected:
    Result poll(milliseconds patience = ENOUGH) { return daemon->poll(record, patience); }

    uint8_t published_zoom() const { return record.bytes[STATUS_APP_DIGITAL_ZOOM]; }

    Result set_zoom(uint8_t value, milliseconds patience = ENOUGH)
    {
        return camera->call(
            "set the zoom", [=](auto *context) { return zvc_app_set_digital_zoom(context, value); }, patience);
    }

    Result get_zoom(int32_t &value, milliseconds patience = ENOUGH)
    {
        return camera->call(
            "read the zoom", [&](auto *context) { return zvc_app_get_digital_zoom(context, &value); }, patience);
    }

    Result shutter(uint8_t on)
    {
        return camera->call(
            "use the shutter", [=](auto *context) { return zvc_shutter(context, on); }, ENOUGH);
    }

    // The name of the camera link's reply queue.
    std::string reply_queue()
    {
        std::string name;
        camera->call("look", [&](auto *context) {
            name = context->mbox_name;
            return ZV_OK;
        });
        return name;
    }

    // Writes until a frozen relay's queue has its ten messages.
    void fill_relay()
    {
        for (int i = 0; i < 10; ++i) {
            EXPECT_OUTCOME(NO_ANSWER, set_zoom(NEW_ZOOM, SHORT));
        }
        EXPECT_EQ(10, waiting_in(zv::RELAY_QUEUE));
    }

    // The camera goes on, and takes what waits for it.
    void thaw()
    {
        sim.thaw();
        const Clock::time_point end = Clock::now() + ENOUGH;
        while ((waiting_in(zv::DAEMON_QUEUE) > 0 || waiting_in(zv::RELAY_QUEUE) > 0) && Clock::now() < end) {
            std::this_thread::sleep_for(1ms);
        }
    }

    // Both links answer at once, and show the zoom that the camera has.
    void expect_back(uint8_t zoom)
    {
        EXPECT_OUTCOME(DONE, poll());
        EXPECT_EQ(zoom, published_zoom());
        int32_t now = -1;
        EXPECT_OUTCOME(DONE, get_zoom(now));
        EXPECT_EQ(zoom, now);
    }

    SimProcess sim;
    std::optional<DaemonLink> daemon{std::in_place};
    std::optional<CameraLink> camera{std::in_place};
    all_status_settings_t record = {};
};

// ---- Peers that come and go

TEST_F(ServiceLinks, OpenWithoutWaitingForAPeer)
{
    sim.end();
    all_status_settings_t before = record;
    EXPECT_LT(time_of([&] {
                  EXPECT_EQ("the control daemon is not running: there is no queue /to_zvCtlD",
                            daemon->open().sentence());
                  EXPECT_EQ("the relay to the firmware is not running: there is no queue /to_zvnet",
                            camera->open().sentence());
                  EXPECT_OUTCOME(NOT_THERE, poll(zvservice::NO_LIMIT));
                  EXPECT_OUTCOME(NOT_THERE, set_zoom(1, zvservice::NO_LIMIT));
              }),
              SLACK);
    EXPECT_TRUE(std::equal(std::begin(before.bytes), std::end(before.bytes), record.bytes));
    sim.start();
    EXPECT_OUTCOME(DONE, poll());
    EXPECT_OUTCOME(DONE, set_zoom(NEW_ZOOM));
}

TEST_F(ServiceLinks, SurviveRestarts)
{
    for (const bool killed : {false, true}) {
        for (const bool noticed : {false, true}) {
            SCOPED_TRACE(testing::Message() << "killed " << killed << ", noticed " << noticed);
            EXPECT_OUTCOME(DONE, set_zoom(NEW_ZOOM));
            expect_back(NEW_ZOOM);
            killed ? sim.kill() : sim.end();
            if (noticed) {
                const Outcome outcome = killed ? Outcome::NO_ANSWER : Outcome::NOT_THERE;
                EXPECT_TRUE(comes_to(outcome, poll(PATIENCE)));
                EXPECT_TRUE(comes_to(outcome, set_zoom(NEW_ZOOM, PATIENCE)));
            }
            sim.start();
            expect_back(0);
        }
    }
}

TEST_F(ServiceLinks, NeverTakeALateAnswerForANewOne)
{
    EXPECT_OUTCOME(DONE, poll());
    SimProcess::fault("delay:ms=300,count=2"); // one on each link
    int32_t zoom = -1;
    EXPECT_OUTCOME(NO_ANSWER, poll(SHORT));
    EXPECT_OUTCOME(NO_ANSWER, get_zoom(zoom, SHORT));
    EXPECT_OUTCOME(DONE, set_zoom(NEW_ZOOM));
    std::this_thread::sleep_for(400ms); // both have come by now, and lie there
    expect_back(NEW_ZOOM);

    SimProcess::fault("delay:ms=100,count=2,group=1,action=11"); // both reads of the zoom, and nothing else
    EXPECT_OUTCOME(NO_ANSWER, get_zoom(zoom, SHORT));
    EXPECT_OUTCOME(DONE, set_zoom(1));
    EXPECT_OUTCOME(DONE, get_zoom(zoom)); // while the answer to the same question comes
    EXPECT_EQ(1, zoom);

    SimProcess::fault("delay:ms=100,count=1,link=daemon");
    EXPECT_OUTCOME(NO_ANSWER, poll(SHORT));
    daemon.emplace(); // its queue has the same name
    EXPECT_OUTCOME(DONE, set_zoom(NEW_ZOOM + 1));
    expect_back(NEW_ZOOM + 1);
}

TEST_F(ServiceLinks, LeaveAFrozenPeerAlone)
{
    EXPECT_OUTCOME(DONE, poll());
    sim.freeze();
    const milliseconds first = time_of([&] { EXPECT_OUTCOME(NO_ANSWER, poll(PATIENCE)); });
    EXPECT_GE(first, PATIENCE - 1ms);
    EXPECT_LT(first, PATIENCE + SLACK);
    const Clock::time_point frozen = Clock::now();
    while (Clock::now() < frozen + length_of_test()) {
        EXPECT_LT(time_of([&] { EXPECT_OUTCOME(NO_ANSWER, poll(PATIENCE)); }), PATIENCE + SLACK);
        std::this_thread::sleep_for(SHORT);
    }
    EXPECT_LE(waiting_in(zv::DAEMON_QUEUE), 1 + length_of_test() / 10s);

    int32_t zoom = -1;
    const auto ask_twice = [&](zvc_msg_q_context_t *context) {
        zvc_app_get_digital_zoom(context, &zoom);
        return zvc_app_get_digital_zoom(context, &zoom);
    };
    EXPECT_LT(time_of([&] { EXPECT_OUTCOME(NO_ANSWER, camera->call("ask twice", ask_twice, PATIENCE)); }),
              PATIENCE + SLACK);

    Result result;
    EXPECT_LT(time_of([&] {
                  fill_relay();
                  result = set_zoom(NEW_ZOOM, SHORT);
              }),
              12 * SHORT + SLACK);
    EXPECT_OUTCOME(NO_ANSWER, result);
    EXPECT_THAT(result.sentence(), HasSubstr("takes no requests"));
    thaw();
    expect_back(NEW_ZOOM); // the writes were carried out
}

// A call on either link, without a limit of its own.
TEST_F(ServiceLinks, AreInterrupted)
{
    struct Row {
        const char *link;
        std::function<Result()> call;
        std::function<void()> interrupt;
    };
    const Row rows[] = {
        {"daemon", [&] { return poll(zvservice::NO_LIMIT); }, [&] { daemon->interrupt(); }},
        {"camera", [&] { return set_zoom(NEW_ZOOM, zvservice::NO_LIMIT); }, [&] { camera->interrupt(); }},
    };
    for (const auto &[link, call, interrupt] : rows) {
        SCOPED_TRACE(link);
        const auto expect_interrupted = [&call = call] {
            const milliseconds time = time_of([&] {
                const Result result = call();
                EXPECT_OUTCOME(NO_ANSWER, result);
                EXPECT_THAT(result.sentence(), HasSubstr("interrupted"));
            });
            EXPECT_LT(time, SLACK);
        };
        EXPECT_OUTCOME(DONE, call());
        interrupt();
        interrupt();
        expect_interrupted(); // the next one
        EXPECT_OUTCOME(DONE, call());
        sim.freeze();
        std::thread other([&interrupt = interrupt] {
            std::this_thread::sleep_for(50ms);
            interrupt();
        });
        expect_interrupted(); // the one that runs
        other.join();
        thaw();
        EXPECT_OUTCOME(DONE, call());
    }

    sim.freeze();
    fill_relay();
    std::thread other([&] {
        std::this_thread::sleep_for(50ms);
        camera->interrupt();
    });
    EXPECT_LT(time_of([&] { EXPECT_OUTCOME(NO_ANSWER, set_zoom(NEW_ZOOM, zvservice::NO_LIMIT)); }), SLACK);
    other.join();
}

// ---- What the camera says

TEST_F(ServiceLinks, SayWhatTheCameraSays)
{
    struct Row {
        const char *rule;
        Outcome of_read;
        Outcome of_write;
        Outcome of_shutter;
        Outcome of_poll;
        int32_t code; // of the read
    };
    constexpr Row ROWS[] = {
        {"off", Outcome::SWITCHED_OFF, Outcome::SWITCHED_OFF, Outcome::SWITCHED_OFF, Outcome::SWITCHED_OFF, 0},
        {"refuse:code=9,link=camera", Outcome::REFUSED, Outcome::REFUSED, Outcome::REFUSED, Outcome::DONE, 9},
        {"error:code=-3,link=camera", Outcome::FIRMWARE_ERROR, Outcome::FIRMWARE_ERROR, Outcome::FIRMWARE_ERROR,
         Outcome::DONE, -3},
        {"refuse:link=daemon", Outcome::DONE, Outcome::DONE, Outcome::DONE, Outcome::FAILED, 0},
        {"truncate:link=daemon", Outcome::DONE, Outcome::DONE, Outcome::DONE, Outcome::FAILED, 0},
    };
    for (const Row &row : ROWS) {
        SCOPED_TRACE(row.rule);
        SimProcess::fault(row.rule);
        int32_t zoom = -1;
        const Result read = get_zoom(zoom);
        EXPECT_TRUE(comes_to(row.of_read, read));
        EXPECT_EQ(row.code, read.code());
        EXPECT_TRUE(comes_to(row.of_write, set_zoom(NEW_ZOOM)));
        EXPECT_TRUE(comes_to(row.of_shutter, shutter(1)));
        EXPECT_TRUE(comes_to(row.of_poll, poll()));
        SimProcess::fault("clear");
        EXPECT_OUTCOME(DONE, poll());
        shutter(0);
    }
}

TEST_F(ServiceLinks, SayThatItIsOffAlsoAfterAPollWithoutAnAnswer)
{
    SimProcess::fault("drop:count=1");
    EXPECT_OUTCOME(NO_ANSWER, poll(SHORT));
    SimProcess::fault("off"); // which the sim says to a key, too
    EXPECT_OUTCOME(SWITCHED_OFF, poll());
    SimProcess::fault("clear");
    EXPECT_OUTCOME(DONE, poll());
}

TEST_F(ServiceLinks, WriteASettingsOption)
{
    EXPECT_OUTCOME(DONE, poll());
    const zvservice::State before(record, zvservice::camera_model());
    const zvservice::Catalogue catalogue(before.model());
    uint32_t option = 0;
    EXPECT_OUTCOME(DONE, catalogue.find_option(SETTING_VIDEO_FPS, "24", 0, option));
    EXPECT_NE(option, before.option(SETTING_VIDEO_FPS));
    EXPECT_OUTCOME(DONE, camera->set(before, SETTING_VIDEO_FPS, option, ENOUGH));
    EXPECT_OUTCOME(DONE, poll());
    EXPECT_EQ(option, zvservice::State(record, before.model()).option(SETTING_VIDEO_FPS));

    const zvservice::State plain(record, 0); // of a camera without a catalogue, where options are values
    for (const uint32_t setting : zvservice::Catalogue(0).settings()) {
        if (zvservice::Catalogue(0).row(setting).value_size == 1) {
            EXPECT_OUTCOME(NO_SUCH_OPTION, camera->set(plain, setting, 256));
            return;
        }
    }
    ADD_FAILURE() << "no setting of a byte";
}

TEST_F(ServiceLinks, WriteNothingToStandardOutput)
{
    testing::internal::CaptureStdout();
    SimProcess::fault("refuse:count=4"); // with lines in the log
    EXPECT_OUTCOME(FAILED, poll());
    EXPECT_OUTCOME(REFUSED, set_zoom(NEW_ZOOM));
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
}

TEST_F(ServiceLinks, AreNotDisturbedBySignals)
{
    const Clock::time_point end = Clock::now() + length_of_test();
    SimProcess::fault("delay:ms=12"); // so that signals come in the waits
    struct sigaction action = {};
    static volatile sig_atomic_t signals;
    action.sa_handler = [](int) { signals = signals + 1; };
    sigaction(SIGALRM, &action, nullptr); // without SA_RESTART
    const itimerval every = {{0, 5000}, {0, 5000}};
    setitimer(ITIMER_REAL, &every, nullptr);
    while (Clock::now() < end) {
        EXPECT_OUTCOME(DONE, poll());
        EXPECT_OUTCOME(DONE, set_zoom(NEW_ZOOM));
    }
    const itimerval never = {};
    setitimer(ITIMER_REAL, &never, nullptr);
    EXPECT_GT(signals, 20);
}

// ---- Processes and their queues

TEST_F(ServiceLinks, StayWithTheParentAfterAFork)
{
    EXPECT_OUTCOME(DONE, poll()); // from here on there are threads that a child lacks
    EXPECT_OUTCOME(DONE, set_zoom(NEW_ZOOM));
    const std::string replies = reply_queue();
    in_child([&] {
        EXPECT_OUTCOME(NOT_THERE, poll());
        EXPECT_OUTCOME(NOT_THERE, set_zoom(1));
        daemon->interrupt();
        zvservice::remove_own_queues();
        DaemonLink own;
        EXPECT_OUTCOME(DONE, own.poll(record));
        daemon.reset();
        camera.reset();
        EXPECT_OUTCOME(DONE, own.poll(record));
        camera.emplace();
        EXPECT_OUTCOME(DONE, set_zoom(1, zvservice::NO_LIMIT));
        EXPECT_TRUE(exists(response_queue(getpid())));
        const std::string replies_of_child = reply_queue();
        EXPECT_TRUE(exists(replies_of_child));
        errno = 0;
        zvservice::remove_own_queues();
        EXPECT_EQ(0, errno);
        EXPECT_FALSE(exists(response_queue(getpid())));
        EXPECT_FALSE(exists(replies_of_child));
        EXPECT_OUTCOME(DONE, own.poll(record)); // with new queues
        EXPECT_OUTCOME(DONE, set_zoom(NEW_ZOOM, zvservice::NO_LIMIT));
        camera.reset();
    });
    EXPECT_TRUE(exists(response_queue(getpid())));
    EXPECT_TRUE(exists(replies));
    EXPECT_OUTCOME(DONE, poll());
    EXPECT_OUTCOME(DONE, set_zoom(NEW_ZOOM));
}

TEST_F(ServiceLinks, RemoveWhatEndedProcessesLeft)
{
    EXPECT_OUTCOME(DONE, poll());
    const std::string replies = reply_queue();
    const pid_t child = fork();
    if (child == 0) {
        daemon.emplace();
        daemon->poll(record);
        CameraLink().call("die", [](auto *) { return raise(SIGKILL); });
        _exit(1);
    }
    waitpid(child, nullptr, 0);
    const std::string dead = std::to_string(child);
    const std::string foreign[] = {"/to_zvsvc" + dead + ".x", "/to_zvsvc" + dead + ".1.1",
                                   "/to_zvcam" + dead + "a",  "/to_zvcam",
                                   "/other" + dead,           "/to_zvcam0"};
    for (const std::string &name : foreign) {
        make(name, 1, 1);
    }
    make("/to_zvcam" + dead, 1, 1);
    std::vector<std::string> removed;
    EXPECT_OUTCOME(DONE, zvservice::remove_leftover_queues(removed));
    EXPECT_THAT(removed, testing::UnorderedElementsAre("/to_ZVCU" + dead, testing::StartsWith("/to_zvsvc" + dead),
                                                       "/to_zvcam" + dead));
    EXPECT_TRUE(std::all_of(std::begin(foreign), std::end(foreign), exists));
    EXPECT_TRUE(exists(replies));
    EXPECT_TRUE(exists(response_queue(getpid())));
    for (const std::string &name : foreign) {
        mq_unlink(name.c_str());
    }
    camera.reset();
    daemon.reset();
    EXPECT_FALSE(exists(replies));
    EXPECT_FALSE(exists(response_queue(getpid())));
}

TEST_F(ServiceLinks, NameTheLimitThatStopsThem)
{
    const auto expect_sentence = [&](auto resource, rlim_t limit, const std::string &regex) {
        daemon.emplace();
        camera.emplace();
        const rlim_t before = set_limit(resource, limit);
        const Result results[] = {daemon->open(), camera->open()};
        set_limit(resource, before); // the sanitizers open files, too
        for (const Result &result : results) {
            EXPECT_OUTCOME(SYSTEM_LIMIT, result);
            EXPECT_THAT(result.sentence(), testing::ContainsRegex(regex));
        }
    };
    expect_sentence(RLIMIT_MSGQUEUE, 1000, "limit of 1000 bytes .*ulimit -q.*raise it");
    daemon.reset();
    camera.reset();
    const int next = eventfd(0, 0);
    close(next);
    for (const int files : {next, next + 1, next + 2}) { // a link needs more
        expect_sentence(RLIMIT_NOFILE, static_cast<rlim_t>(files), "open files .*ulimit -n.*raise it");
    }
    constexpr char MESSAGE_SIZE[] = "/proc/sys/fs/mqueue/msgsize_max";
    if (std::ofstream(MESSAGE_SIZE) << 8192 << std::flush) {
        const Result result = daemon->open();
        EXPECT_OUTCOME(SYSTEM_LIMIT, result);
        EXPECT_THAT(result.sentence(), HasSubstr("10000 bytes and the kernel allows 8192; as root: sysctl -w"));
        std::ofstream(MESSAGE_SIZE) << 16384;
    }
    EXPECT_OUTCOME(DONE, poll());
}

// The limit is a user's, so that this is another user, whom no test that runs meanwhile is.
TEST_F(ServiceLinks, MakeRoomByRemovingLeftovers)
{
    constexpr uid_t USER = 54321;
    std::string dead; // names of a process that has ended
    in_child([&] {
        const pid_t child = fork();
        if (child == 0) {
            _exit(0);
        }
        waitpid(child, nullptr, 0);
        dead = "/to_zvsvc" + std::to_string(child) + ".";
        set_limit(RLIMIT_MSGQUEUE, 70000); // eight reply queues, or one and one for the daemon's answers
        if (setresuid(USER, USER, USER) != 0) {
            return; // only root can
        }
        int count = 0;
        while (count < 100 && make(dead + std::to_string(count), 5, 1500)) {
            ++count;
        }
        EXPECT_EQ(8, count);
        EXPECT_OUTCOME(DONE, camera->open());
        EXPECT_OUTCOME(DONE, daemon->open());
        EXPECT_FALSE(exists(dead + "0"));
        daemon.reset();
        camera.reset();
    });
}

} // namespace
