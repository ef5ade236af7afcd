#include <zvservice/result.h>

#include <gtest/gtest.h>

using namespace zvservice;

namespace {

TEST(Result, TellsACallToPeopleShellsAndClients)
{
    struct {
        int32_t result;
        uint8_t camera_code;
        Outcome outcome;
        int32_t code;
        int exit_code;
        int http_status;
        const char *sentence;
    } const cases[] = {
        {0, 0, Outcome::DONE, 0, 0, 200, ""},
        {0, 7, Outcome::DONE, 0, 0, 200, ""},
        {-103, 0, Outcome::SWITCHED_OFF, 0, 5, 502, "cannot zoom: the camera is switched off"},
        {-101, 3, Outcome::REFUSED, 3, 5, 502, "cannot zoom: the camera refused it, with acknowledge byte 3"},
        {-3, 4, Outcome::REFUSED, 4, 5, 502, "cannot zoom: the camera refused it, with acknowledge byte 4"},
        {-1, 254, Outcome::FIRMWARE_ERROR, -2, 5, 502, "cannot zoom: the firmware reports error -2"},
        {-81, 0, Outcome::NO_ANSWER, -81, 4, 504,
         "cannot zoom: no answer within 10 seconds; is the camera's side still running? (ZV_ERR_NO_RESPONSE, -81)"},
        {-104, 0, Outcome::REFUSED, -104, 5, 502,
         "cannot zoom: this camera has no such command (ZV_ERR_NOT_SUPPORTED, -104)"},
        {-2, 0, Outcome::FAILED, -2, 1, 500, "cannot zoom: out of memory (ZV_ERR_OUTOFMEM, -2)"},
        {-1, 0, Outcome::FAILED, -1, 1, 500, "cannot zoom: ZV_ERR, -1"},
        {-77, 0, Outcome::FAILED, -77, 1, 500, "cannot zoom: UNKNOWN, -77"},
    };
    for (const auto &row : cases) {
        const Result result = Result::of_call(row.result, "zoom", row.camera_code);
        EXPECT_EQ(row.outcome, result.outcome()) << row.sentence;
        EXPECT_EQ(row.code, result.code()) << row.sentence;
        EXPECT_EQ(row.exit_code, result.exit_code()) << row.sentence;
        EXPECT_EQ(row.http_status, result.http_status()) << row.sentence;
        EXPECT_EQ(row.sentence, result.sentence());
        EXPECT_EQ(row.outcome == Outcome::DONE, result.done());
    }
    const Result forbidden("not now", {{89, nullptr, {}}});
    EXPECT_EQ(409, forbidden.http_status());
    EXPECT_EQ(6, forbidden.exit_code());
    EXPECT_EQ(89u, forbidden.reasons().front().rule);
}

} // namespace
