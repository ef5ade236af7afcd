// Numbers in place: reads and writes of a fixed byte order, at any address.
#pragma once

#include <cstdint>

namespace zv {

constexpr uint16_t be16(const uint8_t *bytes)
{
    return static_cast<uint16_t>(bytes[0] << 8 | bytes[1]);
}

constexpr uint32_t be32(const uint8_t *bytes)
{
    return static_cast<uint32_t>(be16(bytes)) << 16 | be16(bytes + 2);
}

constexpr uint16_t le16(const uint8_t *bytes)
{
    return static_cast<uint16_t>(bytes[1] << 8 | bytes[0]);
}

constexpr uint32_t le32(const uint8_t *bytes)
{
    return static_cast<uint32_t>(le16(bytes + 2)) << 16 | le16(bytes);
}

constexpr uint64_t le64(const uint8_t *bytes)
{
    return static_cast<uint64_t>(le32(bytes + 4)) << 32 | le32(bytes);
}

constexpr void put_be16(uint8_t *bytes, uint16_t value)
{
    bytes[0] = static_cast<uint8_t>(value >> 8);
    bytes[1] = static_cast<uint8_t>(value);
}

constexpr void put_be32(uint8_t *bytes, uint32_t value)
{
    put_be16(bytes, static_cast<uint16_t>(value >> 16));
    put_be16(bytes + 2, static_cast<uint16_t>(value));
}

constexpr void put_le16(uint8_t *bytes, uint16_t value)
{
    bytes[0] = static_cast<uint8_t>(value);
    bytes[1] = static_cast<uint8_t>(value >> 8);
}

constexpr void put_le32(uint8_t *bytes, uint32_t value)
{
    put_le16(bytes, static_cast<uint16_t>(value));
    put_le16(bytes + 2, static_cast<uint16_t>(value >> 16));
}

constexpr void put_le64(uint8_t *bytes, uint64_t value)
{
    put_le32(bytes, static_cast<uint32_t>(value));
    put_le32(bytes + 4, static_cast<uint32_t>(value >> 32));
}

} // namespace zv
