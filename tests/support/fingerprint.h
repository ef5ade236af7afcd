// One number for a table, of the text of its rows: what any of them says differently shows.
#pragma once

#include <cstdint>
#include <sstream>
#include <string>

namespace test {

class Fingerprint {
  public:
    template <class... Values>
    void add(const Values &...values)
    {
        std::ostringstream line;
        ((line << values << '|'), ...);
        for (const char character : line.str()) {
            m_hash = (m_hash ^ static_cast<uint8_t>(character)) * 0x100000001B3;
        }
    }
    std::string text() const
    {
        std::ostringstream text;
        text << std::hex << m_hash;
        return text.str();
    }

  private:
    uint64_t m_hash = 0xCBF29CE484222325;
};

} // namespace test
