#include "trace.h"

#include <gtest/gtest.h>
#include <sstream>

using namespace zv;

namespace {

TEST(Trace, WritesWhatItReads)
{
    const std::string text = "0.000000 client>daemon 4 00 04 00 14\n"
                             "0.000412 daemon>client 0\n"
                             "61.250007 client>camera 2 AB 0F\n"
                             "4294967295.999999 camera>client 1 FF\n";
    std::istringstream in(text);
    std::ostringstream out;
    TraceReader reader(in);
    for (TraceMessage message; reader.next(message);) {
        write_trace(out, message);
    }
    EXPECT_EQ("", reader.problem());
    EXPECT_EQ(text, out.str());
}

TEST(Trace, TakesRemarksAndLooseSpacing)
{
    std::istringstream in("# seed 7\n\n  # indented\r\n 1.000002   camera>client 3  aB\tcd0E \r\n");
    TraceReader reader(in);
    TraceMessage message;
    ASSERT_TRUE(reader.next(message)) << reader.problem();
    EXPECT_EQ(1000002u, message.microseconds);
    EXPECT_EQ(TraceDirection::CAMERA_TO_CLIENT, message.direction);
    EXPECT_EQ((std::vector<uint8_t>{0xAB, 0xCD, 0x0E}), message.bytes);
    EXPECT_FALSE(reader.next(message));
    EXPECT_EQ("", reader.problem());
}

TEST(Trace, NamesTheFirstLineThatIsNoMessage)
{
    const std::pair<const char *, const char *> cases[] = {
        {"1.00002 client>daemon 0", "no time of the form SECONDS.MICROSECONDS"},
        {"-1.000002 client>daemon 0", "no time of the form SECONDS.MICROSECONDS"},
        {"1.000002", "unknown direction"},
        {"1.000002 client>relay 0", "unknown direction"},
        {"1.000002 client>daemon 65536", "no length of 0 to 65535"},
        {"1.000002 client>daemon", "no length of 0 to 65535"},
        {"1.000002 client>daemon 2 0A B", "a byte is not two hexadecimal digits"},
        {"1.000002 client>daemon 1 0G", "a byte is not two hexadecimal digits"},
        {"1.000002 client>daemon 2 0A", "the length is not the number of bytes"},
    };
    for (const auto &[line, problem] : cases) {
        std::istringstream in(std::string("# first\n") + line + "\n1.000003 client>daemon 0\n");
        TraceReader reader(in);
        TraceMessage message;
        EXPECT_FALSE(reader.next(message)) << line;
        EXPECT_EQ(std::string("line 2: ") + problem, reader.problem());
        EXPECT_FALSE(reader.next(message));
    }
}

} // namespace
