// Allocations that fail, one after the other: what allocates for a caller says so and leaves all as it was, what does
// not allocate does not, and the next call works.
#include "camera_settings.h"
#include "camera_status.h"
#include "csi_double.h"
#include "failing_new.h"
#include "http_utils.h"
#include "interpose.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <new>

using namespace test;
using testing::ElementsAre;

namespace {

constexpr uint32_t SABLE = 58;

class NoMemory : public testing::Test {
  protected:
    void SetUp() override
    {
        reset();
        csi() = {};
        csi().gets.reserve(100000);
        const std::string network = "a network's name of 32 characters";
        for (const size_t offset : {size_t{297}, size_t{330}}) {
            std::copy_n(network.begin(), 32, record.bytes + offset);
        }
    }

    // Runs `call` with each of its allocations failing in turn, and `check` after each; at last with none. `prepare`
    // runs before each. Returns how many failed.
    template <class Call, class Check>
    static int64_t fail_in_turn(
        Call call, Check check, const std::function<void()> &prepare = [] {})
    {
        for (int64_t failures = 0;; ++failures) {
            prepare();
            allocations().until_failure = failures;
            call();
            const bool failed = allocations().until_failure == NEVER;
            allocations().until_failure = NEVER;
            if (!failed) {
                return failures;
            }
            check();
        }
    }

    all_status_settings_t record = {};
};

TEST_F(NoMemory, LookUpsNeedNone)
{
    allocations().until_failure = 0;
    const bool exists = optionIdExists(SABLE, 2, 100);
    const uint32_t values[] = {getOptionValueById(SABLE, 2, 100), getOptionIdByValue(SABLE, 2, 24, 12),
                               getOptionValueById(0, 131, 111)};
    EXPECT_EQ(0, allocations().until_failure);
    allocations().until_failure = NEVER;
    EXPECT_TRUE(exists);
    EXPECT_THAT(values, ElementsAre(24, 100, 6));
}

TEST_F(NoMemory, MapsAreMadeByTheNextCall)
{
    const auto expect_made = [](auto get, size_t entries) {
        const int64_t before = allocations().in_use;
        const int64_t failures = fail_in_turn(
            [=] {
                try {
                    get(SABLE);
                } catch (const std::bad_alloc &) {
                }
            },
            [=] { EXPECT_EQ(before, allocations().in_use) << "a leak"; });
        EXPECT_GT(failures, 0);
        EXPECT_EQ(entries, get(SABLE).size());
        EXPECT_EQ(entries, get(0).size());
    };
    expect_made(getCameraOptions, 89);
    expect_made(getCameraFilters, 202);
    expect_made(getOptionIds, 89);
    expect_made(getUIModeGroups, 3);
}

// Whatever fails, the stream is as it was, and takes the whole text at the next call.
TEST_F(NoMemory, DocumentsAreWrittenWholeOrNotAtAll)
{
    appc_setup_all_settings settings = {};
    appc_system_all_status status = {};
    std::copy_n(record.bytes, sizeof status.bytes, status.bytes);
    all_status_settings_t previous = record;
    std::fill(previous.bytes + ALL_SETTINGS_OFFSET, std::end(previous.bytes), uint8_t{1});
    std::vector<std::string> cache;

    const std::function<int32_t(std::stringstream &)> writers[] = {
        [&](auto &stream) { return camera_status_serialize_status_to_json(stream, &status, SABLE); },
        [&](auto &stream) { return camera_settings_serialize_to_json(stream, &settings, &status, nullptr, SABLE); },
        [&](auto &stream) {
            return camera_status_serialize_settings_changes_to_json(stream, &record, &previous, SABLE);
        },
        [&](auto &stream) {
            return camera_status_serialize_status_changes_to_json(stream, &status, nullptr, SABLE, cache);
        },
    };
    for (const auto &write : writers) {
        const std::vector<std::string> unseen(119);
        cache = std::vector<std::string>(119);
        std::stringstream whole;
        const int32_t good = write(whole);
        for (const auto thrown : {std::ios::goodbit, std::ios::badbit}) {
            std::stringstream stream;
            int32_t result = 0;
            const auto prepare = [&] {
                cache = std::vector<std::string>(119); // without the room that texts had
                stream = std::stringstream("before|", std::ios::in | std::ios::out | std::ios::ate);
                stream.exceptions(thrown);
                stream.get();
            };
            const auto check = [&] {
                EXPECT_EQ(-2, result);
                EXPECT_TRUE(stream.good());
                EXPECT_EQ("before|", stream.str());
                EXPECT_EQ(1, stream.tellg());
                EXPECT_EQ(unseen, cache);
                EXPECT_EQ(good, write(stream));
                EXPECT_EQ("before|" + whole.str(), stream.str());
            };
            EXPECT_GT(fail_in_turn([&] { result = write(stream); }, check, prepare), 0);
            EXPECT_EQ(good, result);
        }
    }
}

TEST_F(NoMemory, AFailedStreamLosesNoChange)
{
    appc_system_all_status status = {};
    std::vector<std::string> cache(119);
    std::stringstream stream;
    stream.setstate(std::ios::failbit);
    EXPECT_EQ(0, camera_status_serialize_status_changes_to_json(stream, &status, nullptr, SABLE, cache));
    EXPECT_EQ(0, camera_status_serialize_status_to_json(stream, &status, SABLE));
    EXPECT_EQ("", stream.str());
    stream.clear();
    EXPECT_EQ(82, camera_status_serialize_status_changes_to_json(stream, &status, nullptr, SABLE, cache));
}

TEST_F(NoMemory, ACacheIsMadeWholeOrNotAtAll)
{
    std::vector<std::string> cache(1);
    int32_t result = 0;
    EXPECT_EQ(1, fail_in_turn([&] { result = camera_status_init_bossCache(SABLE, cache); },
                              [&] {
                                  EXPECT_EQ(-2, result);
                                  EXPECT_EQ(1U, cache.size());
                              }));
    EXPECT_EQ(0, result);
    EXPECT_EQ(120U, cache.size());
}

TEST_F(NoMemory, AnErrorResponseIsWholeOrItsStreamIsBad)
{
    std::stringstream stream;
    const int64_t failures = fail_in_turn(
        [&] {
            http_print_error_response_ex(stream, "/settings", "p=1", 400, -3, "value out of range", "apply_setting", 1);
        },
        [&] {
            EXPECT_TRUE(stream.bad());
            EXPECT_THAT(stream.str(), testing::Not(testing::HasSubstr("Content-Length: 0")));
        },
        [&] { stream = {}; });
    EXPECT_GT(failures, 1);
    EXPECT_TRUE(stream.good());
    EXPECT_THAT(stream.str(), testing::EndsWith("}\n"));
    EXPECT_THAT(log_lines(), testing::Contains(testing::StartsWith("ERROR cannot make the response to an error")));
}

TEST_F(NoMemory, AParameterIsFoundOrUntouched)
{
    const std::string query = "a=" + std::string(100, '1');
    std::string value = "kept";
    int32_t found = 1;
    EXPECT_EQ(1, fail_in_turn([&] { found = parseParam(query.c_str(), "a=", value); },
                              [&] {
                                  EXPECT_EQ(0, found);
                                  EXPECT_EQ("kept", value);
                              }));
    EXPECT_EQ(1, found);
    EXPECT_EQ(query.substr(2), value);
}

} // namespace
