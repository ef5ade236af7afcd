#include "camera_status.h"

#include "camera_status_fields.h"
#include "csi_double.h"
#include "interpose.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iomanip>
#include <memory>

using namespace test;
using testing::ElementsAre;

namespace {

constexpr uint32_t MODEL = 58;

// A record whose every byte differs from its neighbours, with fields set to `bytes` at `offset`.
struct Field {
    size_t offset;
    std::string bytes;
};

appc_system_all_status record(const std::vector<Field> &fields = {})
{
    appc_system_all_status status = {};
    for (size_t i = 0; i < sizeof status.bytes; ++i) {
        status.bytes[i] = static_cast<uint8_t>(i * 89 + 5);
    }
    const std::vector<Field> sensible = {{0, "\x0d"}, {19, {"\2\0\0\0", 4}}, {372, "\2\x1e\x64"}, {198, "\x37"}};
    for (const auto *list : {&sensible, &fields}) {
        for (const Field &field : *list) {
            std::copy(field.bytes.begin(), field.bytes.end(), status.bytes + field.offset);
        }
    }
    return status;
}

// A number of the system information service, as its four bytes.
std::string number(uint32_t value)
{
    return {reinterpret_cast<const char *>(&value), sizeof value};
}

std::string document(const appc_system_all_status &status)
{
    std::stringstream stream;
    EXPECT_EQ(0, camera_status_serialize_status_to_json(stream, &status, MODEL));
    return stream.str();
}

// The text of one value in the document.
std::string value(uint32_t id, const appc_system_all_status &status)
{
    const std::string text = document(status);
    const std::string key = '"' + std::to_string(id) + "\":";
    const size_t start = text.find(key) + key.size();
    return text.substr(start, text.find_first_of(",}", start) - start);
}

struct Changes {
    std::string text;
    int32_t count;
    bool operator==(const Changes &) const = default;
};

Changes changes(const appc_system_all_status &status, std::vector<std::string> &cache)
{
    std::stringstream stream;
    const int32_t count = camera_status_serialize_status_changes_to_json(stream, &status, nullptr, MODEL, cache);
    return {stream.str(), count};
}

std::vector<std::string> fresh_cache()
{
    std::vector<std::string> cache;
    EXPECT_EQ(0, camera_status_init_bossCache(MODEL, cache));
    return cache;
}

class Status : public testing::Test {
  protected:
    void SetUp() override
    {
        reset();
        csi() = {};
    }
};

// In a process of its own, before anything was remembered.
TEST_F(Status, StartsWithNoPercentageAndAVellixDefaultOfOne)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            std::cerr << document(record({{0, {"\0", 1}}, {198, "\xff"}}));
            exit(0);
        },
        testing::ExitedWithCode(0), "\"70\":0,.*\"90\":1,");
}

TEST_F(Status, WritesTheWholeDocument)
{
    csi().values = {{7, number(0x01020304)}, {138, number(0xffffffff)}, {143, number(2)},
                    {151, number(3)},        {152, number(4)},          {24, "\x09"}};
    const auto status = record({{61, "\xfe"},
                                {90, {"\0", 1}},
                                {199, "\2\3"},
                                {203, "\4\7"},
                                {211, "\1"},
                                {251, "\1"},
                                {254, "\x9c"},
                                {296, "\xfb"},
                                {297, {"a \"net\\work\" of 32 characters 12\0", 33}},
                                {330, "thirty-three characters, no zero!"}});
    const char *expected =
        "\"status\":{\n\"1\":130,\"2\":4,\"3\":230,\"4\":7,\"6\":85,\"8\":174,\"9\":7,\"10\":1,"
        "\"11\":185,\"13\":1004702000,\"14\":3211136436,\"17\":16,\"19\":205,\"20\":38,\"22\":171,"
        "\"23\":263609604,\"24\":148,\"27\":27,\"29\":\"a \"net\\work\" of 32 characters 12\","
        "\"30\":\"thirty-three characters, no zero!\",\"31\":116,\"32\":157,\"33\":190,\"34\":583626775,"
        "\"35\":2251150459,\"38\":2992177319,\"39\":381510667,\"41\":8,\"42\":97,\"45\":107,"
        "\"49\":3783798742,\"54\":16034271335121274991,\"55\":246,\"56\":-5,\"58\":55,\"59\":2604853648,"
        "\"60\":500,\"61\":0,\"64\":4289089012,\"65\":0,\"66\":70,\"67\":0,\"68\":195,\"69\":56,"
        "\"70\":55,\"74\":117,\"75\":194,\"76\":145,\"77\":206,\"78\":39,\"81\":234,\"82\":62,\"83\":217,"
        "\"85\":50,\"86\":139,\"88\":237,\"89\":13,\"90\":4294967294,\"91\":9,\"93\":2133249396,"
        "\"94\":3817484760,\"95\":1206818108,\"96\":1002,\"97\":1206818108,\"98\":16909060,\"101\":27,"
        "\"102\":239,\"103\":61,\"105\":161,\"106\":248,\"107\":1931133288,\"108\":126,\"109\":250,"
        "\"110\":150,\"111\":3,\"112\":4,\"113\":4294967295,\"114\":4294967196,\"115\":2,\"116\":5,"
        "\"117\":16757673063502041721,\"118\":432039694}";
    for (const uint32_t model : {0U, 58U, 59U, 62U}) {
        std::stringstream stream;
        stream << "x=" << std::hex << std::setw(20);
        EXPECT_EQ(0, camera_status_serialize_status_to_json(stream, &status, model));
        EXPECT_EQ(std::string("x=") + expected, stream.str());
    }
}

