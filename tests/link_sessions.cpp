// Both links against peers that lose, delay, double, cut, corrupt, flood, answer for others and restart: seeded
// sessions, whose time is the test's own.
#include "daemon_double.h"
#include "interpose.h"
#include "zvc_commands.h"
#include "zvcontrol_if.h"

#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <unistd.h>

using namespace test;

namespace {

constexpr int SESSIONS = 400;
constexpr int REQUESTS = 20; // of a session
constexpr int64_t SECOND = 1'000'000;

// What happens to an answer, or to the peer.
enum Fault { LOST, LATE, DOUBLED, CUT, CORRUPTED, FOREIGN, FLOODED, RESTART, FAULT_COUNT };

class LinkSession : public testing::TestWithParam<bool> {
  protected:
    LinkSession() { reset(); }
    ~LinkSession() override { reset(); }

    static bool corrupts() { return GetParam(); }

    void begin(unsigned seed)
    {
        reset();
        m_random.seed(seed);
        m_faultless = false;
    }

    unsigned below(unsigned count) { return static_cast<unsigned>(m_random() % count); }

    // Three answers of ten go wrong.
    std::optional<Fault> next_fault()
    {
        if (m_faultless || below(10) >= 3) {
            return {};
        }
        const auto fault = static_cast<Fault>(below(FAULT_COUNT));
        return fault == CORRUPTED && !corrupts() ? LOST : fault;
    }

    // Sends what a fault makes of an answer. `foreign` makes answers to other requests.
    template <class Foreign>
    void answer(const std::string &queue, std::optional<Fault> fault, Bytes right, Foreign foreign)
    {
        const int64_t late = SECOND * (8 + below(8)) + below(1000);
        const auto send = [queue](const Bytes &message) { deliver(queue, message); };
        switch (fault.value_or(FAULT_COUNT)) {
        case LOST:
        case RESTART:
            return;
        case LATE:
            after(late, [=] { send(right); });
            return;
        case DOUBLED:
            after(below(2) * late, [=] { send(right); });
            break;
        case CUT:
            right.resize(below(static_cast<unsigned>(right.size())));
            break;
        case CORRUPTED:
            right[below(static_cast<unsigned>(right.size()))] ^= static_cast<uint8_t>(1 + below(255));
            break;
        case FOREIGN:
            send(foreign());
            break;
        case FLOODED:
            for (int i = 0; i < 30; ++i) {
                after(i * SECOND / 2, [=, message = foreign()] { send(message); });
            }
            return;
        default:
            break;
        }
        send(right);
    }

    // A call of the link, which ends within its limit.
    template <class Call>
    static int32_t bounded(int64_t limit, Call call)
    {
        const int64_t start = now();
        const int32_t result = call();
        EXPECT_LE(now() - start, limit);
        return result;
    }

    // Time that passes between two calls.
    static void pause(int seconds)
    {
        timeval limit = {seconds, 0};
        select(0, nullptr, nullptr, nullptr, &limit);
    }

    // From now on all goes well, and nothing of before is under way.
    void end_faults()
    {
        m_faultless = true;
        pause(60);
    }

  private:
    // Without a wait: what finds no room is lost.
    static void deliver(const std::string &queue, const Bytes &message)
    {
        const mqd_t descriptor = mq_open(queue.c_str(), O_WRONLY | O_NONBLOCK);
        mq_send(descriptor, reinterpret_cast<const char *>(message.data()), message.size(), 0);
        mq_close(descriptor);
    }

