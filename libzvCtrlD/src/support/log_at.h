// Log lines of shared pieces that name their caller: its source file and line.
#pragma once

#include "zvDbg.h"

#include <cstdint>
#include <cstring>

namespace zv {

// Where a function was called: as the default of its last parameter. The standard's own type needs a newer clang.
class SourceLocation {
  public:
    static constexpr SourceLocation current(const char *file = __builtin_FILE(), int line = __builtin_LINE())
    {
        return {file, line};
    }

    // The file's name without folders.
    const char *file_name() const
    {
        const char *slash = strrchr(m_file, '/');
        return slash != nullptr ? slash + 1 : m_file;
    }
    int32_t line() const { return m_line; }

  private:
    constexpr SourceLocation(const char *file, int line) : m_file(file), m_line(line) {}

    const char *m_file;
    int32_t m_line;
};

} // namespace zv

#define ZV_LOG_AT(where, level, ...)                                                                                   \
    do {                                                                                                               \
        if (g_logLevel >= (level)) {                                                                                   \
            zvUtilKlogMsgLevel((level), (where).line(), (where).file_name(), __VA_ARGS__);                             \
        }                                                                                                              \
    } while (0)