TEST_F(Status, TurnsFirmwareValuesIntoPublishedOnes)
{
    const std::string direct = "\1";
    const std::string mirrored(1, '\0');
    struct Case {
        uint32_t id;
        std::vector<Field> fields;
        const char *expected;
    };
    const Case cases[] = {
        {2, {{199, {"\0\3", 2}}}, "3"},
        {2, {{199, "\1\3"}}, "4"},
        {2, {{199, "\3\xff"}}, "4"},
        {2, {{199, "\4\3"}}, "3"},
        {4, {{203, "\2\1"}}, "4"},
        {4, {{203, "\xff\1"}}, "1"},
        {61, {{211, {"\0", 1}}}, "2"},
        {61, {{211, "\xff"}}, "2"},
        {65, {{372, {"\0", 1}}}, "1"},
        {65, {{372, "\1"}}, "2"},
        {65, {{372, "\3"}}, "3"},
        {65, {{372, "\4"}}, "0"},
        {66, {{90, direct}, {373, "\x1e"}}, "30"},
        {66, {{90, mirrored}, {373, {"\0", 1}}}, "100"},
        {66, {{90, mirrored}, {373, "\x65"}}, "0"},
        {67, {{90, direct}, {374, "\x64"}}, "100"},
        {67, {{90, mirrored}, {374, "\xff"}}, "0"},
        {91, {{251, "\2"}}, "0"},
        {96, {{19, "\xff\xff\xff\xff"}}, "999"},
        {97, {{19, {"\13\0\0\0", 4}}, {7, {"\1\0\12\0", 4}}}, "655361"},
        {97, {{19, {"\14\0\0\0", 4}}, {11, {"\2\0\12\0", 4}}}, "655362"},
        {97, {{19, {"\16\0\0\0", 4}}, {7, {"\3\0\12\0", 4}}}, "655363"},
        {97, {{19, {"\6\0\0\0", 4}}}, "0"},
        {97, {{19, {"\0\0\0\1", 4}}}, "0"},
        {90, {{0, "\x1b"}, {39, "\5"}}, "5"},
        {90, {{0, "\x12"}, {48, "\6"}}, "6"},
        {90, {{0, "\x1f"}, {61, "\7"}}, "7"},
        {29, {{297, {"\0", 1}}}, "\"\""},
    };
    csi().values = {{24, "\7"}};
    for (const Case &c : cases) {
        EXPECT_EQ(c.expected, value(c.id, record(c.fields))) << c.id;
    }
}

TEST_F(Status, RemembersTheLastGoodValues)
{
    EXPECT_EQ("55", value(70, record({{198, "\x37"}})));
    EXPECT_EQ("55", value(70, record({{198, "\xff"}})));
    EXPECT_EQ("60", value(70, record({{198, "\x3c"}})));
    EXPECT_EQ("0", value(70, record({{198, {"\0", 1}}})));
    EXPECT_EQ("4294967289", value(90, record({{0, "\x10"}, {48, "\xf9"}})));
    for (const char *unsupported : {"\x0b", "\x16", "\x17", "\x1c", "\x20", "\xff"}) {
        EXPECT_EQ("4294967289", value(90, record({{0, unsupported}})));
    }
}

