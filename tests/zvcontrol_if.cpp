#include "zvcontrol_if.h"

#include "csi_double.h"
#include "daemon_double.h"
#include "interpose.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <new>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

const std::string own_queue = "/to_ZVCU" + std::to_string(getpid());

const Bytes SILENCE;
constexpr auto GET = static_cast<zvcontrol_command_t>(31); // any command without a rule of its own

int allocations_left = -1; // by new, before one fails; none fails with -1

// What the link keeps, it keeps for the process: a test brings it in step before it relies on that.
class Link : public testing::Test {
  protected:
    Link()
    {
        fail_nothing();
        log_lines().clear();
        waits() = {};
    }
    ~Link() override
    {
        fail_nothing();
        zvcontrol_interface_close();
    }

    void open_in_step()
    {
        ASSERT_EQ(0, zvcontrol_interface_open());
        bring_in_step();
    }
    void bring_in_step()
    {
        if (!zvcontrol_is_response_queue_sychronized()) {
            daemon.expect_resync();
            EXPECT_EQ(0, zvcontrol_send_resync());
        }
        log_lines().clear();
    }
    static int32_t send(zvcontrol_command_t command, const Bytes &param = {})
    {
        return zvcontrol_send_command_param_response(command, param.data(), static_cast<uint16_t>(param.size()),
                                                     nullptr, 0);
    }

    DaemonDouble daemon;
};

// Stands first: it sees the process's first key.
TEST_F(Link, GetsBackInStepAfterAFailedWait)
{
    ASSERT_EQ(0, zvcontrol_interface_open());
    daemon.expect(200, {7}, SILENCE);
    EXPECT_EQ(-81, send(static_cast<zvcontrol_command_t>(200), {7}));
    EXPECT_FALSE(zvcontrol_is_response_queue_sychronized());
    EXPECT_THAT(waits().selects, ElementsAre(10));
    EXPECT_THAT(log_messages(),
                ElementsAre("Warning: 10 seconds timeout expired",
                            "Timed out (10sec) on receive on message queue " + own_queue + ", ret -1 errno 110\n",
                            "zvcontrol_wait_response failed! command: UNKNOWN(200) ret: -81"));

    // The late answer comes when the next command has already looked for it: the key tells the two apart.
    DaemonDouble::send(own_queue.c_str(), daemon_answer(0, Bytes{1}));
    log_lines().clear();
    daemon.expect_resync([](uint32_t key) {
        EXPECT_EQ(0xBABABBU, key);
        DaemonDouble::send(own_queue.c_str(), daemon_answer(0, Bytes(634)));
        return DaemonDouble::echo(key);
    });
    EXPECT_EQ(-81, send(GET));
    EXPECT_THAT(
        log_messages(),
        ElementsAre("There are 1 outstanding messages in the zvcontrol rx queue", "clearing out queue 1 messages",
                    "Desynchronization detected when sending zvcontrol command, attempting resync",
                    "Response to (ZVCONTROL_RESYNC_MESSAGE_QUEUE) has wrong response key 0, expected key 12237499",
                    "Resync failed, cannot send command"));
    log_lines().clear();
    daemon.expect_resync();
    daemon.expect(GET, {}, daemon_answer(5));
    EXPECT_EQ(5, send(GET));
    EXPECT_TRUE(zvcontrol_is_response_queue_sychronized());
    EXPECT_EQ("Expected sync key 12237500 returned, resychronization achieved", log_messages().back());

    fail(Call::MQ_RECEIVE, EIO);
    daemon.expect(30, {});
    EXPECT_EQ(-81, send(ZVCONTROL_SET_SETTING_ID));
    EXPECT_FALSE(zvcontrol_is_response_queue_sychronized());
    EXPECT_EQ("zvcontrol_wait_response failed! command: ZVCONTROL_SET_SETTING_ID(30) ret: -81", log_messages().back());
}

