// A client and a service in two processes on real queues. The client's time limits are milliseconds here: the program
// has a select of its own.
#include "zvMbox.h"
#include "zvMsg.h"

#include <atomic>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/select.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <syslog.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr uint32_t EXCHANGES = 10000;
constexpr int32_t SHORT_WAIT = 1; // in seconds of the client, milliseconds here
constexpr int32_t LONG_WAIT = 5000;

const std::string SERVICE = "/t_service" + std::to_string(getpid());
const std::string FROM = "/t_client" + std::to_string(getpid());

// What the service has seen, for the client to wait for.
std::atomic<uint32_t> *taken = static_cast<std::atomic<uint32_t> *>(
    mmap(nullptr, sizeof *taken, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
std::atomic<uint32_t> sent = 0;

enum class Fate : uint8_t { ANSWERED, DOUBLED, LOST, LATE, SLOW };

Fate fate_of(uint32_t number)
{
    switch (number % 97) {
    case 13:
        return Fate::LOST;
    case 14: // right after a lost one
    case 50:
    case 51:
        return Fate::LATE;
    default:
        return number % 5 == 0 ? Fate::DOUBLED : Fate::ANSWERED;
    }
}

struct Argument {
    uint32_t number;
    Fate fate;
};

// Answers with the request's argument as the payload. A late answer is sent while the next request already waits.
[[noreturn]] void serve()
{
    zvMbox_t requests;
    zvMbox_t reply;
    zvIoBuf_t answer = {ZVMSG_MAX, 0, {}};
    bool late = false;
    if (zvMbox_rxopen(SERVICE.c_str(), 4, &requests) != 0) {
        _exit(1);
    }
    for (;;) {
        uint8_t request[ZVMSG_MAX];
        if (snzvMbox_receive(request, sizeof request, &requests) < 0 || tlv_validate(request) != 0) {
            _exit(2);
        }
        if (late) {
            zvMbox_send(answer.buf, answer.len, &reply);
            zvMbox_close(&reply);
        }
        Argument argument = {};
        uint8_t source[100] = {};
        sntlv_find(source, sizeof source - 1, TLV_SRC, request);
        if (sntlv_find(reinterpret_cast<uint8_t *>(&argument), sizeof argument + 1, TLV_CMDARG, request) == 0) {
            _exit(0); // the end
        }
        if (zvMbox_txopen(reinterpret_cast<const char *>(source), &reply) != 0) {
            _exit(3);
        }
        ++*taken;
        const auto *bytes = reinterpret_cast<const uint8_t *>(&argument);
        const auto add = [&](uint8_t tag, const void *value, size_t length) {
            answer.len += sntlv_add_bin(answer.buf, answer.size, tag, static_cast<uint32_t>(length),
                                        static_cast<const uint8_t *>(value));
        };
        zvmsg_build(&answer, "YY", bytes, sizeof argument, 5);
        add(TLV_RSPARG, bytes, sizeof argument);
        add(TLV_SRC, SERVICE.c_str(), SERVICE.size());
        add(TLV_DST, source, strlen(reinterpret_cast<const char *>(source)));
        add(TLV_END, nullptr, 0);
        late = argument.fate == Fate::LATE;
        if (argument.fate == Fate::SLOW) {
            usleep(50000);
        }
        if (argument.fate != Fate::LOST && !late) {
            zvMbox_send(answer.buf, answer.len, &reply);
        }
        if (argument.fate == Fate::DOUBLED) {
            zvMbox_send(answer.buf, answer.len, &reply);
        }
        if (!late) {
            zvMbox_close(&reply);
        }
    }
}

class TwoProcesses : public testing::Test {
  protected:
    void SetUp() override
    {
        *taken = 0;
        sent = 0;
        zvMbox_create(SERVICE.c_str(), 4);
        service = fork();
        if (service == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            serve();
        }
    }
    void TearDown() override
    {
        zvIoBuf_t iobuf = {ZVMSG_MAX, 0, {}};
        zvmsg_build(&iobuf, "YY", nullptr, 0, 4);
        zvmsg_send(&iobuf, FROM.c_str(), SERVICE.c_str(), nullptr, 0);
        int status = -1;
        waitpid(service, &status, 0);
        EXPECT_EQ(0, status);
        EXPECT_EQ(0, zvMbox_unlink(SERVICE.c_str()));
        EXPECT_EQ(-1, mq_open(FROM.c_str(), O_RDONLY)) << "a reply mailbox was left behind";
    }

    // The payload's number, or -1 without an answer.
    static int64_t exchange(const Argument &argument)
    {
        zvIoBuf_t iobuf = {ZVMSG_MAX, 0, {}};
        zvmsg_build(&iobuf, "YY", reinterpret_cast<const uint8_t *>(&argument), sizeof argument, 4);
        sent = *taken + 1;
        const bool silent = argument.fate == Fate::LOST || argument.fate == Fate::LATE;
        const int32_t length = zvmsg_send_timedreceive_w_time(&iobuf, FROM.c_str(), SERVICE.c_str(), nullptr, 0,
                                                              silent ? SHORT_WAIT : LONG_WAIT);
        Argument answered = {};
        if (length < 0 || sntlv_find(reinterpret_cast<uint8_t *>(&answered), sizeof answered + 1, TLV_RSPARG,
                                     iobuf.buf) != sizeof answered) {
            return -1;
        }
        return answered.number;
    }

    pid_t service = -1;
};

TEST_F(TwoProcesses, NoAnswerGoesToAnotherRequest)
{
    for (uint32_t number = 0; number < EXCHANGES; ++number) {
        const Fate fate = fate_of(number);
        const bool silent = fate == Fate::LOST || fate == Fate::LATE;
        ASSERT_EQ(silent ? -1 : static_cast<int64_t>(number), exchange({number, fate}));
    }
}

TEST_F(TwoProcesses, RequestsWithOneReplyNameRunOneAfterTheOther)
{
    int64_t first = -1;
    std::thread slow([&] { first = exchange({1, Fate::SLOW}); });
    while (*taken == 0) {
        usleep(100);
    }
    EXPECT_EQ(2, exchange({2, Fate::ANSWERED}));
    slow.join();
    EXPECT_EQ(1, first);
}

} // namespace

extern "C" {

// A client gives up when its time is over and the service has its request in hand.
int select(int count, fd_set *readable, fd_set *writable, fd_set *failed, timeval *limit)
{
    const timespec shortened = {limit->tv_sec / 1000, limit->tv_sec % 1000 * 1000000};
    const auto ready =
        static_cast<int>(::syscall(SYS_pselect6, count, readable, writable, failed, &shortened, nullptr));
    for (int patience = 20000; ready == 0 && *taken < sent && patience > 0; --patience) {
        usleep(50);
    }
    return ready;
}

void syslog(int, const char *, ...) {}

} // extern "C"
