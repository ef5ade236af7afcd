#include "result.h"

#include <cstddef>
#include <iterator>
#include <utility>

namespace zvservice {

namespace {

// How each outcome is told to a shell and to a client of HTTP.
struct OutcomeRow {
    Outcome outcome;
    ExitCode exit_code;
    int http_status;
};

constexpr OutcomeRow OUTCOMES[] = {
    {Outcome::DONE, EXIT_DONE, 200},
    {Outcome::FAILED, EXIT_FAILED, 500},
    {Outcome::SWITCHED_OFF, EXIT_REFUSED, 502},
    {Outcome::NO_ANSWER, EXIT_NO_ANSWER, 504},
    {Outcome::NOT_THERE, EXIT_NOT_THERE, 503},
    {Outcome::REFUSED, EXIT_REFUSED, 502},
    {Outcome::FIRMWARE_ERROR, EXIT_REFUSED, 502},
    {Outcome::FORBIDDEN, EXIT_FORBIDDEN, 409},
    {Outcome::NOT_OFFERED, EXIT_REFUSED, 409},
    {Outcome::NO_SUCH_SETTING, EXIT_WRONG_USAGE, 404},
    {Outcome::NO_SUCH_OPTION, EXIT_WRONG_USAGE, 422},
    {Outcome::SYSTEM_LIMIT, EXIT_SYSTEM_LIMIT, 503},
};

constexpr bool rows_are_in_order()
{
    for (size_t i = 0; i < std::size(OUTCOMES); ++i) {
        if (static_cast<size_t>(OUTCOMES[i].outcome) != i) {
            return false;
        }
    }
    return true;
}
static_assert(rows_are_in_order(), "an outcome is the index of its row");

const OutcomeRow &row_of(Outcome outcome)
{
    return OUTCOMES[static_cast<size_t>(outcome)];
}

// What a code of the library means.
struct CodeRow {
    int32_t code;
    Outcome outcome;
    const char *meaning;
};

constexpr CodeRow CODES[] = {
    {ZV_ERR_NO_RESPONSE, Outcome::NO_ANSWER, "no answer within 10 seconds; is the camera's side still running?"},
    {ZV_ERR_NOT_SUPPORTED, Outcome::REFUSED, "this camera has no such command"},
    {ZV_ERR_NO_SDCARD, Outcome::REFUSED, "there is no card in the camera"},
    {ZV_ERR_SDCARD_FULL, Outcome::REFUSED, "the card is full"},
    {ZV_ERR_ACCESS_DENIED, Outcome::REFUSED, "the camera denies access"},
    {ZV_ERR_INVALID_PARAM, Outcome::FAILED,
     "a value is out of range or does not fit here, or the camera's answer has no valid form"},
    {ZV_ERR_OUTOFMEM, Outcome::FAILED, "out of memory"},
};

// The code's name and number. The code of a lost answer has no row in the library's names.
std::string name_of(int32_t code)
{
    return std::string(code == ZV_ERR_NO_RESPONSE ? "ZV_ERR_NO_RESPONSE" : zvErrno2Str(code)) + ", " +
           std::to_string(code);
}

} // namespace

Result::Result(Outcome outcome, std::string sentence, int32_t code)
    : m_outcome(outcome), m_code(code), m_sentence(std::move(sentence))
{
}

Result::Result(std::string sentence, std::vector<Removal> reasons)
    : m_outcome(Outcome::FORBIDDEN), m_sentence(std::move(sentence)), m_reasons(std::move(reasons))
{
}

Result Result::of_call(int32_t result, const char *doing, uint8_t camera_code)
{
    if (result == ZV_OK) {
        return {};
    }
    if (result == ZV_ERR_NAK_OFF) {
        return switched_off(doing);
    }
    if (result == ZV_ERR && camera_code != 0) {
        const auto error = static_cast<int8_t>(camera_code);
        return cannot(Outcome::FIRMWARE_ERROR, doing, "the firmware reports error " + std::to_string(error), error);
    }
    if (result == ZV_ERR_NAK || (result == ZV_ERR_INVALID_PARAM && camera_code != 0)) { // the shutter's way to say so
        return cannot(Outcome::REFUSED, doing,
                      "the camera refused it, with acknowledge byte " + std::to_string(camera_code), camera_code);
    }
    for (const CodeRow &row : CODES) {
        if (row.code == result) {
            return cannot(row.outcome, doing, std::string(row.meaning) + " (" + name_of(result) + ")", result);
        }
    }
    return cannot(Outcome::FAILED, doing, name_of(result), result);
}

Result Result::cannot(Outcome outcome, const char *doing, const std::string &why, int32_t code)
{
    return {outcome, std::string("cannot ") + doing + ": " + why, code};
}

Result Result::switched_off(const char *doing)
{
    return cannot(Outcome::SWITCHED_OFF, doing, "the camera is switched off");
}

ExitCode Result::exit_code() const
{
    return row_of(m_outcome).exit_code;
}

int Result::http_status() const
{
    return row_of(m_outcome).http_status;
}

} // namespace zvservice