TEST_F(Link, TakesOnlyTheFreshKey)
{
    const std::string response = "Response to (ZVCONTROL_RESYNC_MESSAGE_QUEUE) has wrong ";
    const auto shorter = [](uint32_t) { return daemon_answer(0, text("12")); };
    const auto longer = [](uint32_t key) {
        Bytes bytes = little_endian(key);
        bytes.resize(634);
        return daemon_answer(0, bytes);
    };
    struct Case {
        std::function<Bytes(uint32_t)> answer;
        std::string log;
    };
    const Case cases[] = {
        {[](uint32_t key) { return DaemonDouble::echo(key - 1); }, response + "response key "},
        {shorter, response + "size, 2"},
        {longer, response + "size, 634"},
        {[](uint32_t key) { return daemon_answer(-3, little_endian(key)); }, "Error prasing response: -3"},
        {[](uint32_t) { return daemon_answer(0); }, "Failed to parse response"},
        {[](uint32_t) { return SILENCE; }, "failed! command: ZVCONTROL_RESYNC_MESSAGE_QUEUE(102) ret: -81"},
    };
    ASSERT_EQ(0, zvcontrol_interface_open());
    for (const Case &c : cases) {
        daemon.expect_resync(c.answer);
        EXPECT_EQ(-81, zvcontrol_send_resync());
        EXPECT_THAT(log_messages().back(), HasSubstr(c.log));
        EXPECT_FALSE(zvcontrol_is_response_queue_sychronized());
    }
    fail(Call::MQ_SEND, EBADF);
    EXPECT_EQ(-81, zvcontrol_send_resync());
    EXPECT_EQ("mq_send() failed for '/to_zvCtlD': Bad file descriptor", log_messages().back());
}

TEST_F(Link, ServesTheKeptSnapshot)
{
    ASSERT_EQ(0, zvcontrol_interface_open());
    Bytes response;
    uint16_t length = 0;
    const auto ask = [&](zvcontrol_command_t command, size_t room, const Bytes &answer) {
        bring_in_step();
        response.assign(room, 0xEE);
        length = 99;
        daemon.expect(command, {}, answer);
        return zvcontrol_send_command_param_response_ex(command, nullptr, 0, room != 0 ? response.data() : nullptr,
                                                        static_cast<uint16_t>(room), &length);
    };
    const auto busy = [](Bytes record, size_t room) {
        if (record.size() != 238) {
            record[209] = 1;
        }
        record.resize(room, 0xEE);
        return record;
    };
    struct Case {
        zvcontrol_command_t command;
        uint16_t size;
        uint8_t before;
        uint8_t mark;
    };
    const Case cases[] = {{ZVCONTROL_GET_ALL_SETTINGS_STATUS, 634, 0x00, 0x33},
                          {ZVCONTROL_GET_ALL_STATUS, 394, 0x33, 0x44},
                          {ZVCONTROL_GET_ALL_SETTINGS, 238, 0x33, 0x55}};
    for (const auto &[command, size, before, mark] : cases) {
        const Bytes record(size, mark);
        EXPECT_EQ(0, ask(command, size + 6U, daemon_answer(0, record)));            // not the record's size
        EXPECT_EQ(0, ask(command, size, daemon_answer(0, Bytes(size - 1U, mark)))); // not a whole record
        EXPECT_EQ(4, ask(command, size, daemon_answer(4, record)));
        EXPECT_EQ(-1, ask(command, size, {0}));
        EXPECT_EQ(0, ask(command, size, SILENCE));
        EXPECT_EQ(busy(Bytes(size, before), size), response);
        EXPECT_EQ(0, ask(command, size, daemon_answer(0, record)));
        EXPECT_EQ(record, response);
        EXPECT_EQ(0, ask(command, size + 10U, SILENCE));
        EXPECT_EQ(busy(record, size + 10U), response);
        EXPECT_EQ(size, length);
        for (const size_t room : {size_t{0}, size - size_t{1}}) {
            EXPECT_EQ(-81, ask(command, room, SILENCE));
            EXPECT_EQ(99, length);
        }
        for (const Bytes &answer : {SILENCE, daemon_answer(0, record)}) {
            bring_in_step();
            daemon.expect(command, {}, answer);
            EXPECT_EQ(answer.empty() ? -81 : 0,
                      zvcontrol_send_command_param_response(command, nullptr, 0, nullptr, size));
        }
    }
    Bytes whole(634, 0x33);
    std::fill_n(whole.begin(), 394, 0x44);
    std::fill_n(whole.begin() + 394, 238, 0x55);
    EXPECT_EQ(0, ask(ZVCONTROL_GET_ALL_SETTINGS_STATUS, 634, SILENCE));
    EXPECT_EQ(busy(whole, 634), response);
}

