#include "decode.h"

#include "camera_double.h"
#include "names.h"

#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>

using namespace zv;
using namespace test;

namespace {

// A message in a buffer of its exact size, so that a read past it is seen.
std::pair<int, std::string> decoded(const Bytes &message, Link link)
{
    const auto exact = std::make_unique<uint8_t[]>(message.size());
    memcpy(exact.get(), message.data(), message.size());
    std::ostringstream out;
    const DecodedMessage result = decode({exact.get(), message.size()}, link);
    text_sink(out).message(result, nullptr);
    return {static_cast<int>(result.faults.size()), out.str()};
}

TEST(Decode, PrintsACameraCommand)
{
    std::ostringstream out;
    EXPECT_EQ(0, decode_hex("0035 0004 00000241 5959 00000542 0001090000 00000157 01 00000744 2f746f5f776562"
                            "0000 0A43 2F746F5F63616D657261 000000EE",
                            text_sink(out)));
    EXPECT_EQ("camera command, 53 bytes, category 4\n"
              "     4 CMD         2  \"YY\" remote API\n"
              "                      59 59\n"
              "    10 CMDARG      5  group 1 APP, action 9 REMOTE_APP_SHUTTER_START, payload size 0\n"
              "                      00 01 09 00 00\n"
              "    19 ASOURCE     1  1\n"
              "                      01\n"
              "    24 SRC         7  \"/to_web\"\n"
              "                      2F 74 6F 5F 77 65 62\n"
              "    35 DST        10  \"/to_camera\"\n"
              "                      2F 74 6F 5F 63 61 6D 65 72 61\n"
              "    49 END         0\n",
              out.str());
}

TEST(Decode, PrintsATraceOfBothLinks)
{
    std::istringstream in("# one command and its answers\n"
                          "0.000001 client>daemon 49 0031001400000441 1E00000000000842 8B000000 03000000 "
                          "0000 0C44 2F746F5F5A56435531323300 000001 57 01 000000EE\n"
                          "0.000412 daemon>client 16 00100015 000004EC AFFFFFFF 000000EE\n"
                          "12.000000 camera>client 2 0002\n"
                          "12.5\n");
    std::ostringstream out;
    EXPECT_EQ(2, decode_trace(in, text_sink(out)));
    EXPECT_EQ("0.000001 client>daemon  daemon command, 49 bytes, category 20\n"
              "     4 CMD         4  30 ZVCONTROL_SET_SETTING_ID\n"
              "                      1E 00 00 00\n"
              "    12 CMDARG      8  setting 139 modes/audio/settings/vellix_option, value 3\n"
              "                      8B 00 00 00 03 00 00 00\n"
              "    24 SRC        12  \"/to_ZVCU123\"\n"
              "                      2F 74 6F 5F 5A 56 43 55 31 32 33 00\n"
              "    40 ASOURCE     1  1\n"
              "                      01\n"
              "    45 END         0\n"
              "0.000412 daemon>client  daemon response, 16 bytes, category 21\n"
              "     4 RSP         4  -81 UNKNOWN\n"
              "                      AF FF FF FF\n"
              "    12 END         0\n"
              "12.000000 camera>client  message, 2 bytes\n"
              "    00 02\n"
              "  ! the message is shorter than its head of 4 bytes\n"
              "  ! line 5: no time of the form SECONDS.MICROSECONDS\n",
              out.str());
}

TEST(Decode, SaysWhatTheCameraAnswered)
{
    const std::pair<Bytes, const char *> cases[] = {
        {{0, 9, 9, 9, 0, 0, 2, 0xAA, 0xBB}, "good, payload size 2"},
        {{0, 9, 9, 9, 0, 0, 1, 0xAA, 0xBB}, "good, payload size 1"},
        {{3, 9, 9, 9, 4, 0, 0}, "refused, acknowledge byte 3"},
        {{0, 9, 9, 9, 0xFE, 0, 0}, "firmware error -2"},
        {{2}, "the camera is switched off"},
    };
    for (const auto &[answer, meaning] : cases) {
        const auto [faults, out] = decoded(tlv_message(5, {{TLV_CMD, text("YY")},
                                                           {TLV_CMDARG, {7}},
                                                           {TLV_RSPARG, answer},
                                                           {TLV_SRC, text("/a")},
                                                           {TLV_DST, text("/b")},
                                                           {TLV_END, {}}}),
                                           Link::CAMERA);
        EXPECT_EQ(0, faults) << out;
        EXPECT_NE(std::string::npos, out.find(meaning)) << out;
    }
}

TEST(Decode, SaysWhatTheDaemonAnswered)
{
    const std::pair<size_t, const char *> cases[] = {{4, "number 0\n"},
                                                     {238, "  settings record\n"},
                                                     {394, "  status record\n"},
                                                     {634, "  status, settings and system settings records\n"},
                                                     {5, "RSPARG      5\n"}};
    for (const auto &[size, meaning] : cases) {
        const auto [faults, out] =
            decoded(tlv_message(21, {{TLV_RSP, Bytes(4)}, {TLV_RSPARG, Bytes(size)}, {TLV_END, {}}}), Link::DAEMON);
        EXPECT_EQ(0, faults) << out;
        EXPECT_NE(std::string::npos, out.find(meaning)) << out;
    }
}

TEST(Decode, SaysWhatIsWrong)
{
    const Element cmd = {TLV_CMD, text("YY")};
    const Element arg = {TLV_CMDARG, {0, 1, 9, 0, 0}};
    const Element src = {TLV_SRC, text("/a")};
    const Element dst = {TLV_DST, text("/b")};
    const Element end = {TLV_END, {}};
    const Element daemon_cmd = {TLV_CMD, {32, 0, 0, 0}};
    const Bytes good = tlv_message(4, {cmd, arg, src, dst, end});
    Bytes lying = good;
    lying[1] = 200;
    Bytes overrun = good;
    overrun[12] = 200;
    Bytes cut = good;
    cut.resize(cut.size() - 2);
    struct Case {
        Link link;
        Bytes message;
        std::vector<std::string> faults;
    };
    const Case cases[] = {
        {Link::CAMERA, lying, {"the length field says 200, and there are 35 bytes"}},
        {Link::CAMERA,
         cut,
         {"the message ends at 33, inside the head of the element at 31", "END is not the last element"}},
        {Link::CAMERA, overrun, {"the element at 10 has length 200, and 21 bytes are left", "there is no SRC"}},
        {Link::CAMERA,
         tlv_message(0xF1, {end}),
         {"category 0xF1 is above 0xEF", "there is no CMD", "there is no RSPARG"}},
        {Link::CAMERA,
         tlv_message(4, {cmd, {TLV_CMDARG, {0, 12, 9, 0, 1}}, src, dst, end, end}),
         {"there is more than one END", "group 12 is unknown", "says payload size 1, and has 0"}},
        {Link::CAMERA,
         tlv_message(4, {cmd, {TLV_CMDARG, {0, 6}}, src, dst, {0x99, {1}}, {TLV_END, {1}}}),
         {"unknown tag 0x99", "END has a value", "has length 2, less than its head of 5"}},
        {Link::CAMERA,
         tlv_message(5, {cmd, arg, {TLV_RSPARG, {0, 0}}, src, dst, end}),
         {"has length 2, less than its head of 7"}},
        {Link::CAMERA,
         tlv_message(5, {cmd, arg, {TLV_RSPARG, {0, 0, 0, 0, 0, 0, 9}}, src, dst, end}),
         {"says payload size 9, and has 0"}},
        {Link::DAEMON, tlv_message(20, {daemon_cmd, end}), {"there is no SRC"}},
        {Link::DAEMON, tlv_message(21, {{TLV_RSP, {0}}, end}), {"RSP has length 1, not 4"}},
        {Link::DAEMON, tlv_message(22, {daemon_cmd, src, end}), {"categories are 20 and 21, not 22"}},
        {Link::DAEMON, Bytes(10001), {"the message is longer than 10000 bytes"}},
    };
    for (const Case &c : cases) {
        const auto [faults, out] = decoded(c.message, c.link);
        EXPECT_GE(faults, static_cast<int>(c.faults.size()));
        for (const std::string &fault : c.faults) {
            EXPECT_NE(std::string::npos, out.find(fault + "\n", out.find("  ! "))) << fault << " in\n" << out;
        }
    }
    std::ostringstream out;
    EXPECT_EQ(1, decode_hex("0035 0", text_sink(out)));
    EXPECT_EQ("  ! behind byte 2 come no two hexadecimal digits\n", out.str());
}

TEST(Decode, NamesWhatHasAName)
{
    const std::pair<uint32_t, const char *> cases[] = {
        {34, "ZVCONTROL_GET_ALL_SETTINGS_STATUS"},
        {35, "ZVCONTROL_SYSTEM_SHUTDOWN"},
        {36, "ZVCONTROL_SYSTEM_SLEEP or ZVCONTROL_SYSTEM_SHUTDOWN"},
        {101, "ZVCONTROL_GET_BUSY_STATUS"},
        {102, "ZVCONTROL_RESYNC_MESSAGE_QUEUE"},
        {105, "ZVCONTROL_SYSTEM_RESET"},
        {106, ""},
        {0xFFFFFFFF, ""},
    };
    for (const auto &[number, name] : cases) {
        EXPECT_EQ(name, daemon_command_name(number)) << number;
    }
    EXPECT_EQ("WIRELESS", group_name(6));
    EXPECT_EQ("", group_name(UINT8_MAX));
    EXPECT_EQ("REMOTE_AUDIO_AUDIO_OPTION_SET", action_name(14, 3));
    EXPECT_EQ("REMOTE_MULTISHOT_BIT_RATE_SET", action_name(4, 68));
    EXPECT_EQ("", action_name(14, 250));
    EXPECT_EQ("", action_name(UINT8_MAX, UINT8_MAX));
    EXPECT_EQ("", setting_name(0));
    EXPECT_EQ("", setting_name(UINT32_MAX));
}

} // namespace
