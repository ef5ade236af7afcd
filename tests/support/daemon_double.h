// The control daemon as a script, in the manner of the camera's: it runs inside the library's wait, on real queues.
#pragma once

#include "camera_double.h"

#include <functional>
#include <optional>
#include <string>

namespace test {

Bytes little_endian(uint32_t number);

// An answer: return code, and the payload where there is one.
Bytes daemon_answer(int32_t code, const std::optional<Bytes> &payload = {});

class DaemonDouble {
  public:
    DaemonDouble();
    ~DaemonDouble(); // fails the test when expected commands are left over
    DaemonDouble(const DaemonDouble &) = delete;
    DaemonDouble &operator=(const DaemonDouble &) = delete;

    // The next command and its parameter, and the whole message that answers it; an empty one is silence.
    void expect(uint32_t command, const Bytes &param, const Bytes &answer = daemon_answer(0));
    // The next command is the resynchronisation; `answer` makes the answer to its key.
    void expect_resync(const std::function<Bytes(uint32_t key)> &answer = echo);
    static Bytes echo(uint32_t key) { return daemon_answer(0, little_endian(key)); }

    // Takes no command any more.
    void hang() { m_hangs = true; }
    // Ends in order, which removes its queue, and makes it anew.
    void stop() { m_queue.reset(); }
    void start();

    // The whole messages that the daemon got, oldest first.
    const std::vector<Bytes> &received();

    // Puts a message into a response queue.
    static void send(const char *queue_name, const Bytes &message);

  private:
    struct Step {
        uint32_t command;
        std::optional<Bytes> param; // none: any, and the answer is made of it
        std::function<Bytes(const Bytes &param)> answer;
    };

    static std::string step_text(const Step &step);
    std::string leftovers() const; // a line for each expected command that did not come
    void serve();

    std::optional<Queue> m_queue;
    bool m_hangs = false;
    std::deque<Step> m_script;
    std::vector<Bytes> m_received;
};

} // namespace test