TEST_F(Status, LogsARunOfUnsupportedValuesOnce)
{
    const auto good = record();
    const auto bad = record({{0, "\xf7"}, {19, {"\6\0\0\0", 4}}});
    const auto vellix = testing::MatchesRegex("Flat mode -9, doesn't support vellix, using video_vellix_default "
                                              "value. @ libzvCtrlD/src/camera_status:[0-9]+\n");
    const auto preset =
        testing::MatchesRegex("Preset group 0x1006 isn't supported @ libzvCtrlD/src/camera_status:[0-9]+\n");
    for (const auto *status : {&good, &bad, &bad, &good, &bad}) {
        document(*status);
    }
    EXPECT_THAT(log_messages(), ElementsAre(vellix, preset, vellix, preset));

    reset();
    document(record({{372, "\x80\x80\x7f"}}));
    EXPECT_THAT(log_messages(),
                ElementsAre("Unknown Liveview status type", "exposure select x -128, out of range 0-100",
                            "exposure select y 127, out of range 0-100"));
}

TEST_F(Status, TracesBatteryAndExposure)
{
    g_logLevel = ZV_LOG_TRACE;
    document(record({{90, {"\0", 1}}, {199, "\1\2"}, {203, "\3\4"}, {251, {"\0", 1}}}));
    EXPECT_THAT(log_messages(),
                ElementsAre("bar/ch, 2,1\n", "bar/ch, 4,3\n", "Exposure X from firmware is 30",
                            "Exposure X from firmware is adjusted to 70", "Exposure Y from firmware is 100",
                            "Exposure Y from firmware is adjusted to 0"));
}

TEST_F(Status, ReportsChangesOfText)
{
    std::vector<std::string> cache = fresh_cache();
    ASSERT_EQ(119U, cache.size());
    const auto first = record({{90, {"\0", 1}}, {98, number(1200)}, {198, "\x32"}, {209, {"\0", 1}}});
    const std::string all = document(first);
    EXPECT_EQ((Changes{all.substr(11, all.size() - 12), 82}), changes(first, cache));
    EXPECT_EQ("\"8\":0", cache[8]);
    EXPECT_EQ("", cache[5]);
    EXPECT_EQ((Changes{"", 0}), changes(first, cache));

    auto second = first;
    second.bytes[209] = 1;
    std::copy_n(number(1199).data(), 4, second.bytes + 98);
    second.bytes[198] = 0xff; // no new reading, no change
    second.bytes[1] ^= 0xff;  // a byte that nobody publishes
    std::vector<uint32_t> values(119);
    update_camera_status(&second, MODEL, values); // leaves the cache alone
    g_logLevel = ZV_LOG_INFO;
    EXPECT_EQ((Changes{"\"8\":1,\"34\":1199", 2}), changes(second, cache));
    EXPECT_THAT(log_messages(), testing::IsSupersetOf({"index=8 change count = 1, old=[\"8\":0]  new=[\"8\":1]",
                                                       "index=34 change count = 2, old=[\"34\":1200]  "
                                                       "new=[\"34\":1199]"}));
    EXPECT_THAT(log_lines(), testing::Contains(testing::StartsWith("INFO index=8 change count = 1")));
    g_logLevel = ZV_LOG_ERROR;
    EXPECT_EQ((Changes{"", 0}), changes(second, cache));

    second.bytes[90] = 1;
    EXPECT_EQ((Changes{"\"66\":30,\"67\":100", 2}), changes(second, cache));
    csi().values = {{143, number(1)}};
    EXPECT_EQ((Changes{"\"115\":1", 1}), changes(second, cache));

    std::vector<std::string> other = fresh_cache();
    EXPECT_EQ(82, changes(second, other).count);
    EXPECT_EQ(cache, other);
}

