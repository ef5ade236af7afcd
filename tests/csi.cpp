// The stand-in of the system information service, as the processes of one machine share it.
#include "csi.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr uint8_t KEY = 21;

class Csi : public testing::Test {
  protected:
    void SetUp() override
    {
        std::filesystem::remove_all(folder);
        setenv("ZVCSI_DIR", folder.c_str(), 1);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    static int32_t set(const std::string &value)
    {
        return csi_set(KEY, reinterpret_cast<const uint8_t *>(value.data()), static_cast<uint32_t>(value.size()));
    }
    // The key's value, cut to `size`, after its length; "none" without a value.
    static std::string get(uint32_t size = 2000)
    {
        std::string buffer(2000, '#');
        uint32_t length = 77;
        if (csi_get(KEY, size, &length, reinterpret_cast<uint8_t *>(buffer.data())) != 0) {
            return length == 77 && buffer == std::string(2000, '#') ? "none" : "touched";
        }
        buffer.resize(buffer.find('#'));
        return std::to_string(length) + " " + buffer;
    }

    const std::string folder = std::filesystem::temp_directory_path() / ("csi" + std::to_string(getpid()));
};

TEST_F(Csi, IsEmptyAtFirstAndKeepsWhatItIsTold)
{
    uint32_t number = 5;
    EXPECT_EQ("none", get());
    EXPECT_EQ(-1, ZVCSIListener::GetInstance().GetCSIValue(KEY, number));
    EXPECT_EQ(5u, number);

    EXPECT_EQ(0, set("\x01\x02\x03"));
    EXPECT_EQ("3 \x01\x02\x03", get());
    EXPECT_EQ("3 \x01\x02", get(2));
    EXPECT_EQ("3 ", get(0));
    EXPECT_EQ(0, ZVCSIListener::GetInstance().GetCSIValue(KEY, number));
    EXPECT_EQ(0x030201u, number);
    EXPECT_EQ(-1, ZVCSIListener::GetInstance().GetCSIValue(KEY + 256, number));

    EXPECT_EQ(0, set("")); // a value, if an empty one
    EXPECT_EQ("0 ", get());
}

TEST_F(Csi, RefusesWhatItCannotStore)
{
    EXPECT_EQ(0, set(std::string(1400, 'a')));
    EXPECT_EQ(-1, set(std::string(1401, 'b')));
    EXPECT_EQ(-1, csi_set(KEY, nullptr, 1));
    EXPECT_EQ("1400 " + std::string(1400, 'a'), get());
    setenv("ZVCSI_DIR", (folder + "/21").c_str(), 1); // a file
    EXPECT_EQ(-1, set("b"));
    EXPECT_EQ("none", get());
}

TEST_F(Csi, ReadersOfAnotherProcessSeeWholeValues)
{
    const std::string values[] = {std::string(1400, 'a'), std::string(7, 'b')};
    ASSERT_EQ(0, set(values[0]));
    const pid_t writer = fork();
    if (writer == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (int i = 0; i < 2000; ++i) {
            set(values[i % 2]);
        }
        _exit(0);
    }
    int status = 0;
    while (waitpid(writer, &status, WNOHANG) == 0) {
        const std::string seen = get();
        ASSERT_TRUE(seen == "1400 " + values[0] || seen == "7 " + values[1]) << seen;
    }
    EXPECT_EQ(0, status);
    EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(folder), {})) << "a draft was left behind";
}

} // namespace
