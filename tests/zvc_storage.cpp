#include "zvc_storage.h"

#include "camera_double.h"
#include "csi_double.h"
#include "interpose.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace test;
using testing::ElementsAre;

namespace {

// The model number is asked for once and kept for the life of the process, so that the tests of model 32 run in a
// process of their own.
void set_model(char model)
{
    csi() = {};
    csi().values[20] = std::string(1, model);
}

class Storage : public testing::Test {
  protected:
    void SetUp() override
    {
        reset();
        set_model(58);
    }
};

// The bytes before a path, the path's characters and its terminator.
Bytes path_payload(Bytes lead, const std::string &path)
{
    lead.insert(lead.end(), path.begin(), path.end());
    lead.push_back(0);
    return lead;
}

uint32_t length(const std::string &name)
{
    return static_cast<uint32_t>(name.size());
}

TEST_F(Storage, NamesMediaAsTheFirmwareDoes)
{
    const std::pair<std::string, std::string> cases[] = {
        {"100ABCDE/CLIP0001.MP4", "DCIM\\100ABCDE\\CLIP0001.MP4"},
        {"/100ABCDE/CLIP0001.MP4", "DCIM\\100ABCDE\\CLIP0001.MP4"},
        {"\\100ABCDE\\CLIP0001.MP4", "DCIM\\100ABCDE\\CLIP0001.MP4"},
        {"//a/b", "DCIM\\\\a\\b"},
        {"", "DCIM\\"},
        {"/", "DCIM\\"},
        {std::string(255, 'x'), "DCIM\\" + std::string(255, 'x')},
    };
    CameraDouble camera;
    for (const auto &[name, path] : cases) {
        SCOPED_TRACE(name);
        camera.expect(9, 14, path_payload({1}, path));
        EXPECT_EQ(0, zvc_storage_delete_file(camera.context(), name.c_str(), length(name)));
        camera.expect(9, 15, path_payload({}, path));
        EXPECT_EQ(0, zvc_storage_delete_group(camera.context(), name.c_str(), length(name)));
        camera.expect(9, 18, path_payload({1, 0, 0, 3, 0xE8}, path));
        EXPECT_EQ(0, zvc_storage_tag_file(camera.context(), name.c_str(), length(name), 1000, 0x101));
    }
    g_logLevel = ZV_LOG_INFO;
    camera.expect(9, 18, path_payload({0, 1, 2, 3, 4}, "DCIM\\a\\b"), refused());
    EXPECT_EQ(-101, zvc_storage_tag_file(camera.context(), "/a/b", 4, 0x01020304, 0));
    EXPECT_THAT(log_messages(), testing::Contains("TAGGING PLAYBACK file[DCIM\\a\\b] offset:16909060, enable:0"));
}

TEST_F(Storage, RefusesNamesWithoutRoom)
{
    CameraDouble camera;
    const std::string fits(255, 'x');
    const std::string lies(256, 'x');
    for (const auto &[name, name_len] : {std::pair{"a", 256U}, {static_cast<const char *>(nullptr), 0U}}) {
        EXPECT_EQ(-3, zvc_storage_delete_file(camera.context(), name, name_len));
        EXPECT_EQ(-3, zvc_storage_delete_group(camera.context(), name, name_len));
        EXPECT_EQ(-3, zvc_storage_tag_file(camera.context(), name, name_len, 0, 1));
    }
    EXPECT_EQ(-3, zvc_storage_delete_file(camera.context(), lies.c_str(), 3));
    EXPECT_EQ(-3, zvc_storage_delete_group(camera.context(), lies.c_str(), 3));
    EXPECT_TRUE(log_lines().empty());
    EXPECT_EQ(-3, zvc_storage_tag_file(camera.context(), lies.c_str(), 3, 0, 1));
    EXPECT_THAT(log_messages(), ElementsAre("Invalid filename specified [" + lies + "]"));
}

TEST_F(Storage, AModelKeepsItsSlashes)
{
    const auto in_its_own_process = [] {
        set_model(32);
        CameraDouble camera;
        camera.expect(9, 14, path_payload({1}, "DCIM\\100ABCDE/CLIP0001.MP4"));
        const int32_t result = zvc_storage_delete_file(camera.context(), "/100ABCDE/CLIP0001.MP4", 22);
        _exit(result == 0 && !testing::Test::HasFailure() ? 0 : 1);
    };
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(in_its_own_process(), testing::ExitedWithCode(0), "");
}

file_list_item_t item(uint8_t flag, const std::string &name)
{
    file_list_item_t result = {};
    result.flag = flag;
    name.copy(result.name, sizeof result.name);
    return result;
}

// An entry of a delete list, written out.
Bytes entry(uint8_t flag, const std::string &path)
{
    Bytes bytes(33);
    bytes[0] = flag;
    std::copy(path.begin(), path.end(), bytes.begin() + 1);
    return bytes;
}

TEST_F(Storage, DeleteListWritesFixedEntries)
{
    const file_list_item_t list[] = {item(7, "100ABCDE/CLIP0001.MP4"), item(0, "100ABCDEFCLIP0001.JPGX"), item(1, "/b"),
                                     item(9, "next")};
    Bytes payload = {3, 0};
    for (const Bytes &bytes : {entry(1, "DCIM\\100ABCDE\\CLIP0001.MP4"), entry(0, "DCIM\\100ABCDE\\CLIP0001.JPGX"),
                               entry(1, std::string("DCIM\\/b\0\0\0\0\0\0\\", 14))}) {
        payload.insert(payload.end(), bytes.begin(), bytes.end());
    }
    CameraDouble camera;
    camera.expect(9, 22, payload);
    g_logLevel = ZV_LOG_DEBUG;
    EXPECT_EQ(0, zvc_storage_delete_list(camera.context(), list, 3));
    EXPECT_THAT(log_messages(),
                ElementsAre("enter zvc_storage_delete_list\n", "arg_size=101 and msg_size=106\n", "err is 0\n"));
    camera.expect(9, 22, {0, 0}, refused());
    EXPECT_EQ(-101, zvc_storage_delete_list(camera.context(), nullptr, 0));
    EXPECT_EQ(-3, zvc_storage_delete_list(camera.context(), nullptr, 1));
}

TEST_F(Storage, DeleteListSendsThirtyAndPromisesAll)
{
    const std::vector<file_list_item_t> list(0x12345, item(1, "100ABCDE/A"));
    CameraDouble camera;
    for (const uint32_t count : {30U, 31U, 0x12345U}) {
        Bytes payload = {static_cast<uint8_t>(count), static_cast<uint8_t>(count >> 8)};
        for (int i = 0; i < 30; ++i) {
            const Bytes bytes = entry(1, "DCIM\\100ABCDE\\A");
            payload.insert(payload.end(), bytes.begin(), bytes.end());
        }
        camera.expect(9, 22, payload);
        EXPECT_EQ(0, zvc_storage_delete_list(camera.context(), list.data(), count));
    }
}

TEST_F(Storage, LoopingNeedsItsTime)
{
    CameraDouble camera;
    const uint32_t least[] = {1200, 360, 1500, 3900, 7500};
    const auto seconds = [](uint32_t value) {
        return good(
            {static_cast<uint8_t>(value >> 24), 0, static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)});
    };
    for (uint8_t looping = 0; looping < 5; ++looping) {
        camera.expect(9, 2, {}, seconds(least[looping]));
        EXPECT_EQ(0, zvc_storage_looping_sd_check(camera.context(), looping));
        camera.expect(9, 2, {}, seconds(least[looping] - 1));
        EXPECT_EQ(-1, zvc_storage_looping_sd_check(camera.context(), looping));
    }
    camera.expect(9, 2, {}, seconds(0xF0000000));
    EXPECT_EQ(0, zvc_storage_looping_sd_check(camera.context(), 4));
    camera.expect(9, 2, {}, seconds(0xF0000000));
    EXPECT_EQ(-1, zvc_storage_looping_sd_check(camera.context(), 5));

    camera.expect(9, 2, {}, good({0, 0, 9}));
    EXPECT_EQ(-3, zvc_storage_looping_sd_check(camera.context(), 0));
    camera.expect(9, 2, {}, good({}));
    EXPECT_EQ(-3, zvc_storage_looping_sd_check(camera.context(), 0));
    camera.expect(9, 2, {}, refused());
    EXPECT_EQ(-101, zvc_storage_looping_sd_check(camera.context(), 0));
    EXPECT_THAT(log_messages(), ElementsAre("rsp_size exp/act, 4,3\n", "rsp_size exp/act, 4,0\n", "no ack, got 1",
                                            "zvc_send_remote_api error -101\n"));
}

} // namespace
