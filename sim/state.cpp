#include "state.h"

#include "initial_record.h"

#include <cstddef>

namespace zv::sim {

State::State(uint8_t model, uint32_t seed) : m_model(model), m_random(seed)
{
    for (const InitialValue &row : initial_record()) {
        set(row.field, row.value);
    }
}

uint64_t State::get(Field field) const
{
    uint64_t value = 0;
    for (size_t i = field.width; i > 0; --i) {
        value = value << 8 | m_record[field.offset + i - 1];
    }
    return value;
}

void State::set(Field field, uint64_t value)
{
    for (size_t i = 0; i < field.width; ++i) {
        m_record[field.offset + i] = static_cast<uint8_t>(value >> 8 * i);
    }
}

} // namespace zv::sim
