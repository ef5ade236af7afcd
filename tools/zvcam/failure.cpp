#include "failure.h"

#include "output.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <zvctrl/zvDbg.h>

namespace zvcam {

const char EXIT_CODES[] = "Exit codes:\n"
                          "  0  done\n"
                          "  1  failed in a way that is told on standard error, or the answer is no\n"
                          "  2  wrong usage\n"
                          "  3  no daemon or no relay: nothing there to talk to\n"
                          "  4  no answer\n"
                          "  5  refused by the camera\n"
                          "  6  forbidden by the camera's rules in its present state\n"
                          "  7  the system's limits do not allow the queues\n";

namespace {

struct ResultRow {
    int32_t result;
    ExitCode code;
    const char *meaning;
};

constexpr ResultRow RESULTS[] = {
    {ZV_ERR_NO_RESPONSE, NO_ANSWER, "no answer within 10 seconds; is the camera's side still running?"},
    {ZV_ERR_NAK_OFF, REFUSED, "the camera is switched off"},
    {ZV_ERR_NOT_SUPPORTED, REFUSED, "this camera has no such command"},
    {ZV_ERR_NO_SDCARD, REFUSED, "there is no card in the camera"},
    {ZV_ERR_SDCARD_FULL, REFUSED, "the card is full"},
    {ZV_ERR_ACCESS_DENIED, REFUSED, "the camera denies access"},
    {ZV_ERR_INVALID_PARAM, FAILED,
     "a value is out of range or does not fit here, or the camera's answer has no valid form"},
    {ZV_ERR_OUTOFMEM, FAILED, "out of memory"},
};

} // namespace

void fail(ExitCode code, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = vsnprintf(nullptr, 0, format, arguments); // some list a hundred options
    std::string text(static_cast<size_t>(std::max(length, 0)), '\0');
    vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    va_end(arguments);
    throw Failure{code, text};
}

void answer_no()
{
    throw Failure{FAILED, {}};
}

void check(int32_t result, const char *doing, uint8_t camera_code)
{
    if (result == ZV_OK) {
        return;
    }
    if (result == ZV_ERR && camera_code != 0) {
        fail(REFUSED, "cannot %s: the firmware reports error %d", doing, static_cast<int8_t>(camera_code));
    }
    if (result == ZV_ERR_NAK || (result == ZV_ERR_INVALID_PARAM && camera_code != 0)) { // the shutter's way to say so
        fail(REFUSED, "cannot %s: the camera refused it, with acknowledge byte %u", doing, camera_code);
    }
    const std::string name = result == ZV_ERR_NO_RESPONSE ? "ZV_ERR_NO_RESPONSE" : zvErrno2Str(result);
    for (const ResultRow &row : RESULTS) {
        if (row.result == result) {
            fail(row.code, "cannot %s: %s (%s, %d)", doing, row.meaning, name.c_str(), result);
        }
    }
    fail(FAILED, "cannot %s: %s, %d; -v shows the library's log", doing, name.c_str(), result);
}

} // namespace zvcam
