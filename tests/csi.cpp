// The stand-in of the system information service, as the processes of one machine share it.
#include "csi.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

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

    static int32_t set(const std::string &value, uint8_t key = KEY)
    {
        return csi_set(key, reinterpret_cast<const uint8_t *>(value.data()), static_cast<uint32_t>(value.size()));
    }
    // The key's value, cut to `size`, after its length; "none" without a value.
    static std::string get(uint32_t size = 2000, uint8_t key = KEY)
    {
        std::string buffer(2000, '#');
        uint32_t length = 77;
        if (csi_get(key, size, &length, reinterpret_cast<uint8_t *>(buffer.data())) != 0) {
            return length == 77 && buffer == std::string(2000, '#') ? "none" : "touched";
        }
        buffer.resize(buffer.find('#'));
        return std::to_string(length) + " " + buffer;
    }

    // What get() finds while no file can be opened.
    static std::string get_kept(uint8_t key)
    {
        rlimit files = {};
        getrlimit(RLIMIT_NOFILE, &files);
        const rlimit none = {0, files.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
        std::string value = get(2000, key);
        setrlimit(RLIMIT_NOFILE, &files);
        return value;
    }
    // As an editor or a script does it: the same file, written anew.
    void write_by_hand(const std::string &value, uint8_t key) const
    {
        std::ofstream(folder + "/" + std::to_string(key)) << value;
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

TEST_F(Csi, KeepsAValueWhileItsFileIsUnchanged)
{
    const std::string other = folder + ".other";
    const struct {
        const char *change;
        std::function<void(uint8_t)> make;
        const char *value;
    } rows[] = {
        {"another process sets as many bytes",
         [](uint8_t key) {
             const pid_t writer = fork();
             if (writer == 0) {
                 _exit(set("b", key));
             }
             waitpid(writer, nullptr, 0);
         },
         "1 b"},
        {"as many bytes by hand", [&](uint8_t key) { write_by_hand("c", key); }, "1 c"},
        {"as many bytes by hand, and the old time of writing",
         [&](uint8_t key) {
             const auto file = folder + "/" + std::to_string(key);
             const auto time = std::filesystem::last_write_time(file);
             write_by_hand("d", key);
             std::filesystem::last_write_time(file, time);
         },
         "1 d"},
        {"the file is taken away", [&](uint8_t key) { std::filesystem::remove(folder + "/" + std::to_string(key)); },
         "none"},
        {"another folder under the name",
         [&](uint8_t key) {
             std::filesystem::rename(folder, other);
             std::filesystem::create_directory(folder);
             write_by_hand("e", key);
         },
         "1 e"},
        {"another folder by name", [&](uint8_t) { setenv("ZVCSI_DIR", other.c_str(), 1); }, "1 a"},
        {"the first folder again", [&](uint8_t) { setenv("ZVCSI_DIR", folder.c_str(), 1); }, "none"},
    };
    constexpr uint8_t keys = std::size(rows);
    for (uint8_t key = 0; key < keys; ++key) {
        set("a", key);
    }
    usleep(150000); // longer than a file has to rest before its value is kept
    std::vector<std::thread> readers(4);
    for (std::thread &reader : readers) {
        reader = std::thread([&] {
            for (uint8_t key = 0; key < keys; ++key) {
                EXPECT_EQ("1 a", get(2000, key));
            }
        });
    }
    for (std::thread &reader : readers) {
        reader.join();
    }
    for (uint8_t key = 0; key < keys; ++key) {
        EXPECT_EQ("1 a", get_kept(key));
    }
    for (uint8_t key = 0; key < keys; ++key) {
        rows[key].make(key);
        EXPECT_EQ(rows[key].value, get(2000, key)) << rows[key].change;
    }
    std::filesystem::remove_all(other);
}

// The kernel's clock may not have moved since.
TEST_F(Csi, KeepsNoValueThatWasJustWritten)
{
    bool always_kept = true;
    for (int i = 0; i < 500; ++i) {
        const std::string value(1, static_cast<char>('a' + i % 20));
        i % 3 == 0 ? static_cast<void>(set(value)) : write_by_hand(value, KEY);
        ASSERT_EQ("1 " + value, get()) << i;
        always_kept = always_kept && get_kept(KEY) != "none";
    }
    EXPECT_FALSE(always_kept);
}

} // namespace
