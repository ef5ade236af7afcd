#include "zvTlv.h"

#include "camera_double.h"
#include "interpose.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <unistd.h>

using namespace test;
using testing::ElementsAre;

namespace {

const Element CMD = {TLV_CMD, text("YY")};
const Element ARG = {TLV_CMDARG, {0xA1, 0xA2, 0xA3}};
const Element SRC = {TLV_SRC, text("/to_web")};
const Element DST = {TLV_DST, text("/to_camera")};
const Element RSP = {TLV_RSPARG, {0xB1}};
const Element END = {TLV_END, {}};

// A message in a buffer of its exact size, so that the address sanitizer sees a read past it.
class Exact {
  public:
    explicit Exact(const Bytes &message, size_t size = 0)
        : m_bytes(std::make_unique<uint8_t[]>(std::max(message.size(), size)))
    {
        memcpy(m_bytes.get(), message.data(), message.size());
    }
    uint8_t *get() { return m_bytes.get(); }
    Bytes message() { return {get(), get() + sntlv_msg_len(get())}; }

  private:
    std::unique_ptr<uint8_t[]> m_bytes;
};

TEST(Tlv, BuildsAMessageByteForByte)
{
    zvIoBuf_t iobuf = {ZVMSG_MAX, 0, {}};
    memset(iobuf.buf, 0xFF, sizeof iobuf.buf);
    const uint8_t argument[] = {0x00, 0x01, 0x09, 0x00, 0x00};
    EXPECT_EQ(9, zvmsg_build(&iobuf, "YYZ", argument, sizeof argument, 4));
    EXPECT_EQ(19, iobuf.len);
    EXPECT_EQ(5, sntlv_add_dat(iobuf.buf, iobuf.size, TLV_ASOURCE, 1, 0x81));
    EXPECT_EQ(11, sntlv_add_bin(iobuf.buf, iobuf.size, TLV_SRC, 7, SRC.value.data()));
    EXPECT_EQ(14, sntlv_add_bin(iobuf.buf, iobuf.size, TLV_DST, 10, DST.value.data()));
    EXPECT_EQ(4, sntlv_add_dat(iobuf.buf, iobuf.size, TLV_END, 0, 0));
    EXPECT_EQ((Bytes{0x00, 0x35, 0x00, 0x04, 0x00, 0x00, 0x02, 0x41, 0x59, 0x59, 0x00, 0x00, 0x05, 0x42,
                     0x00, 0x01, 0x09, 0x00, 0x00, 0x00, 0x00, 0x01, 0x57, 0x81, 0x00, 0x00, 0x07, 0x44,
                     0x2F, 0x74, 0x6F, 0x5F, 0x77, 0x65, 0x62, 0x00, 0x00, 0x0A, 0x43, 0x2F, 0x74, 0x6F,
                     0x5F, 0x63, 0x61, 0x6D, 0x65, 0x72, 0x61, 0x00, 0x00, 0x00, 0xEE, 0xFF}),
              Bytes(iobuf.buf, iobuf.buf + 54));
    EXPECT_EQ(53, sntlv_msg_len(iobuf.buf));
    EXPECT_EQ(0, tlv_validate(iobuf.buf));

    EXPECT_EQ(4, sntlv_msg_init(iobuf.buf, 0, 0xAB));
    EXPECT_EQ((Bytes{0, 4, 0, 0xAB}), Bytes(iobuf.buf, iobuf.buf + 4));
    for (int tag = 0; tag < 256; ++tag) {
        EXPECT_EQ(nullptr, tlv_find(iobuf.buf, static_cast<uint8_t>(tag)));
    }
    zvmsg_build(&iobuf, "Q", nullptr, 0, 0x104); // a code of one character is filled up
    EXPECT_EQ((Bytes{0, 14, 0, 4, 0, 0, 2, 0x41, 'Q', 0, 0, 0, 0, 0x42}), Bytes(iobuf.buf, iobuf.buf + iobuf.len));
}

TEST(Tlv, AddsAnElementOnlyWhereItFits)
{
    const Bytes value = {1, 2, 3};
    for (const uint32_t size : {0u, 4u, 10u, 11u, 12u}) {
        Exact message({0, 4, 0, 9}, std::max(size, 4u));
        const bool fits = size >= 11;
        EXPECT_EQ(fits ? 7 : 0, sntlv_add_bin(message.get(), size, 0x70, 3, value.data())) << size;
        EXPECT_EQ(fits ? (Bytes{0, 11, 0, 9, 0, 0, 3, 0x70, 1, 2, 3}) : (Bytes{0, 4, 0, 9}), message.message());
    }
    Exact message({0, 4, 0, 9}, 40000);
    EXPECT_EQ(0, sntlv_add_bin(message.get(), 40000, 0x70, UINT32_MAX, value.data())); // the sum goes round
    EXPECT_EQ(0, sntlv_add_bin(message.get(), 40000, 0x70, 32767 - 7, Bytes(32767).data()));
    EXPECT_EQ(32767 - 4, sntlv_add_bin(message.get(), 40000, 0x70, 32767 - 8, Bytes(32767).data()));
    EXPECT_EQ(0, sntlv_add_dat(message.get(), 40000, 0x70, 5, 1));
    EXPECT_EQ(32767, sntlv_msg_len(message.get()));

    Exact number({0, 4, 0, 9}, 20);
    EXPECT_EQ(8, sntlv_add_dat(number.get(), 20, 0x70, 4, 0x0D0C0B0A));
    uint32_t stored = 0;
    EXPECT_EQ(4, sntlv_find(reinterpret_cast<uint8_t *>(&stored), 5, 0x70, number.get()));
    EXPECT_EQ(0x0D0C0B0Au, stored) << "in memory order";
}

TEST(Tlv, FindsTheFirstElement)
{
    Exact message(tlv_message(4, {CMD, {0x70, {1, 2, 3}}, {0x70, {4}}, {0x71, {}}, END}));
    EXPECT_EQ(message.get() + 10, tlv_find(message.get(), 0x70));
    EXPECT_EQ(message.get() + 26, tlv_find(message.get(), TLV_END));
    EXPECT_EQ(nullptr, tlv_find(message.get(), TLV_SRC));
    uint8_t dest[4] = {9, 9, 9, 9};
    EXPECT_EQ(0, sntlv_find(dest, 3, 0x70, message.get()));
    EXPECT_EQ(0, sntlv_find(dest, 4, TLV_SRC, message.get()));
    EXPECT_EQ(0, sntlv_find(dest, 4, 0x71, message.get()));
    EXPECT_EQ(9, dest[0]);
    EXPECT_EQ(3, sntlv_find(dest, 4, 0x70, message.get()));
    EXPECT_EQ((Bytes{1, 2, 3, 9}), Bytes(dest, dest + 4));

    Exact cut({0, 9, 0, 4, 0, 0, 2, 0x70, 1}); // found, but its value is not all there
    EXPECT_EQ(cut.get() + 4, tlv_find(cut.get(), 0x70));
    EXPECT_EQ(0, sntlv_find(dest, 4, 0x70, cut.get()));
}

TEST(Tlv, BlanksAndTakesOffElements)
{
    Exact message(tlv_message(4, {CMD, ARG, SRC, DST, END}));
    const Bytes before = message.message();
    sntlv_void(message.get(), TLV_CMDARG);
    EXPECT_EQ(tlv_message(4, {CMD, {TLV_VOID, {0, 0, 0}}, SRC, DST, END}), message.message());
    EXPECT_EQ(-4, sntlv_remove(message.get(), 0, TLV_END));
    EXPECT_EQ(static_cast<int32_t>(before.size()) - 4, sntlv_msg_len(message.get()));
    EXPECT_EQ(4, sntlv_add_dat(message.get(), static_cast<uint32_t>(before.size()), TLV_END, 0, 0));
    EXPECT_EQ(0xEE, message.message().back());
}

TEST(Tlv, HandsOutTheResponse)
{
    uint8_t mark = 0;
    uint8_t *payload = &mark;
    uint16_t size = 77;
    const auto respond = [&](const Bytes &message) {
        zvIoBuf_t iobuf = {ZVMSG_MAX, static_cast<int32_t>(message.size()), {}};
        memcpy(iobuf.buf, message.data(), message.size());
        payload = &mark;
        size = 77;
        zvmsg_response(&iobuf, &payload, &size);
        return payload - iobuf.buf;
    };
    EXPECT_EQ(14, respond(tlv_message(5, {CMD, {TLV_RSPARG, {1, 2}}, END})));
    EXPECT_EQ(2, size);
    EXPECT_EQ(14, respond(tlv_message(5, {CMD, {TLV_RSPARG, {}}, END})));
    EXPECT_EQ(0, size);
    for (const Bytes &message :
         {tlv_message(5, {CMD, END}), Bytes{0x7F, 0xFF, 0, 5}, Bytes{0, 8, 0, 5, 0, 1, 0, 0x45}}) {
        respond(message);
        EXPECT_EQ(&mark, payload);
        EXPECT_EQ(77, size);
    }
}

TEST(Tlv, WritesNumbersAndBytesForText)
{
    char text[5] = "....";
    EXPECT_EQ(3, snLoclItoI(text, 4, 3, 0x61626364));
    EXPECT_STREQ("bcd.", text);
    EXPECT_EQ(4, snLoclItoI(text, 4, 4, 0x61626364));
    EXPECT_STREQ("abcd", text);
    for (const auto &[size, count] : {std::pair(4u, 0u), {4u, 5u}, {2u, 3u}}) {
        EXPECT_EQ(0, snLoclItoI(text, size, count, 0));
    }
    uint8_t dest[3] = {};
    const uint8_t source[] = {7, 8, 9};
    EXPECT_EQ(0, snLoclbin(dest, 3, 0, source));
    EXPECT_EQ(0, snLoclbin(dest, 2, 3, source));
    EXPECT_EQ(0, dest[0]);
    EXPECT_EQ(3, snLoclbin(dest, 3, 3, source));
    EXPECT_EQ(9, dest[2]);
}

TEST(Tlv, ValidatorNamesTheFirstFinding)
{
    const Bytes good = tlv_message(4, {CMD, ARG, SRC, DST, END});
    Bytes overrun = good;
    overrun[12] = 0xFF; // of 3 in TLV_CMDARG
    Bytes cut = good;
    cut.resize(44); // inside the head of TLV_END
    cut[1] = 44;
    Bytes unended = tlv_message(4, {CMD, ARG, SRC, END});
    unended[10] = 'Z'; // the byte that ends the command's text where a message is well made
    const Bytes largest = tlv_message(4, {CMD, {TLV_CMDARG, Bytes(1457)}, SRC, DST, END});
    ASSERT_EQ(1500u, largest.size());
    struct Case {
        Bytes message;
        int32_t result;
        const char *log;
    };
    const Case cases[] = {
        {good, 0, nullptr},
        {largest, 0, nullptr},
        {tlv_message(0xEE, {CMD, ARG, SRC, DST, END}), 0, nullptr},
        {tlv_message(0xEF, {CMD, ARG, SRC, DST, RSP, END}), 0, nullptr},
        {{0, 17}, -1, "TLV_ERROR: MSG len is too short (17 < 18)\n"},
        {{0xFF, 0xFF}, -1, "TLV_ERROR: MSG len is too short (-1 < 18)\n"},
        {{0x05, 0xDD}, -1, "TLV_ERROR: MSG len is too long (1501 > 1500)\n"},
        {overrun, -1, "TLV_ERROR: MSG length (265) does not match internal length (420.\n"},
        {cut, -1, "TLV_ERROR: MSG length (42) does not match internal length (400.\n"},
        {tlv_message(4, {CMD, ARG, SRC, DST}), -1, "TLV_ERROR: MSG is missing ending TLV: 0xEE\n"},
        {tlv_message(4, {ARG, SRC, DST, END}), -3, "TLV_ERROR: MSG needs a CMD\n"},
        {tlv_message(4, {CMD, ARG, SRC, END}), -3, "TLV_ERROR: :YY MSG needs a DST\n"},
        {unended, -3, "TLV_ERROR: :YY MSG needs a DST\n"},
        {tlv_message(4, {CMD, ARG, DST, END}), -3, "TLV_ERROR: :YY MSG needs a SRC\n"},
        {tlv_message(4, {CMD, ARG, SRC, DST, END, END}), -1, "TLV_ERROR: :YY MSG has too many ending TLV: 0xEE\n"},
        {tlv_message(4, {CMD, ARG, SRC, DST, {0x70, {0xEE}}}), -1,
         "TLV_ERROR: :YY MSG has too many ending TLV: 0xEE\n"},
        {tlv_message(0xF0, {CMD, ARG, SRC, DST, END}), -2, "TLV_ERROR: :YY MSG needs a known CATagory. CAT=0xf0\n"},
        {tlv_message(5, {CMD, SRC, DST, RSP, END}), -3, "TLV_ERROR: MSG :YY RSP needs a CMDARG\n"},
        {tlv_message(5, {CMD, ARG, SRC, DST, END}), 0, "TLV_WARNING: MSG :YY RSP needs a RSPARG fr_web /to_camera\n"},
        {tlv_message(5, {CMD, ARG, {TLV_SRC, text("/a")}, DST, END}), 0,
         "TLV_WARNING: MSG :YY RSP needs a RSPARG fr /to_camera\n"},
        {tlv_message(4, {CMD, SRC, DST, END}), -3, "TLV_ERROR: MSG :YY CMD needs a CMDARG\n"},
    };
    for (const Case &c : cases) {
        reset();
        Exact message(c.message);
        EXPECT_EQ(c.result, tlv_validate(message.get())) << (c.log != nullptr ? c.log : "valid");
        EXPECT_EQ(c.log != nullptr ? std::vector<std::string>{c.log} : std::vector<std::string>{}, log_messages());
    }
}

// Every byte in turn takes values that lie: nothing is read past the length field's bytes.
TEST(Tlv, ReadersStayInsideAMalformedMessage)
{
    reset();
    const Bytes good = tlv_message(5, {CMD, ARG, RSP, SRC, DST, END});
    for (size_t place = 0; place < good.size(); ++place) {
        for (const int lie : {0, 1, 3, 4, 0x2A, 0x43, 0x44, 0x7F, 0x80, 0xEE, 0xFF}) {
            Bytes bytes = good;
            bytes[place] = static_cast<uint8_t>(lie);
            Exact message(bytes);
            if (sntlv_msg_len(message.get()) > static_cast<int32_t>(good.size())) {
                continue; // the caller's part: the buffer holds what the length field says
            }
            tlv_validate(message.get());
            for (const uint8_t tag : {TLV_CMD, TLV_SRC, TLV_DST, TLV_RSPARG, TLV_END}) {
                uint8_t dest[16];
                EXPECT_LE(sntlv_find(dest, sizeof dest, tag, message.get()), 15);
            }
        }
    }
}

TEST(TlvDeathTest, OwnFaultsEndTheProcess)
{
    static uint8_t message[64];
    const std::pair<void (*)(), const char *> cases[] = {
        {[] { sntlv_add_bin(message, 64, TLV_SRC, 0, nullptr); }, ":(atype != TLV_SRC) || (alen > 0)\n"},
        {[] { sntlv_add_bin(message, 64, TLV_DST, 0, nullptr); }, ":(atype != TLV_DST) || (alen > 0)\n"},
        {[] { sntlv_void(message, TLV_CMD); }, ":tlv != NULL\n"},
        {[] { sntlv_remove(message, 64, TLV_END); }, ":tlvend != NULL\n"},
    };
    static const char *expected;
    for (const auto &[fault, text] : cases) {
        expected = text;
        EXPECT_EXIT(
            {
                sntlv_msg_init(message, 64, 4);
                g_logLevel = ZV_LOG_INFO;
                signal(SIGABRT, [](int) { _exit(log_lines().back().find(expected) != std::string::npos ? 7 : 1); });
                fault();
            },
            testing::ExitedWithCode(7), "")
            << text;
    }
    sntlv_msg_init(message, 64, 4);
    EXPECT_EQ(0, sntlv_add_bin(message, 7, TLV_SRC, 0, nullptr)) << "no room comes first";
}

} // namespace
