// The control daemon: snapshots of the record, settings, resynchronisation.
#pragma once

#include "camera.h"
#include "peer.h"

namespace zv::sim {

class DaemonPeer : public Peer {
  public:
    explicit DaemonPeer(Camera &camera) : m_camera(camera) {}

    std::optional<Request> parse(View message) const override;
    Answer answer(const Request &request) override;
    Bytes message(const Request &request, const Answer &answer) const override;

  private:
    Camera &m_camera;
};

} // namespace zv::sim
