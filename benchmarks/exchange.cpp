// Exchanges over message queues with a peer process, which answers everything at once: the library's beside bare
// mq_send and mq_receive of messages of the same size. The two processes share one core, or have one each.
#include "bytes.h"
#include "camera_records.h"
#include "measure.h"
#include "process.h"
#include "queue_names.h"
#include "remote_commands.h"
#include "zvc_commands.h"
#include "zvcontrol_if.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <string>
#include <sys/prctl.h>
#include <sys/select.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using bench::Cores;
using Bytes = std::vector<uint8_t>;

constexpr long DEPTH = 5;

// A queue that this program makes and removes, open for both ends. One that exists already is another program's.
class Queue {
  public:
    Queue(std::string name, long message_size) : m_name(std::move(name))
    {
        mq_attr attributes = {};
        attributes.mq_maxmsg = DEPTH;
        attributes.mq_msgsize = message_size;
        m_descriptor = mq_open(m_name.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600, &attributes);
    }
    ~Queue()
    {
        if (is_open()) {
            mq_close(m_descriptor);
            mq_unlink(m_name.c_str());
        }
    }
    Queue(const Queue &) = delete;
    Queue &operator=(const Queue &) = delete;

    bool is_open() const { return m_descriptor >= 0; }
    const char *name() const { return m_name.c_str(); }
    mqd_t descriptor() const { return m_descriptor; }

  private:
    std::string m_name;
    mqd_t m_descriptor;
};

ssize_t receive(mqd_t queue, Bytes &buffer)
{
    return mq_receive(queue, reinterpret_cast<char *>(buffer.data()), buffer.size(), nullptr);
}

int send(mqd_t queue, const Bytes &message)
{
    const char *bytes = message.empty() ? "" : reinterpret_cast<const char *>(message.data());
    return mq_send(queue, bytes, message.size(), 0);
}

// A process that answers every message with the same bytes, until an empty one.
class Peer {
  public:
    Peer(mqd_t requests, mqd_t answers, const Bytes &answer, Cores cores) : m_requests(requests)
    {
        Bytes buffer(DAEMON_MSG_MAX);
        bench::run_as_client();
        m_process = fork();
        if (m_process == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            bench::run_as_peer(cores);
            while (receive(requests, buffer) > 0) {
                send(answers, answer);
            }
            _exit(0);
        }
    }
    ~Peer()
    {
        send(m_requests, {});
        waitpid(m_process, nullptr, 0);
    }
    Peer(const Peer &) = delete;
    Peer &operator=(const Peer &) = delete;

  private:
    mqd_t m_requests;
    pid_t m_process;
};

constexpr char NO_QUEUE[] = "no queue of its own; run it in packaging/private-namespace.sh";

void add(Bytes &message, uint8_t tag, const Bytes &value)
{
    message.resize(message.size() + 4 + value.size());
    sntlv_add_bin(message.data(), static_cast<uint32_t>(message.size()), tag, static_cast<uint32_t>(value.size()),
                  value.data());
}

Bytes text(const char *characters)
{
    return {characters, characters + strlen(characters)};
}

// The camera's answer to a remote API call: acknowledge, error, and a payload.
Bytes camera_answer(size_t payload)
{
    Bytes answer(zv::REMOTE_ANSWER_PAYLOAD + payload, 0x42);
    std::fill_n(answer.begin(), zv::REMOTE_ANSWER_SIZE, 0);
    zv::put_be16(answer.data() + zv::REMOTE_ANSWER_SIZE, static_cast<uint16_t>(payload));
    Bytes message(4);
    sntlv_msg_init(message.data(), 4, zv::CATEGORY_CAMERA + 1);
    add(message, TLV_CMD, text(zv::REMOTE_API_COMMAND));
    add(message, TLV_CMDARG, {0, 1, 9, 0, 0});
    add(message, TLV_RSPARG, answer);
    add(message, TLV_SRC, text(zv::CAMERA_QUEUE));
    add(message, TLV_DST, text("/bench_reply"));
    add(message, TLV_END, {});
    return message;
}

// The daemon's answer: return code 0 and a payload, such as a snapshot record.
Bytes daemon_answer(size_t payload)
{
    Bytes message(4);
    sntlv_msg_init(message.data(), 4, CAT_ZVCTRL_RSP);
    add(message, TLV_RSP, Bytes(4));
    add(message, TLV_RSPARG, Bytes(payload, 7));
    add(message, TLV_END, {});
    return message;
}

void remote_api(benchmark::State &state, Cores cores, size_t expected)
{
    const Queue relay("/bench_relay", ZVMSG_MAX);
    const Queue reply("/bench_reply", ZVMSG_MAX);
    if (!relay.is_open() || !reply.is_open()) {
        state.SkipWithError(NO_QUEUE);
        return;
    }
    const Peer peer(relay.descriptor(), reply.descriptor(), camera_answer(expected), cores);
    zvc_msg_q_context_t context = {};
    context.mbox_name = reply.name();
    context.mq_tx = relay.descriptor();
    context.mq_rx = reply.descriptor();
    uint8_t *payload = nullptr;
    uint16_t size = 0;
    bench::measure(state, [&] {
        if (zvc_send_remote_api_for_response(&context, REMOTE_GROUP_APP, zv::action_of(zv::REMOTE_APP_SHUTTER_START),
                                             &payload, &size) != ZV_OK ||
            size != expected) {
            state.SkipWithError("the exchange failed");
        }
    });
    if (state.counters[bench::ALLOCATIONS].value != 0) {
        state.SkipWithError("the exchange allocates memory");
    }
}