TEST_F(Status, LeavesOutWhatTheCacheHasNoRoomFor)
{
    std::vector<std::string> cache;
    EXPECT_EQ((Changes{"", 0}), changes(record(), cache));
    EXPECT_EQ(82U, log_messages().size());
    EXPECT_EQ("Push Error - Cache status invalid size detected at index  118", log_messages().back());
    cache.resize(3);
    EXPECT_EQ(2, changes(record(), cache).count);

    g_logLevel = ZV_LOG_DEBUG;
    camera_status_init_bossCache(MODEL, cache);
    EXPECT_EQ(122U, cache.size());
    EXPECT_EQ("init status max index = 119", log_messages().back());
}

TEST_F(Status, GivesValuesAsNumbers)
{
    const auto status = record({{98, "\xff\xff\xff\xff"},
                                {122, {"\x78\x56\x34\x12\1\0\0\0", 8}},
                                {148, "\xff\xff\xff\xff\xff\xff\xff\xff"},
                                {296, "\xfb"},
                                {297, "1234"}});
    std::vector<uint32_t> values(119, 4711);
    update_camera_status(&status, MODEL, values);
    EXPECT_EQ(4294967295U, values[34]);
    EXPECT_EQ(0x12345678U, values[54]);
    EXPECT_EQ(4294967295U, values[117]); // the low half of the highest signed number
    EXPECT_EQ(4294967291U, values[56]);
    EXPECT_EQ(0U, values[29]);
    EXPECT_EQ(1002U, values[96]);
    EXPECT_EQ(37, std::ranges::count(values, 4711U));

    const std::string half(7, '\0'); // of what a signed number holds
    const auto large = record({{122, half + '\x80'}, {148, half + '\x80'}});
    update_camera_status(&large, MODEL, values);
    EXPECT_EQ(4294967295U, values[54]);
    EXPECT_EQ(4294967295U, values[117]);

    std::vector<uint32_t> few(4, 4711);
    few.pop_back();
    update_camera_status(&status, MODEL, few);
    EXPECT_THAT(few, ElementsAre(4711, 130, testing::Ne(4711U)));
    EXPECT_EQ(4711U, few.data()[3]) << "past the end";
}

TEST_F(Status, PassesOverRowsThatAreInvalid)
{
    std::vector<zv::StatusField> rows(zv::pushed_statuses().begin(), zv::pushed_statuses().begin() + 8);
    rows[0].offset = 394;
    rows[7].offset = -1;
    const auto status = record({{199, {"\0\3", 2}}, {203, {"\0\1", 2}}});
    const auto discarded = ElementsAre("WARNING: discarding system_internal_battery_present at invalid offset of 394",
                                       "WARNING: discarding system_encoding_active at invalid offset of -1");

    std::stringstream stream;
    std::vector<std::string> cache(119);
    EXPECT_EQ(6, zv::write_status_changes(stream, status.bytes, cache, rows));
    EXPECT_EQ(R"("2":3,"3":230,"4":1,"6":85,"8":174,"9":7)", stream.str());
    EXPECT_THAT(log_messages(), discarded);

    reset();
    std::vector<uint32_t> values(119, 4711);
    zv::update_status_values(status.bytes, values, rows);
    EXPECT_EQ(113, std::ranges::count(values, 4711U));
    EXPECT_THAT(log_messages(), discarded);

    stream.str({});
    zv::write_status(stream, status.bytes, {});
    EXPECT_EQ("\"status\":{\n}", stream.str());
}

