// A camera that any program can hold, from any thread.
//
// One thread of the object owns the daemon link and polls at the pace that the camera asks for; one carries camera
// operations out, in order. Both block all signals, and write nothing to standard output. Both links come back by
// themselves after a restart of the camera's side, in less than two seconds.
//
// ```cpp
// #include <iostream>
//
// zvservice::Camera camera;
// zvservice::Subscription events = camera.subscribe();
// while (const std::optional<zvservice::Event> event = events.next(std::chrono::seconds(60))) {
//     std::cout << "revision " << event->snapshot->revision << '\n';
// }
// ```
//
// A child after a fork has no camera: there snapshot() answers with the state at the fork, every call is NOT_THERE, and
// the object can be destroyed, which leaves the parent's queues alone.
#pragma once

#include "links.h"
#include "result.h"
#include "snapshot.h"
#include "statistics.h"
#include "subscription.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

namespace zvservice {

struct CameraOptions {
    // Goes with each command to the daemon, and says who asks.
    uint8_t caller_id = 1;

    // Between two polls; 0 for what the camera asks of its clients (status 60).
    std::chrono::milliseconds poll_interval{0};

    // How long a poll waits for its answer before the link is stale.
    std::chrono::milliseconds poll_patience{1000};
};

// How long a call may take, waiting for the calls before it included. When it is over the call returns NO_ANSWER; one
// that has not begun by then is never sent.
inline constexpr std::chrono::milliseconds CALL_PATIENCE{15000};

struct SetOptions {
    bool force = false; // send it even where the rules forbid it
    std::chrono::milliseconds patience = CALL_PATIENCE;
    std::chrono::milliseconds confirmation{2000}; // how long a changed setting may take to show; within the patience
};

// What a setting's write came to.
struct Written {
    Result result;
    bool shown = false; // the camera tells the new option
    Change change;      // what changed since just before the write, where something did
};

class ZV_API Camera {
  public:
    // Starts the threads and returns at once. Throws std::system_error where a thread can't be had.
    explicit Camera(const CameraOptions &options = {});

    // Ends within a second, whatever the peers do. Calls that wait in other threads return NO_ANSWER first;
    // subscriptions end, and may live on.
    ~Camera();

    // Lets go of the camera as the destructor does, for a program whose threads still hold the object: snapshot() stays
    // as it is, and every call returns NO_ANSWER. One thread at a time, and more than once.
    void end();
    Camera(const Camera &) = delete;
    Camera &operator=(const Camera &) = delete;

    // What is known now; never null. At once, whatever goes on.
    std::shared_ptr<const Snapshot> snapshot() const;

    // How the polls and calls went since the object was made. At once, whatever goes on. Nothing in a child after a
    // fork.
    Statistics statistics() const;

    // The whole first, then what changes. See Subscription. Throws std::system_error where its descriptor can't be had.
    Subscription subscribe();

    // Polls at once, and waits for the outcome: the snapshot is then from after the call.
    Result refresh(std::chrono::milliseconds patience = CALL_PATIENCE);

    // Functions of the library on the camera link, one call after the other in order of arrival. `operation` may still
    // run after call() has returned NO_ANSWER: what it refers to must outlive it, so that it holds what it needs by
    // value or by a shared pointer.
    Result call(const char *doing, CameraLink::Operation operation, std::chrono::milliseconds patience = CALL_PATIENCE);

    // Changes a setting to an option by its id: looks both up, checks the rules by the present state, writes, and waits
    // until the camera tells the new option. Without any state yet there is nothing to decide by: NOT_THERE, or
    // SWITCHED_OFF where the camera says that.
    Written set(uint32_t setting, uint32_t option, const SetOptions &options = {});

    // The same for what a person calls them, as Catalogue finds it.
    Written set(const std::string &setting, const std::string &option, const SetOptions &options = {});

    // ---- Operations of the camera, one call() each

    Result start_capture(std::chrono::milliseconds patience = CALL_PATIENCE);
    Result stop_capture(std::chrono::milliseconds patience = CALL_PATIENCE);
    Result delete_last(std::chrono::milliseconds patience = CALL_PATIENCE);
    Result delete_all(std::chrono::milliseconds patience = CALL_PATIENCE);

    // Tags a moment in a file of the media folder, "100ABCDE/CLIP0001.MP4", or removes the tag. A name of no or more
    // than 255 characters is FAILED, with nothing sent.
    Result tag(const std::string &file, uint32_t offset_ms, bool remove = false,
               std::chrono::milliseconds patience = CALL_PATIENCE);

  private:
    class Engine;
    std::shared_ptr<Engine> m_engine;
};

} // namespace zvservice