void daemon_exchange(benchmark::State &state, Cores cores, size_t size)
{
    const Queue daemon(zv::DAEMON_QUEUE, DAEMON_MSG_MAX);
    if (!daemon.is_open() || zvcontrol_interface_open() != ZV_OK) {
        state.SkipWithError(NO_QUEUE);
        return;
    }
    const std::string response_name = zv::RESPONSE_QUEUE_PREFIX + std::to_string(getpid());
    const mqd_t responses = mq_open(response_name.c_str(), O_WRONLY);
    {
        const Peer peer(daemon.descriptor(), responses, daemon_answer(size), cores);
        Bytes payload(size);
        bench::measure(state, [&] {
            if (zvcontrol_send_command_param_response_ex(ZVCONTROL_GET_ALL_SETTINGS_STATUS, nullptr, 0, payload.data(),
                                                         static_cast<uint16_t>(size), nullptr) != ZV_OK) {
                state.SkipWithError("the exchange failed");
            }
        });
    }
    mq_close(responses);
    zvcontrol_interface_close();
}

// What an exchange asks of the kernel besides: a look for late answers, and a wait with a limit.
void look_for_late(mqd_t answers)
{
    mq_attr waiting = {};
    mq_getattr(answers, &waiting);
}

void wait_for(mqd_t answers)
{
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(answers, &readable);
    timeval limit = {10, 0};
    select(answers + 1, &readable, nullptr, nullptr, &limit);
}

template <bool WITH_WAIT, size_t SIZE>
void bare(benchmark::State &state, Cores cores)
{
    const Queue requests("/bench_request", DAEMON_MSG_MAX);
    const Queue answers("/bench_answer", DAEMON_MSG_MAX);
    if (!requests.is_open() || !answers.is_open()) {
        state.SkipWithError(NO_QUEUE);
        return;
    }
    const Peer peer(requests.descriptor(), answers.descriptor(), Bytes(SIZE, 1), cores);
    const Bytes request(SIZE, 1);
    Bytes buffer(DAEMON_MSG_MAX);
    bench::measure(state, [&] {
        if constexpr (WITH_WAIT) {
            look_for_late(answers.descriptor());
        }
        send(requests.descriptor(), request);
        if constexpr (WITH_WAIT) {
            wait_for(answers.descriptor());
        }
        receive(answers.descriptor(), buffer);
    });
}

constexpr size_t REMOTE_SIZE = 60; // about the size of a remote API request, and of its answer
constexpr size_t DAEMON_RECORD_SIZE = 700;

// An exchange takes microseconds on one core, and a hundred where a core must wake up: longer runs.
constexpr double SECONDS = 0.1;

using Exchange = std::function<void(benchmark::State &, Cores)>;

void run(const std::string &name, Cores cores, const Exchange &exchange)
{
    benchmark::RegisterBenchmark(name.c_str(), exchange, cores)->UseRealTime()->MinTime(SECONDS);
}

void run_on_both(const std::string &name, const Exchange &exchange)
{
    run(name + "/two_cores", Cores::TWO, exchange);
    run(name + "/same_core", Cores::SAME, exchange);
}

// How an exchange grows with its payload, on one core.
void run_with_payloads(const std::string &name, void (*exchange)(benchmark::State &, Cores, size_t),
                       std::initializer_list<size_t> sizes)
{
    for (const size_t size : sizes) {
        run(name + '/' + std::to_string(size), Cores::SAME,
            [=](benchmark::State &state, Cores cores) { exchange(state, cores, size); });
    }
}

const bool registered = [] {
    run_on_both("remote_api/library", [](auto &state, Cores cores) { remote_api(state, cores, 1); });
    run_on_both("remote_api/bare_60_bytes", bare<false, REMOTE_SIZE>);
    run_on_both("remote_api/bare_60_bytes_with_wait", bare<true, REMOTE_SIZE>);
    run_on_both("daemon_snapshot/library",
                [](auto &state, Cores cores) { daemon_exchange(state, cores, sizeof(all_status_settings_t)); });
    run_on_both("daemon_snapshot/bare_700_bytes", bare<false, DAEMON_RECORD_SIZE>);
    run_on_both("daemon_snapshot/bare_700_bytes_with_wait", bare<true, DAEMON_RECORD_SIZE>);
    run_with_payloads("remote_payload", remote_api, {1, 100, 400, 1400});            // a message has ZVMSG_MAX bytes
    run_with_payloads("daemon_payload", daemon_exchange, {1, 100, 634, 3000, 9900}); // and DAEMON_MSG_MAX
    return true;
}();

} // namespace
