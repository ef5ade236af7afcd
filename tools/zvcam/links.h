// The links of a command. Each is opened when it is made, so that a camera that is not there ends the command before
// anything else does.
#pragma once

#include <chrono>
#include <zvservice/links.h>

namespace zvcam {

// How long a look waits for its answer where another one follows.
inline constexpr std::chrono::milliseconds LOOK_PATIENCE{1000};

// From now on a link waits up to 12 seconds until the camera's side is up and answers, before it is used.
void wait_for_camera();

// Whether nothing came back: the camera's side is not there, is just coming up, or hangs.
bool is_unanswered(const zvservice::Result &result);

// The control daemon.
class Daemon : public zvservice::DaemonLink {
  public:
    Daemon();
};

// The firmware, which the relay leads to.
class Camera : public zvservice::CameraLink {
  public:
    Camera();
};

} // namespace zvcam
