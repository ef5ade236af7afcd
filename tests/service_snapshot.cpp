#include <zvservice/snapshot.h>

#include <algorithm>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;
using namespace zvservice;

namespace {

constexpr uint32_t SABLE = 62;
constexpr uint32_t AP_SSID = 30;

all_status_settings_t record_with(const char *network, uint8_t encoding, uint8_t fps)
{
    all_status_settings_t record = {};
    uint8_t *status = record.bytes + ALL_STATUS_OFFSET;
    uint8_t *settings = record.bytes + ALL_SETTINGS_OFFSET;
    status[STATUS_SYSTEM_ENCODING_ACTIVE] = encoding;
    memcpy(status + STATUS_WIRELESS_AP_SSID, network, std::min<size_t>(strlen(network), 33));
    settings[SETTINGS_SETUP_CURRENT_FLAT_MODE] = 12;
    settings[SETTINGS_VIDEO_FPS] = fps;
    return record;
}

std::string text_of(const State &state, uint32_t status)
{
    for (const Member &member : state.status_members()) {
        if (member.id == status) {
            return std::string(member.text);
        }
    }
    return "none";
}

// The names of networks are not escaped: their length is the record's.
TEST(Snapshot, TakesTheDocumentsApartWhateverANetworkIsCalled)
{
    for (const char *name : {"", "home", "a\",\"8\":1", "},{", "\"", "33 characters: no terminator here"}) {
        const State state(record_with(name, 1, 5), SABLE);
        EXPECT_EQ(82u, state.status_members().size()) << name;
        EXPECT_EQ(89u, state.settings_members().size()) << name;
        EXPECT_EQ('"' + std::string(name) + '"', text_of(state, AP_SSID));
        EXPECT_EQ("1", text_of(state, 10));
        EXPECT_THAT(state.status_document(), HasSubstr("\"status\":{"));
        EXPECT_THAT(state.settings_document(), HasSubstr("\"settings\":{\"2\":"));
    }
}

TEST(Snapshot, TellsWhatDiffersBetweenTwoMoments)
{
    const State before(record_with("home", 0, 5), SABLE);
    const State same(record_with("home", 0, 5), SABLE);
    const State after(record_with("a,b", 1, 8), SABLE);
    EXPECT_TRUE(difference(&before, same).empty());
    Change change = difference(&before, after);
    change.revision = 18;
    EXPECT_EQ(R"({"revision":18,"status":{"10":1,"30":"a,b","61":0},"settings":{"3":8}})", change.json());
    EXPECT_EQ("\"settings\":{" + difference(nullptr, before).settings + "}", before.settings_document());
    EXPECT_EQ(5u, before.option(3));
    EXPECT_EQ(0u, before.option(100000));
    EXPECT_EQ(0, Snapshot().age().count());
    EXPECT_STREQ("down", link_state_name(Snapshot().link));
    EXPECT_STREQ("stale", link_state_name(LinkState::STALE));
    EXPECT_STREQ("up", link_state_name(LinkState::UP));
}

} // namespace
