// The white balance that the photo and the multi-shot fits of an exposure time look at. Internal to the library.
#pragma once

#include "bytes.h"
#include "remote_call.h"

#include <algorithm>

namespace zv {

constexpr int32_t WHITE_BALANCE_AUTO = 0;
constexpr int32_t WHITE_BALANCE_5500K = 2;
constexpr int32_t WHITE_BALANCE_MAX = 12;

// Reads the white balance with `get`: a little-endian number of as many bytes as the camera answers, 4 at most. One
// that cannot be read is logged with `unreadable`, the code its argument, and counts as Auto; a number that is no white
// balance is ZV_ERR.
inline int32_t read_white_balance(zvc_msg_q_context_t *context, RemoteCommand get, const char *unreadable,
                                  int32_t &white_balance, const SourceLocation &where = SourceLocation::current())
{
    Payload answer;
    int32_t result = remote_send(context, get, &answer);
    white_balance = WHITE_BALANCE_AUTO;
    if (result == ZV_OK) {
        uint8_t bytes[sizeof white_balance] = {};
        std::copy_n(answer.bytes, std::min<size_t>(answer.size, sizeof bytes), bytes);
        white_balance = static_cast<int32_t>(le32(bytes));
        if (white_balance > WHITE_BALANCE_MAX) {
            ZV_LOG_AT(where, ZV_LOG_ERROR, "invalid white_balance, %d\n", white_balance);
            result = ZV_ERR;
        }
    }
    if (result != ZV_OK) {
        ZV_LOG_AT(where, ZV_LOG_WARN, unreadable, result);
        white_balance = WHITE_BALANCE_AUTO;
    }
    return result;
}

} // namespace zv
