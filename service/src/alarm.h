// What ends a wait inside the library when a call's time is over, or another thread says so.
//
// The library's waits end with a message or after ten seconds. So the alarm posts a message, a single byte that is no
// answer, into the queue that the library waits on. Before a request the library drops what lies there, and a byte may
// be lost so: the alarm goes on until it is disarmed.
#pragma once

#include "deadline.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mqueue.h>
#include <mutex>
#include <pthread.h>

namespace zvservice {

inline constexpr uint8_t ALARM_BYTE = 0xFF; // no message begins with it: their lengths are positive

// One thread makes the calls, one after the other; any thread may interrupt. The alarm's own thread starts with the
// first call that has a limit or is interrupted. In a child after a fork it may not even be destroyed: that thread is
// missing there, and the lock may be taken.
class Alarm {
  public:
    Alarm() = default;
    ~Alarm();
    Alarm(const Alarm &) = delete;
    Alarm &operator=(const Alarm &) = delete;

    // A call that may take `patience`, from here to the end of the object.
    class Call {
      public:
        Call(Alarm &alarm, std::chrono::milliseconds patience) : m_alarm(alarm) { m_alarm.begin(patience); }
        ~Call() { m_alarm.end(); }
        Call(const Call &) = delete;
        Call &operator=(const Call &) = delete;

      private:
        Alarm &m_alarm;
    };

    // Whether the call was interrupted, since the end of the one before.
    bool interrupted();

    // What is left of the call's time, at most `most`; zero once it was interrupted.
    std::chrono::milliseconds left(std::chrono::milliseconds most);

    // From now on, when the time is over, it rings in `queue`, a non-blocking descriptor. Returns 0, or the error that
    // its thread could not be started for.
    int arm(mqd_t queue);

    // Returns whether it rang.
    bool disarm();

    // Ends the call that runs now, or else the next one.
    void interrupt() noexcept;

  private:
    void begin(std::chrono::milliseconds patience);
    void end();
    bool is_due() const { return m_interrupted || (m_limited && Clock::now() >= m_deadline); }
    void ring();
    int start();
    void run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_started = false;
    bool m_ending = false;
    bool m_interrupted = false;
    bool m_limited = false;
    bool m_rang = false;
    mqd_t m_queue = -1; // where it rings, while it is armed
    Deadline m_deadline;
    pthread_t m_thread = {};
};

} // namespace zvservice
