#include "zvc_state.h"

#include "csi_double.h"
#include "interpose.h"
#include "zvcontrol_info.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

using namespace test;
using testing::ElementsAre;

namespace {

// What a process has read once it keeps; so each getter appears in one test, which takes it through its life.
using Read = std::pair<int32_t, std::string>;

class State : public testing::Test {
  protected:
    void SetUp() override
    {
        reset();
        csi() = {};
    }

    // A getter's result and text, "#" when it wrote nothing. Fails when it wrote past `size`.
    template <class Getter>
    static Read read(Getter getter, int32_t size)
    {
        std::string buffer(2000, '#');
        const int32_t result = getter(buffer.data(), size);
        const size_t written = buffer.find_last_not_of('#') + 1;
        EXPECT_LE(written, static_cast<size_t>(std::max(size, 0)));
        return {result, written == 0 ? "#" : buffer.c_str()};
    }
};

std::string terminated(const std::string &text)
{
    return text + '\0';
}

TEST_F(State, KeepsATextOnceItIsRead)
{
    struct Case {
        int32_t (*getter)(char *, int32_t);
        uint8_t key;
    };
    const Case cases[] = {{zvc_state_get_serial_number, 0},
                          {zvc_state_get_board_type, 1},
                          {zvc_state_get_firmware_version, 21},
                          {zvc_state_get_ap_mac, 90},
                          {zvc_state_get_model_name, 19}};
    csi().values[19] = "";
    EXPECT_EQ(Read(-1, "#"), read(zvc_state_get_model_name, 64));
    csi() = {};
    for (const Case &c : cases) {
        SCOPED_TRACE(int{c.key});
        EXPECT_EQ(Read(-3, "#"), read(c.getter, 64));
        EXPECT_EQ(Read(-3, "#"), read(c.getter, 0));
        EXPECT_EQ(Read(-3, "#"), read(c.getter, -1));
        EXPECT_EQ(-3, c.getter(nullptr, 64));
        EXPECT_EQ("null buf\n", log_messages().back());
        csi().values[c.key] = terminated(std::string(64, 'a') + "bcdefg");
        EXPECT_EQ(Read(0, std::string(64, 'a') + "bcd"), read(c.getter, 68)); // cut, and kept all the same
        csi() = {};
        EXPECT_EQ(Read(0, std::string(64, 'a')), read(c.getter, 80));
        EXPECT_EQ(Read(0, "aa"), read(c.getter, 3));
        EXPECT_EQ(Read(0, ""), read(c.getter, 1));
        EXPECT_EQ(-3, c.getter(nullptr, 64));
        EXPECT_TRUE(csi().gets.empty());
    }
}

TEST_F(State, EndsATextInsideTheBuffer)
{
    struct Case {
        size_t length;
        int32_t size;
        size_t text;
    };
    const Case cases[] = {{0, 33, 0}, {1, 33, 0}, {5, 33, 4}, {40, 33, 32}, {1399, 2000, 1398}, {1400, 2000, 1398}};
    for (const Case &c : cases) {
        csi().values[14] = std::string(c.length, 's');
        EXPECT_EQ(Read(0, std::string(c.text, 's')), read(zvc_state_get_ap_ssid, c.size)) << c.length;
    }
    EXPECT_EQ(1400U, csi().gets.back().size);
    EXPECT_EQ(Read(-3, "#"), read(zvc_state_get_ap_ssid, 0));
}

TEST_F(State, FindsTheModelNumberInEitherPlace)
{
    namespace fs = std::filesystem;
    const char *configuration = "/tmp/fuse_b/conf.json";
    const auto configure = [&](const char *value) {
        fs::create_directories("/tmp/fuse_b");
        std::ofstream(configuration) << "{\n  \"OTHER\": \"0x11\",\n  \"CSI_MODEL_NUMBER\": \"" << value << "\",\n}\n";
    };
    fs::remove(configuration);
    g_logLevel = ZV_LOG_WARN;
    csi().values[20] = "";
    for (int i = 0; i < 2; ++i) {
        reset();
        g_logLevel = ZV_LOG_WARN;
        EXPECT_EQ(0, zvc_state_get_model_number());
        EXPECT_THAT(log_messages(), ElementsAre("csi_get invalid len, 0\n", "csi model_number lookup failed\n",
                                                "loaded model_number from config: 0\n"));
    }
    csi() = {};
    for (const char *unusable : {"58", "0xzz", "0x-1", "0x"}) {
        configure(unusable);
        EXPECT_EQ(0, zvc_state_get_model_number()) << unusable;
    }
    EXPECT_THAT(log_messages(), testing::Contains("csi_get csi err, -1\n"));
    rlimit limit = {};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit no_pipe = {0, limit.rlim_max};
    setrlimit(RLIMIT_NOFILE, &no_pipe);
    EXPECT_EQ(0, zvc_state_get_model_number());
    setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ("failed to read model_number from config, cannot determine model_number\n", log_messages().back());
    // The shell command would wait for whoever writes into it.
    fs::remove(configuration);
    ASSERT_EQ(0, mkfifo(configuration, 0600));
    EXPECT_EQ(0, zvc_state_get_model_number());
    EXPECT_EQ("loaded model_number from config: 0\n", log_messages().back());
    fs::remove(configuration);
    configure("0x3a7");
    EXPECT_EQ(58, zvc_state_get_model_number());
    csi().gets.clear();
    configure("0x3e");
    EXPECT_EQ(58, zvc_state_get_model_number());
    EXPECT_TRUE(csi().gets.empty());
    fs::remove(configuration);
}

TEST_F(State, ReadsNumbers)
{
    uint32_t features = 7;
    csi().get_results[89] = -5;
    EXPECT_EQ(-5, zvc_state_get_common_camera_features(&features));
    EXPECT_EQ(0U, features);
    csi() = {};
    csi().values[89] = "\x01\x02";
    EXPECT_EQ(0, zvc_state_get_common_camera_features(&features));
    EXPECT_EQ(0x0201U, features);
    csi().values[89] = "\x01\x02\x03\x84";
    EXPECT_EQ(0, zvc_state_get_common_camera_features(&features));
    EXPECT_EQ(0x84030201U, features);
    csi() = {};
    features = 0;
    EXPECT_EQ(0, zvc_state_get_common_camera_features(&features));
    EXPECT_EQ(0x84030201U, features);

    uint32_t required = 7;
    EXPECT_EQ(-1, zvc_state_get_update_required(&required));
    EXPECT_EQ(7U, required);
    EXPECT_THAT(log_messages(), ElementsAre("Error getting CSI_FW_FORCE_UPDATE", "csi_get invalid len, 0\n"));
    csi().values[136] = "\x05";
    EXPECT_EQ(0, zvc_state_get_update_required(&required));
    csi() = {};
    EXPECT_EQ(0, zvc_state_get_update_required(&required));
    EXPECT_EQ(5U, required);

    uint32_t ready = 7;
    EXPECT_EQ(-3, zvc_state_get_logs_ready_status(&ready));
    csi().values[24] = "";
    EXPECT_EQ(-1, zvc_state_get_logs_ready_status(&ready));
    EXPECT_EQ(7U, ready);
    for (const char *state : {"\xFF\x01", "\x02"}) {
        csi().values[24] = state;
        EXPECT_EQ(0, zvc_state_get_logs_ready_status(&ready));
        EXPECT_EQ(static_cast<uint8_t>(state[0]), ready);
    }
    bool has_default = true;
    EXPECT_EQ(0, zvc_state_get_ap_has_default_credentials(&has_default));
    EXPECT_FALSE(has_default);
    for (auto getter :
         {zvc_state_get_common_camera_features, zvc_state_get_update_required, zvc_state_get_logs_ready_status}) {
        EXPECT_EQ(-3, getter(nullptr));
    }
    EXPECT_EQ(-3, zvc_state_get_ap_has_default_credentials(nullptr));
}

// In processes of their own, where nothing is kept yet.
using StateDeathTest = State;

TEST_F(StateDeathTest, InformationHoldsTextsAlone)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto run = [] {
        const auto read_info = [](int32_t result) {
            std::string info(CAMERA_INFO_SIZE, '#');
            EXPECT_EQ(result, zvcontrol_get_camera_info(reinterpret_cast<uint8_t *>(info.data())));
            return info;
        };
        const std::string text("text\0and more\0", 14);
        csi().values = {{0, text},    {1, text},  {14, text},   {19, text},
                        {20, "\x3a"}, {21, text}, {89, "1234"}, {90, text}};
        csi().get_results[21] = -5;
        std::string expected(CAMERA_INFO_SIZE, '\0');
        const auto put = [&](size_t offset, const char *bytes) { expected.replace(offset, strlen(bytes), bytes); };
        put(CAMERA_INFO_MODEL_NUMBER, "\x3a");
        put(CAMERA_INFO_MODEL_NAME, "text");
        EXPECT_EQ(expected, read_info(-3)) << "what the service wrote and took back";

        csi().get_results.clear();
        for (const size_t offset : {CAMERA_INFO_FIRMWARE_VERSION, CAMERA_INFO_SERIAL_NUMBER, CAMERA_INFO_BOARD_TYPE,
                                    CAMERA_INFO_AP_MAC, CAMERA_INFO_AP_SSID}) {
            put(offset, "text");
        }
        csi().get_results[89] = -7;
        EXPECT_EQ(expected, read_info(-7));
        csi().get_results.clear();
        put(CAMERA_INFO_COMMON_CAMERA_FEATURES, "1234");
        put(CAMERA_INFO_REQUIRED_NETWORKS, "[]");
        put(CAMERA_INFO_VALID, "\1");
        EXPECT_EQ(expected, read_info(0));
        EXPECT_EQ(expected, read_info(0));
        std::exit(HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

// A race shows under the thread sanitizer.
TEST_F(StateDeathTest, SeveralThreadsMayBeTheFirst)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto run = [] {
        csi().values = {{0, terminated("serial")}, {19, terminated("name")}, {20, "\x3a"}, {89, "1234"}, {136, "5678"}};
        const auto work = [] {
            uint32_t number = 0;
            for (int i = 0; i < 3; ++i) {
                EXPECT_EQ(58, zvc_state_get_model_number());
                EXPECT_EQ(Read(0, "serial"), read(zvc_state_get_serial_number, 64));
                EXPECT_EQ(Read(0, "name"), read(zvc_state_get_model_name, 64));
                EXPECT_EQ(0, zvc_state_get_common_camera_features(&number));
                EXPECT_EQ(0x34333231U, number);
                EXPECT_EQ(0, zvc_state_get_update_required(&number));
                EXPECT_EQ(0x38373635U, number);
            }
        };
        std::thread other(work);
        work();
        other.join();
        std::exit(HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

TEST_F(State, NeedsNoNetworks)
{
    EXPECT_EQ(Read(-3, "#"), read(zvc_state_get_required_networks, 0));
    EXPECT_EQ(Read(0, "["), read(zvc_state_get_required_networks, 2));
    EXPECT_EQ(Read(0, "[]"), read(zvc_state_get_required_networks, 64));
}

} // namespace