TEST_F(Link, ReadsEveryFormOfAnswer)
{
    const Bytes code = {0, 0, 0, 0};
    Bytes overrun = daemon_answer(0, Bytes{1, 2});
    overrun[14] = 7; // the payload's length, while the message's own agrees
    Bytes cut = daemon_answer(0, Bytes{1, 2});
    cut.resize(17);
    Bytes short_size = daemon_answer(0, Bytes{1, 2});
    short_size[1] = 12; // ends after the return code
    struct Case {
        const char *name;
        Bytes answer;
        int32_t result;
        int32_t result_without; // where no payload is wanted
        Bytes response;
        std::string log;
    };
    const Case cases[] = {
        {"payload", daemon_answer(9, Bytes{1, 2}), 9, 9, {1, 2}, ""},
        {"any order", tlv_message(21, {{TLV_END, {}}, {TLV_RSPARG, {5}}, {TLV_RSP, code}}), 0, 0, {5}, ""},
        {"too large a payload", daemon_answer(0, Bytes{1, 2, 3, 4, 5}), 0, 0, {1, 2, 3, 4}, ""},
        {"empty payload", daemon_answer(0, Bytes{}), 0, 0, {}, ""},
        {"refused", daemon_answer(-101, Bytes{8}), -101, -101, {8}, ""},
        {"switched off", daemon_answer(-103), -103, -103, {}, ""},
        {"no payload", daemon_answer(0), -1, 0, {}, "we expected one! return code was:0"},
        {"wide return code", tlv_message(21, {{TLV_RSP, {6, 0, 0, 0, 7}}}), -1, 6, {}, "return code was:6"},
        {"narrow return code", tlv_message(21, {{TLV_RSP, {6, 0, 0}}}), -1, -1, {}, "int32_t (got 3)"},
        {"no return code", tlv_message(21, {{TLV_RSPARG, {1}}}), -1, -1, {1}, "Expected a typeRSP element"},
        {"a command", tlv_message(20, {{TLV_RSP, code}}), -1, -1, {}, "was not CAT_ZVCTRL_RSP, actual (20)"},
        {"cut", cut, -1, -1, {}, "cut off, actual length (17)"},
        {"overrun", overrun, -1, -1, {}, "cut off"},
        {"early end", short_size, -1, 0, {}, "return code was:0"},
        {"one byte", {0}, -1, -1, {}, "cut off"},
    };
    open_in_step();
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        log_lines().clear();
        uint8_t response[4] = {};
        uint16_t length = 0;
        daemon.expect(GET, {}, c.answer);
        EXPECT_EQ(c.result, zvcontrol_send_command_param_response_ex(GET, nullptr, 0, response, 4, &length));
        EXPECT_EQ(c.response, Bytes(response, response + length));
        EXPECT_EQ(c.log.empty(), log_messages().empty());
        EXPECT_THAT(testing::PrintToString(log_messages()), HasSubstr(c.log));
        daemon.expect(GET, {}, c.answer);
        EXPECT_EQ(c.result_without, zvcontrol_send_command_param_response(GET, nullptr, 0, response, 0));
    }
    EXPECT_TRUE(zvcontrol_is_response_queue_sychronized());
    uint8_t source[2] = {};
    int32_t ret = 1;
    const Bytes other = tlv_message(21, {{TLV_SRC, {3, 4}}, {TLV_RSP, code}});
    EXPECT_EQ(0, zvcontrol_parse_ret_response_type(other.data(), static_cast<uint16_t>(other.size()), &ret, source, 2,
                                                   TLV_SRC, nullptr));
    EXPECT_THAT(source, ElementsAre(3, 4));
}