    bool m_faultless = false;
    std::minstd_rand m_random;
};

// The value that a request asks for: another one for each request.
Bytes value_of(const Bytes &request)
{
    Bytes value = {0x5A, 0x5A};
    value.insert(value.end(), request.begin() + 1, request.end());
    return value;
}

Bytes camera_answer(const Bytes &request)
{
    return tlv_message(
        5, {{TLV_CMD, text("YY")}, {TLV_CMDARG, request}, {TLV_RSPARG, good(value_of(request))}, {TLV_END, {}}});
}

// An answer names its request: only bytes that change on their way can deceive.
TEST_P(LinkSession, KeepsTheCamerasAnswersApart)
{
    const std::string relay_name = "/t_session_relay" + std::to_string(getpid());
    const Queue reply("/t_session_reply" + std::to_string(getpid()), 10, ZVMSG_MAX);
    int wrong = 0;
    int right = 0;
    for (unsigned seed = 0; seed < SESSIONS; ++seed) {
        begin(seed);
        std::optional<Queue> relay(std::in_place, relay_name, 10, ZVMSG_MAX);
        zvc_msg_q_context_t context = {reply.name(), mq_open(relay->name(), O_WRONLY), reply.descriptor(), {}, 0, 0, 0};
        const auto random_request = [&] {
            Bytes request = {0, static_cast<uint8_t>(1 + below(4)), static_cast<uint8_t>(below(8)), 0, 0};
            for (request[4] = static_cast<uint8_t>(below(3)); request.size() < 5U + request[4];) {
                request.push_back(static_cast<uint8_t>(below(256)));
            }
            return request;
        };
        on_wait([&] {
            for (Bytes message = relay->receive(); !message.empty(); message = relay->receive()) {
                const std::optional<Fault> fault = next_fault();
                answer(reply.name(), fault, camera_answer(element_of(message, TLV_CMDARG)),
                       [&] { return camera_answer(random_request()); });
                if (fault == RESTART) {
                    relay.emplace(relay_name, 10, ZVMSG_MAX);
                }
            }
        });
        for (int i = 0; i <= REQUESTS; ++i) {
            if (i == REQUESTS) {
                end_faults();
            }
            pause(static_cast<int>(below(4)));
            if (context.rx_failed != 0) { // the relay may be another one
                mq_close(context.mq_tx);
                context.mq_tx = mq_open(relay_name.c_str(), O_WRONLY);
                context.rx_failed = 0;
            }
            if (below(4) == 0) {
                const Bytes post = random_request();
                zvc_send_remote_api_async(&context, post.data(), static_cast<int32_t>(post.size()));
            }
            const Bytes request = random_request();
            uint8_t *payload = nullptr;
            uint16_t size = 0;
            const int32_t result = bounded(10 * SECOND, [&] {
                return zvc_send_remote_api(&context, request.data(), static_cast<int32_t>(request.size()), &payload,
                                           &size);
            });
            const bool is_right = result == 0 && Bytes(payload, payload + size) == value_of(request);
            wrong += result == 0 && !is_right ? 1 : 0;
            right += is_right ? 1 : 0;
            EXPECT_TRUE(is_right || i < REQUESTS) << "session " << seed;
        }
        mq_close(context.mq_tx);
        on_wait(nullptr);
    }
    EXPECT_LE(wrong, corrupts() ? SESSIONS * REQUESTS / 100 : 0);
    EXPECT_GE(right, SESSIONS * REQUESTS * 7 / 10);
}

// An answer names no request: one of the same size that comes late deceives.
TEST_P(LinkSession, KeepsTheDaemonsAnswersApart)
{
    const std::string own_queue = "/to_ZVCU" + std::to_string(getpid());
    constexpr struct {
        zvcontrol_command_t command;
        uint16_t size;
    } COMMANDS[] = {{ZVCONTROL_GET_ALL_SETTINGS, 238},
                    {ZVCONTROL_GET_ALL_STATUS, 394},
                    {ZVCONTROL_GET_ALL_SETTINGS_STATUS, 634},
                    {ZVCONTROL_GET_SETTING_ID, 4}};
    int wrong = 0;
    int right = 0;
    for (unsigned seed = 0; seed < SESSIONS; ++seed) {
        begin(seed);
        std::optional<Queue> queue(std::in_place, "/to_zvCtlD", 10, DAEMON_MSG_MAX);
        ASSERT_EQ(0, zvcontrol_interface_open());
        uint8_t serial = 0; // of the last command: every byte of its answer
        on_wait([&] {
            for (Bytes message = queue->receive(); !message.empty(); message = queue->receive()) {
                const Bytes command = element_of(message, TLV_CMD);
                Bytes payload = element_of(message, TLV_CMDARG); // the key
                uint16_t other = 238;
                for (const auto &row : COMMANDS) {
                    if (command == little_endian(row.command)) {
                        payload.assign(row.size, ++serial);
                        other = COMMANDS[(&row - COMMANDS + 1 + below(2)) % 3].size;
                    }
                }
                const std::optional<Fault> fault = next_fault();
                answer(own_queue, fault, daemon_answer(0, payload),
                       [&] { return daemon_answer(0, Bytes(other, static_cast<uint8_t>(serial - 1))); });
                if (fault == RESTART) {
                    queue.emplace("/to_zvCtlD", 10, DAEMON_MSG_MAX);
                }
            }
        });
        for (int i = 0; i <= REQUESTS + 2; ++i) {
            if (i == REQUESTS) {
                end_faults();
            }
            pause(static_cast<int>(below(4)));
            const auto &[command, size] = COMMANDS[below(4)];
            Bytes response(size);
            uint16_t length = 0;
            const int32_t result = bounded(20 * SECOND, [&, wanted = command] {
                return zvcontrol_send_command_param_response_ex_internal(
                    wanted, nullptr, 0, response.data(), static_cast<uint16_t>(response.size()), &length);
            });
            response.resize(length);
            const bool is_right = result == 0 && response == Bytes(size, serial);
            wrong += result == 0 && !is_right ? 1 : 0;
            right += is_right ? 1 : 0;
            EXPECT_TRUE(is_right || i < REQUESTS + 2) << "session " << seed;
        }
        zvcontrol_interface_close();
        on_wait(nullptr);
    }
    EXPECT_LE(wrong, SESSIONS * REQUESTS / (corrupts() ? 20 : 40));
    EXPECT_GE(right, SESSIONS * REQUESTS * 6 / 10);
}

INSTANTIATE_TEST_SUITE_P(Corrupted, LinkSession, testing::Values(false, true));

} // namespace
