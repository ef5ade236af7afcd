// The relay and the firmware behind it: the remote API.
#pragma once

#include "peer.h"
#include "state.h"

namespace zv::sim {

class FirmwarePeer : public Peer {
  public:
    explicit FirmwarePeer(State &state) : m_state(state) {}

    std::optional<Request> parse(View message) const override;
    Answer answer(const Request &request) override;
    Bytes message(const Request &request, const Answer &answer) const override;

  private:
    State &m_state;
};

} // namespace zv::sim