TEST_F(Link, DropsASnapshotOfAnotherCommand)
{
    const auto record = [](size_t size) { return daemon_answer(0, Bytes(size, 0x5A)); };
    const zvcontrol_command_t commands[] = {ZVCONTROL_GET_ALL_SETTINGS, ZVCONTROL_GET_ALL_STATUS,
                                            ZVCONTROL_GET_ALL_SETTINGS_STATUS, ZVCONTROL_SET_SETTING_ID};
    const size_t sizes[] = {238, 394, 634, 0};
    Bytes response(700);
    uint16_t length = 0;
    const auto ask = [&](zvcontrol_command_t command) {
        log_lines().clear();
        return zvcontrol_send_command_param_response_ex(command, nullptr, 0, response.data(), 700, &length);
    };
    open_in_step();
    for (size_t asked = 0; asked < std::size(sizes); ++asked) {
        for (const size_t size : {size_t{238}, size_t{394}, size_t{634}}) {
            const bool right = size == sizes[asked];
            daemon.expect(commands[asked], {}, record(size));
            if (!right) {
                after(9'000'000, [] { DaemonDouble::send(own_queue.c_str(), daemon_answer(0, Bytes{7})); });
            }
            EXPECT_EQ(0, ask(commands[asked]));
            EXPECT_EQ(right ? size : 1, length);
            EXPECT_EQ(right, log_messages().empty());
        }
    }
    // What is short, has no return code or is no answer at all is taken at once.
    const Bytes no_code = tlv_message(21, {{TLV_RSPARG, Bytes(634)}, {TLV_END, {}}});
    const Bytes command = tlv_message(20, {{TLV_RSP, {0, 0, 0, 0}}, {TLV_RSPARG, Bytes(634)}, {TLV_END, {}}});
    for (const Bytes &answer : {record(633), record(239), no_code, command}) {
        daemon.expect(GET, {}, answer);
        ask(GET);
        EXPECT_TRUE(zvcontrol_is_response_queue_sychronized());
        EXPECT_NE(1, length);
    }
}

TEST_F(Link, WaitsForRoomWithinItsTenSeconds)
{
    open_in_step();
    Bytes snapshot(634, 0x33);
    daemon.expect(ZVCONTROL_GET_ALL_SETTINGS_STATUS, {}, daemon_answer(0, snapshot));
    const auto poll = [](Bytes &response) {
        return zvcontrol_send_command_param_response_ex(ZVCONTROL_GET_ALL_SETTINGS_STATUS, nullptr, 0, response.data(),
                                                        634, nullptr);
    };
    Bytes response(634);
    EXPECT_EQ(0, poll(response));

    // A daemon that hangs: the last snapshot is served on, however often it is asked for.
    daemon.hang();
    for (int i = 0; i < 12; ++i) {
        const int64_t begin = now();
        EXPECT_EQ(0, poll(response));
        EXPECT_EQ(10'000'000, now() - begin);
        EXPECT_EQ(0x33, response[208]);
        EXPECT_EQ(1, response[209]);
    }
    EXPECT_EQ(-81, send(GET));
    EXPECT_EQ("Resync failed, cannot send command", log_messages().back());
    EXPECT_THAT(log_messages(), testing::Contains("mq_send() failed for '/to_zvCtlD': Connection timed out"));
}

