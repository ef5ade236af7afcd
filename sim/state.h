// The camera's one state, which both peers read and write.
#pragma once

#include "field.h"
#include "message.h"

#include <array>
#include <cstdint>
#include <random>

#include <zvctrl/camera_records.h>

namespace zv::sim {

class State {
  public:
    State(uint8_t model, uint32_t seed);

    uint8_t model() const { return m_model; }

    uint64_t get(Field field) const;
    uint8_t byte(Field field) const { return static_cast<uint8_t>(get(field)); }
    void set(Field field, uint64_t value);

    // The snapshot record, and its two parts.
    View record() const { return m_record; }
    View status_record() const { return record().first(ALL_SETTINGS_OFFSET); }
    View settings_record() const
    {
        return record().subspan(ALL_SETTINGS_OFFSET, ALL_SYSTEM_SETTINGS_OFFSET - ALL_SETTINGS_OFFSET);
    }

    // A number below `limit` that depends on the seed alone.
    uint32_t random(uint32_t limit) { return static_cast<uint32_t>(m_random() % limit); }

  private:
    uint8_t m_model;
    std::mt19937 m_random;
    std::array<uint8_t, sizeof(all_status_settings_t)> m_record = {};
};

} // namespace zv::sim