TEST_F(Status, OutputsOneMemberUnderTheCallersId)
{
    // On the heap, so that a sanitizer sees a read past it.
    const auto status = std::make_unique<appc_system_all_status>(record(
        {{254, "\x80"}, {251, "\xff"}, {300, {"longer than the name of any network: 45 bytes\0", 46}}, {390, "text"}}));
    struct Case {
        status_output_t *output;
        status_field_t field;
        const char *expected;
    };
    const Case cases[] = {
        {status_field_output_int, {1, "", 393, 1, nullptr}, "\"1\":116"},
        {status_field_output_int, {255, "", 7, 4, nullptr}, "\"255\":2133249396"},
        {status_field_output_int, {256, "", 122, 8, nullptr}, "\"256\":16034271335121274991"},
        {status_field_output_int, {4294967295, "", 7, 2, nullptr}, "\"4294967295\":0"},
        {status_field_output_int, {1, "", 391, 4, nullptr}, "\"1\":0"},
        {status_field_output_int, {1, "", 387, 8, nullptr}, "\"1\":0"},
        {status_field_output_int, {1, "", INT32_MIN, 1, nullptr}, "\"1\":0"},
        {status_field_output_string, {300, "", 390, 0, nullptr}, "\"300\":text"},
        {status_field_output_string, {7, "", 300, 0, nullptr}, "\"7\":longer than the name of any network: 45 bytes"},
        {status_field_output_string, {300, "", 394, 0, nullptr}, "\"300\":"},
        {status_field_output_string, {300, "", INT32_MIN, 0, nullptr}, "\"300\":"},
        {status_field_output_battery_level, {1, "", 0, 0, nullptr}, "\"1\":0"},
        {status_field_output_analytics_size, {5, "", 0, 0, nullptr}, "\"5\":0"},
        {status_field_output_linux_core_active, {7, "", 0, 0, nullptr}, "\"7\":255"},
        {status_field_output_camera_control_status, {7, "", 0, 0, nullptr}, "\"7\":4294967168"},
        {status_field_output_next_poll, {60, "", 0, 0, nullptr}, "\"60\":500"},
        {status_field_output_exposure_select_x, {66, "", 0, 0, nullptr}, "\"66\":30"},
    };
    g_logLevel = ZV_LOG_WARN;
    for (const Case &c : cases) {
        std::stringstream stream;
        c.output(status.get(), &c.field, stream);
        EXPECT_EQ(c.expected, stream.str());
    }
    EXPECT_THAT(log_messages(), ElementsAre("Unknown field size:2 was given", "Invalid field offset:391 was given",
                                            "Invalid field offset:387 was given",
                                            "Invalid field offset:-2147483648 was given", "invalid field id, 1\n"));
    EXPECT_THAT(log_lines().back(), testing::StartsWith("WARN "));

    reset();
    std::stringstream stream;
    status_field_output_int(nullptr, &cases[0].field, stream);
    status_field_output_int(status.get(), nullptr, stream);
    EXPECT_EQ("", stream.str());
    EXPECT_THAT(log_messages(), ElementsAre("status is NULL, unable to output status values",
                                            "status_field is NULL, unable to output status values"));
}

// Every function of a fixed status gives what the document holds under that id.
TEST_F(Status, OutputFunctionsAgreeWithTheDocument)
{
    const std::pair<uint32_t, status_output_t *> functions[] = {
        {2, status_field_output_battery_level},
        {4, status_field_output_battery_level},
        {29, status_field_output_wlan_ssid},
        {30, status_field_output_ap_ssid},
        {56, status_field_output_rssi_barsV2},
        {60, status_field_output_next_poll},
        {61, status_field_output_analytics_ready},
        {65, status_field_output_exposure_select_type},
        {66, status_field_output_exposure_select_x},
        {67, status_field_output_exposure_select_y},
        {70, status_field_output_internal_battery_percentage},
        {75, status_field_output_digital_zoom},
        {89, status_field_output_current_mode},
        {90, status_field_output_vellix_default},
        {91, status_field_output_logs_ready},
        {93, status_field_output_active_video_presets},
        {94, status_field_output_active_photo_presets},
        {95, status_field_output_active_timelapse_presets},
        {96, status_field_output_active_presets_group},
        {97, status_field_output_active_preset},
        {98, status_field_output_preset_modified},
        {101, status_field_output_capture_delay},
        {105, status_field_output_camera_lens_type},
        {106, status_field_output_retrocap_active},
        {107, status_field_output_scheduled_preset},
        {108, status_field_output_scheduled_enabled},
        {111, status_field_output_sd_rating_check_error},
        {112, status_field_output_sd_write_speed_error},
        {113, status_field_output_swift_offload},
        {114, status_field_output_camera_control_status},
        {115, status_field_output_usb_connected},
        {117, status_field_output_total_sd_space_kb},
        {118, status_field_output_photo_interval_capture_count},
    };
    csi().values = {{7, number(1)}, {138, number(2)}, {143, number(3)}, {151, number(4)}, {152, number(5)}, {24, "6"}};
    const auto status = record({{251, "\1"}, {297, {"wlan\0", 5}}, {330, {"ap\0", 3}}});
    for (const auto &[id, output] : functions) {
        const status_field_t field = {id, "", 0, 0, nullptr};
        std::stringstream stream;
        output(&status, &field, stream);
        EXPECT_EQ('"' + std::to_string(id) + "\":" + value(id, status), stream.str());
    }
}

} // namespace