TEST_F(Link, FindsARestartedDaemon)
{
    open_in_step();
    daemon.expect(GET, {}, SILENCE);
    EXPECT_EQ(-81, send(GET));
    daemon.stop();
    const int64_t begin = now();
    EXPECT_EQ(-81, send(GET));
    EXPECT_EQ(begin, now());
    EXPECT_EQ("Resync failed, cannot send command", log_messages().back());
    daemon.start();
    daemon.expect_resync();
    daemon.expect(GET, {}, daemon_answer(5));
    EXPECT_EQ(5, send(GET));
    EXPECT_TRUE(zvcontrol_is_response_queue_sychronized());
}

TEST_F(Link, ReplacesAQueueThatADeadProcessLeft)
{
    struct Case {
        long depth;
        long size;
    };
    for (const auto &[depth, size] : {Case{5, 500}, Case{5, 16000}, Case{1, 10000}, Case{5, 10000}}) {
        Queue left(own_queue, depth, size);
        left.send({1});
        ASSERT_EQ(0, zvcontrol_interface_open());
        bring_in_step();
        daemon.expect(GET, {}, daemon_answer(5));
        EXPECT_EQ(5, send(GET));
        EXPECT_EQ(depth != 5 || size != 10000, !left.empty());
        zvcontrol_interface_close();
    }
}

TEST_F(Link, LeavesItsParentsQueueAlone)
{
    open_in_step();
    const pid_t child = fork();
    if (child == 0) {
        zvcontrol_interface_close();
        _exit(is_zvcontrol_interface_open());
    }
    int status = -1;
    EXPECT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status);
    daemon.expect(GET, {}, daemon_answer(5));
    EXPECT_EQ(5, send(GET));
}

TEST_F(Link, TellsALackOfQueueBytesFromALackOfDescriptors)
{
    rlimit bytes = {};
    ASSERT_EQ(0, getrlimit(RLIMIT_MSGQUEUE, &bytes));
    const rlimit few = {1000, bytes.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_MSGQUEUE, &few));
    EXPECT_EQ(-1, zvcontrol_interface_open());
    EXPECT_THAT(log_messages(),
                ElementsAre("mq_open() failed for '" + own_queue + "': Too many open files\n",
                            "The user's message queues would take more than RLIMIT_MSGQUEUE, 1000 bytes"));
    ASSERT_EQ(0, setrlimit(RLIMIT_MSGQUEUE, &bytes));

    log_lines().clear();
    rlimit files = {};
    ASSERT_EQ(0, getrlimit(RLIMIT_NOFILE, &files));
    const int next = dup(0);
    close(next);
    const rlimit one = {static_cast<rlim_t>(next) + 1, files.rlim_max}; // for the daemon's queue
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &one));
    EXPECT_EQ(-1, zvcontrol_interface_open());
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &files));
    EXPECT_THAT(log_messages(), ElementsAre("mq_open() failed for '" + own_queue + "': Too many open files\n"));
}

TEST_F(Link, ASettingTakesAnotherAlong)
{
    const auto setting = [](uint8_t id, uint8_t value) { return Bytes{id, 0, 0, 0, value, 0, 0, 0}; };
    struct Case {
        Bytes param;
        int32_t code;
        int following; // its value, or -1
    };
    const Case cases[] = {{setting(139, 3), 0, 0},  {setting(139, 2), 0, 1},    {setting(139, 3), -4, -1},
                          {setting(140, 3), 0, -1}, {{139, 0, 0, 0, 3}, 0, -1}, {{}, 0, -1}};
    open_in_step();
    for (const Case &c : cases) {
        daemon.expect(30, c.param, daemon_answer(c.code));
        if (c.following >= 0) {
            daemon.expect(30, setting(79, static_cast<uint8_t>(c.following)), daemon_answer(6));
        }
        EXPECT_EQ(c.following >= 0 ? 6 : c.code, send(ZVCONTROL_SET_SETTING_ID, c.param));
    }
    EXPECT_THAT(log_messages(), ElementsAre("Invalid setting param legnth =5", "Invalid setting param legnth =0"));
}

