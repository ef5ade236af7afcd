// A capture: what the shutter starts and stops, and the counters that move meanwhile.
#pragma once

#include "card.h"
#include "flat_modes.h"
#include "state.h"

#include <cstdint>

namespace zv::sim {

class Capture {
  public:
    Capture(State &state, Card &card) : m_state(state), m_card(card) {}

    bool active() const { return m_mode != nullptr; }

    // Starts what `mode` captures; nothing may be active. False when the card is full. Photos that are taken at once
    // leave nothing active.
    bool start(const FlatModeRow &mode);
    // Does nothing when nothing is active.
    void stop();
    // A second has gone by.
    void second();

  private:
    bool record_second();
    bool wait_second();
    void take_photos(uint32_t count);
    uint32_t interval_ms() const;

    State &m_state;
    Card &m_card;
    const FlatModeRow *m_mode = nullptr;
    uint32_t m_group = 0;  // of the photos
    uint64_t m_waited = 0; // for the next photo, in milliseconds
};

} // namespace zv::sim
