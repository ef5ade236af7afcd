// The two links to a camera, each with queues of its own that it opens without waiting, cleans up, and opens anew when
// the other side was started again.
//
// A link that finds its peer's queue removed or replaced opens the new one at its next call. A child after a fork
// leaves the queues to its parent: its copy of a link can only be destroyed. Opening a link turns off the library's
// messages about the camera's counter on standard output (zvUtilTellCounterFailures), for the whole process.
#pragma once

#include "result.h"
#include "snapshot.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>
#include <zvctrl/zvc_commands.h>

namespace zvservice {

// A call with no limit of its own: its first exchange waits for room for ten seconds, and each has the library's ten.
inline constexpr std::chrono::milliseconds NO_LIMIT = std::chrono::milliseconds::max();

// The control daemon. The process can have one of it open at a time: the library's link is the process's own. One
// thread at a time, but for interrupt().
class ZV_API DaemonLink {
  public:
    // `caller_id` goes with each command, and says who asks.
    explicit DaemonLink(uint8_t caller_id = 1);
    ~DaemonLink();
    DaemonLink(const DaemonLink &) = delete;
    DaemonLink &operator=(const DaemonLink &) = delete;

    // Opens the link unless it is open and the daemon's queue still the one that it was. At once: without a daemon's
    // queue the outcome is NOT_THERE.
    Result open();

    // Reads the camera's whole state, opening the link where that is needed. Waits for the answer no longer than
    // `patience` (and never past the library's ten seconds, or some twenty where the queues must be brought in step).
    // Sends nothing to a daemon that takes nothing: while its last request was not answered and messages wait in its
    // queue, there is NO_ANSWER at once; but every ten seconds it tries once more, unless half of the queue is full. On
    // any outcome but DONE `record` is untouched.
    Result poll(all_status_settings_t &record, std::chrono::milliseconds patience = NO_LIMIT);

    // Ends a poll() that runs now, with NO_ANSWER, or else the next one. Any thread, and more than once.
    void interrupt() noexcept;

  private:
    class Queues;
    std::unique_ptr<Queues> m_queues;
};

// The camera's firmware, which the relay leads to. A process can have many. One thread at a time, but for interrupt().
class ZV_API CameraLink {
  public:
    CameraLink();
    ~CameraLink();
    CameraLink(const CameraLink &) = delete;
    CameraLink &operator=(const CameraLink &) = delete;

    // As for the daemon.
    Result open();

    // Functions of the library on the context that they get, which was reset; returns the library's result.
    using Operation = std::function<int32_t(zvc_msg_q_context_t *)>;

    // Carries an operation out, opening the link where that is needed, and says what it came to; `doing` as for
    // Result::of_call(). A switched-off camera is SWITCHED_OFF whatever the operation returned. All exchanges together
    // take no longer than `patience`, room in the relay's queue included. After an answer that did not come the queue
    // for answers is made anew: a late one goes with the old queue.
    Result call(const char *doing, const Operation &operation, std::chrono::milliseconds patience = NO_LIMIT);

    // Writes an option of a setting, as the library decides by the present state. The setting and the option are in the
    // catalogue; rules are not looked at. A value that does not go out whole is NO_SUCH_OPTION.
    Result set(const State &state, uint32_t setting, uint32_t option, std::chrono::milliseconds patience = NO_LIMIT);

    // Ends a call() that runs now, with NO_ANSWER, or else the next one. Any thread, and more than once.
    void interrupt() noexcept;

  private:
    class Queues;
    std::unique_ptr<Queues> m_queues;
};

// The camera's model number, which selects the tables of settings and options; 0 while nobody knows it. Any thread.
ZV_API uint32_t camera_model();

// What the system information service calls the camera; empty for what it does not know.
struct CameraIdentity {
    std::string model_name;
    std::string serial_number;
    std::string firmware;
};

// Any thread.
ZV_API CameraIdentity camera_identity();

// ---- Queues that are left behind

// Removes the response and reply queues of processes that have ended, by the process id in their names: the library's
// and those of the links. `removed` gets their names. Queues of other users, which may not be removed, stay. FAILED
// where the queues can't be listed: the file system of the queues is mounted at "/dev/mqueue". Not for containers that
// share their queues and not their processes: there the processes of the others seem to have ended.
ZV_API Result remove_leftover_queues(std::vector<std::string> &removed);

// Removes the queues that this process's links have open, of the first 64. For a handler of a signal that ends the
// process: it may be called in one, and leaves errno alone.
ZV_API void remove_own_queues() noexcept;

} // namespace zvservice