TEST_F(Link, RefusesAParameterThatDoesNotFit)
{
    open_in_step();
    const size_t largest = 10000 - 30 - own_queue.size();
    daemon.expect(GET, Bytes(largest));
    EXPECT_EQ(0, send(GET, Bytes(largest)));
    EXPECT_EQ(10000U, daemon.received().back().size());
    for (const size_t length : {largest + 1, size_t{9999}, size_t{10000}, size_t{65535}}) {
        EXPECT_EQ(-1, send(GET, Bytes(length)));
        EXPECT_EQ("param_length too long: " + std::to_string(length) + "!  Max is 10000.", log_messages().back());
    }
    // An empty parameter is an element, none is not, whatever its length.
    const uint8_t nothing = 0;
    daemon.expect(GET, {});
    EXPECT_EQ(0, zvcontrol_send_command_param_response(GET, &nothing, 0, nullptr, 0));
    const size_t size = daemon.received().back().size();
    daemon.expect(GET, {});
    EXPECT_EQ(0, zvcontrol_send_command_param_response(GET, nullptr, 9999, nullptr, 0));
    EXPECT_EQ(size, daemon.received().back().size() + 4);

    fail(Call::MQ_SEND, EBADF);
    EXPECT_EQ(-1, send(GET));
    EXPECT_EQ("mq_send() failed for '/to_zvCtlD': Bad file descriptor", log_messages().back());
}

TEST_F(Link, OpensAndCloses)
{
    fail(Call::MQ_OPEN, ENOENT, 12);
    EXPECT_EQ(-1, zvcontrol_interface_open());
    EXPECT_EQ(0, is_zvcontrol_interface_open());
    EXPECT_EQ(std::vector<uint64_t>(12, 1000000), waits().sleeps);
    EXPECT_EQ("mq_open() failed for '/to_zvCtlD': No such file or directory\n", log_messages().front());
    EXPECT_EQ("Interface open failed after multiple attempts", log_messages().back());

    uint8_t *buffer = nullptr;
    uint16_t length = 1;
    EXPECT_EQ(-81, zvcontrol_wait_response(&buffer, &length));
    EXPECT_EQ(0, length);
    zvcontrol_flush_response_queue();
    EXPECT_EQ(-1, send(GET));
    EXPECT_EQ(-81, zvcontrol_send_resync());
    EXPECT_EQ("pReceiveBuffer NULL!", log_messages().back());

    fail(Call::MQ_OPEN, ENOENT, 11);
    ASSERT_EQ(0, zvcontrol_interface_open());
    EXPECT_EQ(1, is_zvcontrol_interface_open());
    EXPECT_EQ(-1, zvcontrol_interface_open_async("/other"));
    EXPECT_EQ("Interface must be closed before reuse!\n", log_messages().back());
    bring_in_step();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(0, zvcontrol_interface_close());
        EXPECT_EQ(0, is_zvcontrol_interface_open());
    }
    EXPECT_EQ(-1, mq_unlink(own_queue.c_str()));

    fail(Call::MQ_OPEN, ENOSPC, 1, 1);
    EXPECT_EQ(-1, zvcontrol_interface_open());
    EXPECT_EQ("mq_open() failed for '" + own_queue + "': No space left on device\n", log_messages().back());
    EXPECT_EQ(0, is_zvcontrol_interface_open());
    EXPECT_EQ(-1, zvcontrol_interface_open_async(std::string(257, 'q').c_str()));
}

