#include "messages.h"

#include "camera_double.h"
#include "interpose.h"
#include "zvcontrol_if.h"

#include <csignal>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>

using namespace test;

namespace {

// An element that notes when it is deleted.
class Watched : public MsgElement {
  public:
    Watched(uint8_t type, bool is_static, int &deleted) : MsgElement(type, is_static), m_deleted(deleted) {}
    ~Watched() override { ++m_deleted; }

  private:
    int &m_deleted;
};

// Runs what ends the process, and gives the expression that it left in the record.
template <class Fault>
std::string assertion(Fault fault)
{
    EXPECT_EXIT(fault(), testing::KilledBySignal(SIGABRT), "");
    std::ifstream record("/tmp/zvlog.txt");
    std::string last;
    for (std::string line; std::getline(record, line);) {
        last = line;
    }
    return last.substr(last.rfind(':') + 1);
}

TEST(Messages, WritesTheBytes)
{
    const uint8_t command[] = {0x1E, 0x2D, 0x3C};
    MsgElement end(TLV_END, true);
    CommandMsg message;
    message.addElement(TLV_CMD, sizeof command, command);
    message.addElement(&end);
    uint8_t buffer[15]; // of exactly the message's size
    memset(buffer, 0xA5, sizeof buffer);
    MemStream stream(buffer, sizeof buffer);
    stream << message;
    EXPECT_EQ(15, stream.getLength());
    EXPECT_EQ(15, message.getSize());
    EXPECT_EQ((Bytes{0, 0x0F, 0, 0x14, 0, 0, 3, 0x41, 0x1E, 0x2D, 0x3C, 0, 0, 0, 0xEE}),
              Bytes(buffer, buffer + sizeof buffer));

    stream.attach(buffer, sizeof buffer - 1);
    EXPECT_EQ("(m_index + len) <= m_sourceLen", assertion([&] { stream << message; }));
    message.addElement(TLV_VOID, UINT16_MAX, Bytes(UINT16_MAX).data());
    EXPECT_EQ(15 + 3, message.getSize()); // in 16 bits; no stream has room for so much
    Bytes largest(UINT16_MAX);
    stream.attach(largest.data(), UINT16_MAX);
    EXPECT_EQ("(m_index + len) <= m_sourceLen", assertion([&] { stream << message; }));
}

TEST(Messages, ReadsWhatTheSizeFieldCovers)
{
    Bytes bytes = tlv_message(21, {{TLV_RSP, {1, 2, 3, 4}}, {TLV_VOID, {}}, {TLV_RSP, {9}}});
    bytes[2] = bytes[4] = 0xFF; // reserved
    bytes.push_back(0x77);      // after the message
    Msg message(1);
    message.addElement(TLV_DST, 2, bytes.data());
    MemStream stream(bytes.data(), static_cast<uint16_t>(bytes.size()));
    stream >> message;
    EXPECT_FALSE(stream.failed());
    EXPECT_EQ(bytes.size() - 1, stream.getLength());
    EXPECT_EQ(21, message.getCategory());
    EXPECT_EQ(nullptr, message.findElement(TLV_DST));
    EXPECT_EQ(nullptr, message.findElement(TLV_VOID)->getData());
    uint32_t number = 0;
    message.findElement(TLV_RSP)->getDataAs(number);
    EXPECT_EQ(0x04030201U, number);
    uint16_t narrow = 0;
    EXPECT_EQ("getDataLength() == sizeof(data)", assertion([&] { message.findElement(TLV_RSP)->getDataAs(narrow); }));
    EXPECT_EQ("getData() != NULL", assertion([&] { message.findElement(TLV_VOID)->getDataAs(number); }));
    EXPECT_EQ("m_index + len <= m_sourceLen", assertion([&] { stream >> number; }));
}

TEST(Messages, ReportsBytesThatRunShort)
{
    struct Case {
        const char *name;
        Bytes bytes;
        bool failed;
        uint16_t size; // of what the message then holds
    };
    const Case cases[] = {
        {"nothing", {}, true, 4},
        {"half a header", {0, 20, 0}, true, 4},
        {"a size below the header", {0, 3, 0, 21}, false, 4},
        {"a header alone", {0, 4, 0, 21, 1, 2, 3}, false, 4},
        {"no element", {0, 8, 0, 21}, true, 4},
        {"half an element's header", {0, 12, 0, 21, 0, 0, 4}, true, 4},
        {"an element that overruns", {0, 9, 0, 21, 0, 0, 2, 69, 1}, true, 4},
        {"the longest element", {0, 9, 0, 21, 0, 0xFF, 0xFF, 69, 1}, true, 4},
        {"one good element, then none", {0xFF, 0xFF, 0, 21, 0, 0, 1, 69, 1}, true, 4},
        {"one good element, then a cut one", {0, 14, 0, 21, 0, 0, 1, 69, 1, 0, 0, 1, 69}, true, 4},
        {"an element that passes the size field", {0, 5, 0, 21, 0, 0, 1, 69, 1}, false, 9},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Bytes bytes = c.bytes;
        bytes.shrink_to_fit();
        Msg message(21);
        message.addElement(TLV_RSP, 0, nullptr);
        MemStream stream(bytes.data(), static_cast<uint16_t>(bytes.size()));
        stream >> message;
        EXPECT_EQ(c.failed, stream.failed());
        EXPECT_EQ(nullptr, message.findElement(TLV_RSP));
        EXPECT_EQ(c.size, message.getSize());
    }
}

TEST(Messages, LeavesStaticElementsAlone)
{
    int deleted = 0;
    Watched lasting(TLV_CMD, true, deleted);
    {
        Msg message(20);
        message.addElement(&lasting);
        message.addElement(new Watched(TLV_CMD, false, deleted));
        EXPECT_EQ(&lasting, message.findElement(TLV_CMD));
        message.clear();
        EXPECT_EQ(1, deleted);
        EXPECT_EQ(4, message.getSize());
        message.addElement(&lasting);
    }
    EXPECT_EQ(1, deleted);
}

TEST(Messages, ElementsOwnTheirData)
{
    MsgElement element;
    EXPECT_EQ('X', element.getType());
    uint8_t bytes[] = {1, 2, 3};
    element.setData(bytes, 3);
    const uint8_t *array = element.getData();
    bytes[0] = 9;
    EXPECT_EQ(1, array[0]);
    element.setData(bytes, 3);
    EXPECT_EQ(array, element.getData());
    EXPECT_EQ(9, array[0]);
    element.setData(element.getData() + 1, 2); // a part of its own
    EXPECT_EQ(3, element.getData()[1]);
    EXPECT_EQ(6, element.getSize());
    element.setData(nullptr, 2);
    EXPECT_EQ(nullptr, element.getData());
    EXPECT_EQ(4, element.getSize());
}

TEST(Messages, NumbersKeepTheirWidth)
{
    uint8_t buffer[11];
    MemStream stream(buffer, sizeof buffer);
    stream << uint8_t{0x11} << uint16_t{0x2322} << uint32_t{0x37363534} << int32_t{-2};
    EXPECT_EQ((Bytes{0x11, 0x22, 0x23, 0x34, 0x35, 0x36, 0x37, 0xFE, 0xFF, 0xFF, 0xFF}), Bytes(buffer, buffer + 11));
    stream.reset();
    uint8_t narrow = 0;
    uint16_t middle = 0;
    uint32_t wide = 0;
    int32_t negative = 0;
    stream >> narrow >> middle >> wide >> negative;
    EXPECT_TRUE(narrow == 0x11 && middle == 0x2322 && wide == 0x37363534 && negative == -2);
    MsgElement(TLV_RSP, 1, buffer + 1).getDataAs(narrow);
    MsgElement(TLV_RSP, 2, buffer + 2).getDataAs(middle);
    EXPECT_TRUE(narrow == 0x22 && middle == 0x3423);
}

TEST(Messages, DumpsOnlyWhenTold)
{
    uint8_t bytes[16] = {0xAB};
    Msg message(20);
    message.addElement(TLV_RSP, 1, bytes);
    message.addElement(1, 0, nullptr);
    const MemStream stream(bytes, sizeof bytes);
    const auto dump = [&] {
        testing::internal::CaptureStdout();
        message.dump("label");
        stream.dump();
        stream.dumpAll();
        return testing::internal::GetCapturedStdout();
    };
    EXPECT_EQ("", dump());
    enableMessageDebugging(1);
    EXPECT_EQ("-------- label ---------\n"
              "Category: 20   Length:13 \n"
              "Message Element->Category:RSP length:1\n"
              "0xab \n"
              "Message Element->Category:UNKNOWN length:0\n"
              "None\n"
              "\n"
              "0xab 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
              "\n",
              dump());
    const std::pair<uint8_t, const char *> names[] = {{65, "CMD"},  {66, "CMDARG"}, {67, "DST"},
                                                      {68, "SRC"},  {69, "RSPARG"}, {87, "ASOURCE"},
                                                      {88, "VOID"}, {238, "EE"},    {239, "UNKNOWN"}};
    for (const auto &[type, name] : names) {
        testing::internal::CaptureStdout();
        MsgElement(type).dump();
        EXPECT_EQ("Message Element->Category:" + std::string(name) + " length:0\nNone\n",
                  testing::internal::GetCapturedStdout());
    }
    zvcontrol_debug_enable(); // off, whatever its name says
    EXPECT_EQ("", dump());
}

} // namespace
