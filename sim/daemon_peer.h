// The control daemon: snapshots of the record, settings, resynchronisation.
#pragma once

#include "peer.h"
#include "state.h"

namespace zv::sim {

class DaemonPeer : public Peer {
  public:
    explicit DaemonPeer(State &state) : m_state(state) {}

    std::optional<Request> parse(View message) const override;
    Answer answer(const Request &request) override;
    Bytes message(const Request &request, const Answer &answer) const override;

  private:
    State &m_state;
};

} // namespace zv::sim