TEST_F(Link, PostsWithoutAWaitOnTheCallersQueue)
{
    const Queue queue("/to_ZVCU123", 5, 10000);
    ASSERT_EQ(0, zvcontrol_interface_open_async(queue.name()));
    zvcontrol_set_caller_id(1);
    daemon.expect(30, {139, 0, 0, 0, 3, 0, 0, 0});
    daemon.expect(30, {79, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(0, send(ZVCONTROL_SET_SETTING_ID, {139, 0, 0, 0, 3, 0, 0, 0}));
    zvcontrol_set_caller_id(0);
    EXPECT_EQ(
        (Bytes{0x00, 0x31, 0x00, 0x14, 0x00, 0x00, 0x04, 0x41, 0x1E, 0x00, 0x00, 0x00, 0x00, 0x00, 0x08, 0x42, 0x8B,
               0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00, 0x00, 0x00, 0x0C, 0x44, 0x2F, 0x74, 0x6F, 0x5F, 0x5A, 0x56,
               0x43, 0x55, 0x31, 0x32, 0x33, 0x00, 0x00, 0x00, 0x01, 0x57, 0x01, 0x00, 0x00, 0x00, 0xEE}),
        daemon.received().front());
    EXPECT_EQ(daemon_answer(0), queue.receive());

    uint8_t response[634] = {0x77};
    uint16_t length = 634;
    daemon.expect(34, {}, SILENCE);
    EXPECT_EQ(0, zvcontrol_send_command_param_response_ex(ZVCONTROL_GET_ALL_SETTINGS_STATUS, nullptr, 0, response, 634,
                                                          &length));
    EXPECT_EQ(0x77, response[0]);
    EXPECT_EQ(634, length);
    EXPECT_TRUE(waits().selects.empty());
    uint8_t *buffer = nullptr;
    EXPECT_EQ(-81, zvcontrol_wait_response(&buffer, &length)); // not its queue: nor can it get back in step
    log_lines().clear();
    daemon.expect_resync([](uint32_t) { return SILENCE; });
    EXPECT_EQ(-81, send(GET));
    EXPECT_THAT(log_messages(),
                ElementsAre("Desynchronization detected when sending zvcontrol command, attempting resync",
                            "Response to (ZVCONTROL_RESYNC_MESSAGE_QUEUE) has wrong size, 0",
                            "Resync failed, cannot send command"));
    zvcontrol_interface_close();
    DaemonDouble::send(queue.name(), {1}); // it is still there

    open_in_step();
    daemon.expect(34, {}, SILENCE);
    EXPECT_EQ(0, zvcontrol_send_command_param_response(ZVCONTROL_GET_ALL_SETTINGS_STATUS, nullptr, 0, response, 634));
    EXPECT_NE(0x77, response[0]); // what was not received was not kept
}

TEST_F(Link, IsOrderlyWithoutMemory)
{
    const auto with = [](int allocations, const auto &call) {
        allocations_left = allocations;
        const int32_t result = call();
        allocations_left = -1;
        return result;
    };
    const std::string name = own_queue + "_longer";
    EXPECT_EQ(-2, with(0, [&] { return zvcontrol_interface_open_async(name.c_str()); }));
    EXPECT_EQ(0, is_zvcontrol_interface_open());

    open_in_step();
    const size_t received = daemon.received().size();
    const Bytes param(7, 1);
    for (const int allocations : {0, 1}) {
        EXPECT_EQ(-2, with(allocations, [&] { return send(GET, param); }));
    }
    EXPECT_EQ(received, daemon.received().size());
    daemon.expect(GET, param);
    EXPECT_EQ(0, send(GET, param));

    const Bytes answer = daemon_answer(5, Bytes{6});
    int32_t ret = 0;
    const auto parse = [&] {
        return zvcontrol_parse_ret_response(answer.data(), static_cast<uint16_t>(answer.size()), &ret, nullptr, 0,
                                            nullptr);
    };
    int needed = 0;
    for (; with(needed, parse) == 0 && ret == -1; ++needed) {
    }
    EXPECT_EQ(5, ret);
    EXPECT_EQ(6, needed); // the list; two elements with their data and one without
}

TEST(Camera, InformationIsOneRecord)
{
    reset();
    csi() = {};
    const auto put = [](uint8_t key, const char *text) { csi().values[key] = std::string(text) + '\0'; };
    csi().values[20] = "\x3A";
    put(19, "Model");
    put(0, "C3461");
    put(1, "board");
    put(14, "ssid");
    put(90, "d6:32");
    csi().values[89] = "\x01\x02\x03\x04";
    std::string expected(433, '\0');
    const auto at = [&](size_t offset, const char *text) { expected.replace(offset, strlen(text), text); };
    Bytes info(433, 0xEE);
    at(0, "\x3A");
    at(4, "Model");
    EXPECT_EQ(-3, zvcontrol_get_camera_info(info.data()));
    EXPECT_EQ("zvc_state_get_firmware_version err, -3", log_messages().back());
    EXPECT_EQ(expected, std::string(info.begin(), info.end()));

    put(21, "H22");
    at(69, "board");
    at(134, "H22");
    at(199, "C3461");
    at(264, "ssid");
    at(297, "d6:32");
    at(363, "\x01\x02\x03\x04");
    at(367, "[]");
    at(432, "\x01");
    EXPECT_EQ(0, zvcontrol_get_camera_info(info.data()));
    EXPECT_EQ(expected, std::string(info.begin(), info.end()));
    EXPECT_EQ(-1, zvcontrol_get_camera_info(nullptr));
    EXPECT_EQ(-3, zvcontrol_get_logs_ready_status(nullptr));
    EXPECT_EQ("zvc_state_get_logs_ready_status err, -3", log_messages().back());
}

TEST(Camera, PathsFitOrAreCut)
{
    const std::string settings = "/usr/local/zelvar/etc/58/settings.json";
    const std::string installed = "/usr/local/zelvar/etc/58/rc3_ota.bin";
    const std::string on_card = "/tmp/fuse_d/rc3_ota.bin";
    const auto check = [](int32_t (*getter)(char *, int32_t), const std::string &path) {
        for (const size_t size : {size_t{1}, size_t{10}, path.size(), path.size() + 1, path.size() + 20}) {
            std::string buffer(100, '#');
            EXPECT_EQ(size > path.size() ? 0 : -1, getter(buffer.data(), static_cast<int32_t>(size)));
            std::string expected = path.substr(0, size - 1);
            expected.resize(size);
            EXPECT_EQ(expected + std::string(100 - size, '#'), buffer);
        }
        char untouched = '#';
        EXPECT_EQ(-1, getter(&untouched, 0));
        EXPECT_EQ(-1, getter(&untouched, -5));
        EXPECT_EQ(-1, getter(nullptr, 100));
        EXPECT_EQ('#', untouched);
    };
    csi().values[20] = "\x3A";
    std::filesystem::remove(on_card);
    check(zvcontrol_get_settings_json_path, settings);
    check(zvcontrol_get_rc3_path, installed);
    std::filesystem::create_directories("/tmp/fuse_d");
    std::ofstream(on_card) << "update";
    check(zvcontrol_get_rc3_path, on_card);
    std::filesystem::remove(on_card);
}

} // namespace

void *operator new(size_t size)
{
    const bool fails = allocations_left == 0;
    allocations_left -= allocations_left >= 0 ? 1 : 0;
    void *memory = fails ? nullptr : malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void *operator new[](size_t size)
{
    return operator new(size);
}

void operator delete(void *memory) noexcept
{
    free(memory);
}

void operator delete(void *memory, size_t) noexcept
{
    free(memory);
}

void operator delete[](void *memory) noexcept
{
    free(memory);
}

void operator delete[](void *memory, size_t) noexcept
{
    free(memory);
}
