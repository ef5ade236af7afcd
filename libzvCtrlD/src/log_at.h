// Log lines of shared pieces that name their caller: the source file and line of a std::source_location.
#pragma once

#include "zvDbg.h"

#include <cstring>
#include <source_location>

namespace zv {

// The file's name without folders.
inline const char *file_name(const std::source_location &where)
{
    const char *slash = strrchr(where.file_name(), '/');
    return slash != nullptr ? slash + 1 : where.file_name();
}

} // namespace zv

#define ZV_LOG_AT(where, level, ...)                                                                                   \
    do {                                                                                                               \
        if (g_logLevel >= (level)) {                                                                                   \
            zvUtilKlogMsgLevel((level), static_cast<int32_t>((where).line()), zv::file_name(where), __VA_ARGS__);      \
        }                                                                                                              \
    } while (0)
