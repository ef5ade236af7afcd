// The simulated camera itself: its state, its card, what it captures, and what it does as time goes by. Both peers
// work on it.
#pragma once

#include "capture.h"
#include "card.h"
#include "easy_mode.h"
#include "field.h"
#include "flat_modes.h"
#include "state.h"

#include <cstdint>
#include <span>

namespace zv::sim {

class Camera {
  public:
    Camera(uint8_t model, uint32_t seed);
    Camera(const Camera &) = delete; // its parts know each other
    Camera &operator=(const Camera &) = delete;

    State &state() { return m_state; }
    const State &state() const { return m_state; }
    Card &card() { return m_card; }
    Capture &capture() { return m_capture; }

    const FlatModeRow &mode() const { return *m_mode; }
    void set_mode(const FlatModeRow &mode);

    // The preset that brought the present mode; null where the mode was chosen by itself.
    const EasyPreset *preset() const { return m_preset; }
    // Makes the preset active and takes on its mode. False for a preset that the camera does not have.
    bool load_preset(uint32_t preset);

    // Puts the fields back to what they are when the camera is switched on.
    void reset(std::span<const Field> fields);

    // Brings in what others keep: the state of a firmware update.
    void refresh();
    // The firmware update's last stage, which takes some seconds.
    void start_flashing();

    // Lets time pass, in microseconds.
    void advance(uint64_t microseconds);

  private:
    void second();
    void use_battery();

    State m_state;
    Card m_card;
    Capture m_capture;
    const FlatModeRow *m_mode = nullptr;
    const EasyPreset *m_preset = nullptr;
    uint64_t m_microseconds = 0;    // of the second that has begun
    uint32_t m_percent_seconds = 0; // until the battery moves by 1 %
    uint32_t m_flashing_seconds = 0;
};

} // namespace zv::sim
