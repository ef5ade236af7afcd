#include "zvHex.h"

#include "interpose.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <numeric>
#include <vector>

using namespace test;
using testing::ElementsAre;

namespace {

using Bytes = std::vector<uint8_t>;

class Hex : public testing::Test {
  protected:
    void SetUp() override
    {
        reset();
        g_logLevel = ZV_LOG_INFO;
        std::iota(std::begin(bytes), std::end(bytes), uint8_t{0x3A});
    }
    void TearDown() override { g_debug_level = 0x285420; }

    std::string address(size_t offset) const
    {
        char text[16];
        snprintf(text, sizeof text, "%08X", static_cast<uint32_t>(reinterpret_cast<uintptr_t>(bytes + offset)));
        return text;
    }

    alignas(256) uint8_t bytes[256];
};

std::string dump0(const Bytes &data)
{
    char text[1024];
    const int32_t length = snhexdump0(text, sizeof text, data.data(), static_cast<uint32_t>(data.size()), "");
    EXPECT_EQ(strlen(text), static_cast<size_t>(length));
    return text;
}

TEST_F(Hex, DumpShowsAddressesColumnsAndText)
{
    char text[1024];
    snhexdump(text, sizeof text, bytes + 5, 20, "p ");
    EXPECT_EQ("p " + address(0) +
                  "                  3F 40 41  42 43 44 45  46 47 48 49       ?@ABCDEFGHI\n"
                  "p " +
                  address(16) + "  4A 4B 4C 4D  4E 4F 50 51  52                        JKLMNOPQR       \n",
              text);
    EXPECT_EQ("00000000  1F 20 7E 7F  80 FF 00 61                            . ~....a        \n",
              dump0({0x1F, 0x20, 0x7E, 0x7F, 0x80, 0xFF, 0x00, 0x61}));

    char end[32];
    snprintf(end, sizeof end, "%p\n", static_cast<void *>(bytes + 5));
    EXPECT_EQ(static_cast<int32_t>(strlen(end)), snhexdump(text, sizeof text, bytes + 5, 0, "p "));
    EXPECT_STREQ(end, text);
}

TEST_F(Hex, DumpLeavesOutRepeatedLines)
{
    const std::string zeros = "00 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00  ................\n";
    Bytes data(64);
    EXPECT_EQ("00000000  " + zeros, dump0(data));
    data.insert(data.end(), {'a', 'b'});
    EXPECT_EQ("00000000  " + zeros +
                  "...\n"
                  "00000040  61 62                                               ab              \n",
              dump0(data));
    data.assign(20, 0);
    EXPECT_EQ("00000000  " + zeros + "00000010  00 00 00 00                                         ....            \n",
              dump0(data));

    // A first line with blanks in front is no line that another one repeats.
    memset(bytes, 0, sizeof bytes);
    char text[1024];
    snhexdump(text, sizeof text, bytes + 15, 33, "");
    EXPECT_EQ(address(0) + std::string(50, ' ') + "00  " + std::string(15, ' ') + ".\n" + address(16) + "  " + zeros,
              text);
}

TEST_F(Hex, DumpIsCutAtTheBuffersEnd)
{
    const std::string whole = [this] {
        char text[1024];
        snhexdump(text, sizeof text, bytes, 200, "p ");
        return std::string(text);
    }();
    for (uint32_t size = 1; size <= whole.size() + 1; ++size) {
        const auto text = std::make_unique<char[]>(size);
        ASSERT_EQ(static_cast<int32_t>(size - 1), snhexdump(text.get(), size, bytes, 200, "p "));
        ASSERT_EQ(whole.substr(0, size - 1), text.get());
    }
    EXPECT_EQ(0, snhexdump(nullptr, 0, bytes, 200, "p "));
    char text[3];
    EXPECT_EQ(2, snhexdump(text, sizeof text, bytes, 0, ""));
    EXPECT_STREQ("0x", text);
}

TEST_F(Hex, LineTakesItsPlaceInTheDump)
{
    char line[98];
    uint32_t address = 0xFFF5;
    int32_t index = -5;
    EXPECT_EQ(75, hexline(line, sizeof line, "twelve chars", &address, &index, bytes, 14));
    EXPECT_STREQ("twelve chars0000fff0             3a3b3c 3d3e3f40 41424344       :;<=>?@ABCD", line);
    EXPECT_EQ(11, index);
    EXPECT_EQ(0x10005u, address);
    EXPECT_EQ(9, hexline(line, 10, "ab", &address, &index, bytes, 14));
    EXPECT_STREQ("ab       ", line);
    EXPECT_EQ(27, index);
    EXPECT_EQ(0, hexline(line, -1, "ab", &address, &index, bytes, 14));
    char longer[200];
    address = 0x20;
    hexline(longer, sizeof longer, std::string(120, 'x').c_str(), &address, &index, bytes, 14);
    EXPECT_EQ(std::string(120, 'x') + "00000020  ", std::string(longer, 130));
}

TEST_F(Hex, PrintLeavesOutTheMiddle)
{
    const auto addresses = [](size_t skipped) {
        std::vector<std::string> result;
        for (const std::string &message : log_messages()) {
            if (skipped == 0) {
                result.push_back(message.substr(11, 8));
            } else {
                --skipped;
            }
        }
        return result;
    };
    hexprint(">", 0, bytes, 200);
    EXPECT_EQ("\n", log_messages()[0]);
    EXPECT_EQ(">          000000c0  fafbfcfd feff0001                    ........        \n", log_messages().back());
    EXPECT_THAT(addresses(1),
                ElementsAre("00000000", "00000010", "00000020", "00000030", "000000a0", "000000b0", "000000c0"));
    reset();
    g_logLevel = ZV_LOG_INFO;
    g_debug_level |= 0x200;
    hexprint(">", 5, bytes, 200);
    EXPECT_EQ(14u, log_messages().size());
    EXPECT_EQ(">          00000000             3a3b3c 3d3e3f40 41424344       :;<=>?@ABCD\n", log_messages()[1]);

    reset();
    hexprint(">", 0, bytes, 200);
    EXPECT_TRUE(log_messages().empty()) << "below INFO nothing comes out";
}

TEST_F(Hex, CompactPrintEndsItsGroupsWithTheLastByte)
{
    const std::pair<int32_t, std::vector<std::string>> cases[] = {
        {-1, {"\n"}},
        {0, {"\n"}},
        {3, {"> 3a3b3c\n"}},
        {4, {"> 3a3b3c3d\n"}},
        {6, {">3a3b 3c3d3e3f\n"}},
        {18, {">3a3b 3c3d3e3f 40414243 44454647 4849\n", ">4a4b\n"}},
    };
    for (const auto &[length, lines] : cases) {
        reset();
        g_logLevel = ZV_LOG_INFO;
        hexprint_noaddr(">", 7, bytes, length);
        EXPECT_EQ(lines, log_messages()) << length;
    }
}

TEST_F(Hex, TraceRowsAreWhatTheLogReaderKnows)
{
    for (int row = 0; row < 29; ++row) {
        EXPECT_EQ(12u, strlen(s_dmsgstr[row])) << row;
    }
    const std::tuple<int, const char *, uint32_t> rows[] = {
        {0, "            ", 0},         {12, "<UD         ", 0x800},      {13, "    >ZN     ", 0x10000},
        {18, "         RT>", 0x200000}, {26, "        <XX ", 0x20000000}, {28, "DB<         ", 0x8000000},
    };
    for (const auto &[row, label, mask] : rows) {
        EXPECT_STREQ(label, s_dmsgstr[row]);
        EXPECT_EQ(mask, s_dmsghex[row]);
    }
    EXPECT_EQ(nullptr, s_dmsgstr[29]);
    EXPECT_EQ(0u, s_dmsghex[29]);
}

} // namespace
