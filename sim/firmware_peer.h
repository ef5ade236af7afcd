// The relay and the firmware behind it: the remote API.
#pragma once

#include "camera.h"
#include "peer.h"

namespace zv::sim {

// Carries out one command of the remote API.
Answer run_remote_command(Camera &camera, uint8_t group, uint8_t action, View payload);

class FirmwarePeer : public Peer {
  public:
    explicit FirmwarePeer(Camera &camera) : m_camera(camera) {}

    std::optional<Request> parse(View message) const override;
    Answer answer(const Request &request) override;
    Bytes message(const Request &request, const Answer &answer) const override;

  private:
    Camera &m_camera;
};

} // namespace zv::sim
