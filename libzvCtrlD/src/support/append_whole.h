// Text that goes into a caller's stream whole or not at all. Internal to the library.
#pragma once

#include "zvDbg.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <ios>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

namespace zv {

// Makes a stream that a write has run out of memory on good again, with the first `size` characters of its text. The
// stream's string is moved out and in, because there is no memory to copy it.
[[gnu::cold, gnu::noinline]] inline void take_back(std::stringstream &stream, size_t size)
{
    stream.clear();
    std::stringbuf &buffer = *stream.rdbuf();
    const std::streampos read_position = buffer.pubseekoff(0, std::ios::cur, std::ios::in);
    std::string text = std::move(buffer).str();
    text.resize(size);
    buffer.str(std::move(text)); // NOLINT(bugprone-use-after-move): it is empty, and as good as a new one
    buffer.pubseekpos(read_position, std::ios::in);
    buffer.pubseekoff(0, std::ios::end, std::ios::out);
}

// Returns ZV_OK; ZV_ERR_OUTOFMEM, which leaves the stream as it was; or ZV_ERR for a stream that had failed before and
// takes nothing. Throws nothing, whatever the stream is told to throw.
inline int32_t append_whole(std::stringstream &stream, std::string_view text)
{
    const bool usable = stream.good();
    const size_t size = stream.view().size();
    try {
        stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    } catch (const std::exception &) { // the stream's state says what there is to know
    }
    if (!usable) {
        return ZV_ERR;
    }
    if (!stream.good()) {
        take_back(stream, size);
        return ZV_ERR_OUTOFMEM;
    }
    return ZV_OK;
}

// The same for a function whose `result` does not depend on a stream that had failed before.
inline int32_t append_document(std::stringstream &stream, std::string_view text, int32_t result)
{
    return append_whole(stream, text) == ZV_ERR_OUTOFMEM ? ZV_ERR_OUTOFMEM : result;
}

} // namespace zv
