#include <zvservice/documents.h>

#include "sim_process.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <nlohmann/json.hpp>
#include <zvctrl/camera_setting_ids.h>

using nlohmann::json;
using testing::HasSubstr;
using namespace zvservice;

namespace {

constexpr uint32_t SABLE = 62;
constexpr uint32_t DEFAULT_GENERATION = 1;
constexpr uint8_t PRO = 1;
constexpr uint8_t LIGHT_TRAIL = 31;
constexpr uint8_t LUMORA = 3;

class Documents : public testing::Test {
  protected:
    Documents() { zvUtilSetLogLevel(ZV_LOG_FATAL); } // as a service that may have any camera does
};

// A camera that is in a mode, with a network of a name.
all_status_settings_t record_of(uint8_t flat_mode, const char *network = "home")
{
    all_status_settings_t record = {};
    uint8_t *status = record.bytes + ALL_STATUS_OFFSET;
    uint8_t *settings = record.bytes + ALL_SETTINGS_OFFSET;
    status[STATUS_APP_CURRENT_MODE] = flat_mode;
    strncpy(reinterpret_cast<char *>(status + STATUS_WIRELESS_AP_SSID), network, 33);
    settings[SETTINGS_SETUP_CURRENT_FLAT_MODE] = flat_mode;
    settings[SETTINGS_SETUP_CAMERA_UX_MODE] = PRO;
    settings[SETTINGS_PHOTO_OUTPUT] = LUMORA;
    return record;
}

TEST_F(Documents, TellWhyASettingHasNoOptionLeft)
{
    const State state(record_of(LIGHT_TRAIL), SABLE);
    EXPECT_EQ(R"({"setting":116,"name":"vellix_color","option":{"id":100,"key":"VIBRANT","name":"Vibrant"},)"
              R"("default":{"id":2,"key":"NATURAL","name":"Natural"},"available":false,"why":[)"
              R"({"rule":60,"because":[{"setting":184,"option":"STANDARD"}]},)"
              R"({"rule":65,"because":[{"status":89,"value":31}]},)"
              R"({"rule":115,"because":[{"setting":125,"option":"LUMORA"}]},)"
              R"({"rule":173,"because":[{"status":89,"value":31}]}],"options":[)"
              R"({"id":100,"key":"VIBRANT","name":"Vibrant","available":false,"why":[)"
              R"({"rule":173,"because":[{"status":89,"value":31}]}]},)"
              R"({"id":2,"key":"NATURAL","name":"Natural","available":false,"why":[)"
              R"({"rule":115,"because":[{"setting":125,"option":"LUMORA"}]}]},)"
              R"({"id":1,"key":"FLAT","name":"Flat","available":false,"why":[)"
              R"({"rule":115,"because":[{"setting":125,"option":"LUMORA"}]},)"
              R"({"rule":173,"because":[{"status":89,"value":31}]}]},)"
              R"({"id":3,"key":"LOG","name":"Log","available":false,"why":[)"
              R"({"rule":60,"because":[{"setting":184,"option":"STANDARD"}]},)"
              R"({"rule":65,"because":[{"status":89,"value":31}]},)"
              R"({"rule":115,"because":[{"setting":125,"option":"LUMORA"}]},)"
              R"({"rule":173,"because":[{"status":89,"value":31}]}]}]})",
              setting_json(state, SETTING_VELLIX_COLOR));
}

TEST_F(Documents, TellTheSameOfASettingEverywhere)
{
    for (const uint8_t mode : {uint8_t{12}, uint8_t{17}, uint8_t{LIGHT_TRAIL}}) {
        const State state(record_of(mode), SABLE);
        const json available = json::parse(available_json(state));
        const json catalogue = json::parse(catalogue_json(SABLE))["settings"];
        const std::vector<uint32_t> settings = Catalogue(SABLE).settings();
        ASSERT_EQ(settings.size(), available.size());
        ASSERT_EQ(settings.size(), catalogue.size());
        for (size_t i = 0; i < settings.size(); ++i) {
            SCOPED_TRACE(settings[i]);
            json whole = json::parse(setting_json(state, settings[i]));
            json brief = {{"available", whole["available"]}, {"why", whole["why"]}};
            brief["options"] = brief["unavailable"] = json::array();
            for (json &option : whole["options"]) {
                if (option["available"]) {
                    brief["options"].push_back(option["id"]);
                } else {
                    brief["unavailable"].push_back({{"id", option["id"]}, {"why", option["why"]}});
                }
                EXPECT_EQ(option["available"], option["why"].empty());
                option.erase("available");
                option.erase("why");
            }
            EXPECT_EQ(brief, available[std::to_string(settings[i])]);
            EXPECT_EQ(brief["available"], !brief["options"].empty());
            EXPECT_EQ(brief["available"], brief["why"].empty());
            for (const char *present : {"option", "available", "why"}) {
                whole.erase(present);
            }
            EXPECT_EQ(whole, catalogue[i]);
        }
    }
}

TEST_F(Documents, TellOptionsThatAreNotListedAndSettingsWithoutOptions)
{
    const Catalogue sable(SABLE);
    const uint32_t half_past_seven = camera_schedule_pack({1, 0, 30, 7});
    const std::string number = std::to_string(half_past_seven);
    EXPECT_EQ(R"({"id":5,"key":"60","name":"60"})", option_json(sable, SETTING_VIDEO_FPS, 5));
    EXPECT_EQ(R"({"id":99,"key":"99","name":"99"})", option_json(sable, SETTING_VIDEO_FPS, 99));
    EXPECT_EQ(R"("option":{"id":)" + number + R"(,"key":")" + number + R"(","name":"07:30"})",
              option_member_json(sable, SETTING_SCHEDULED_CAPTURE, half_past_seven));
    EXPECT_EQ(R"("value":5)", option_member_json(Catalogue(DEFAULT_GENERATION), SETTING_VIDEO_FPS, 5));
    const State other(record_of(12), DEFAULT_GENERATION);
    EXPECT_EQ(R"({"setting":3,"name":"video/fps","value":0,"available":true,"why":[],"options":[]})",
              setting_json(other, SETTING_VIDEO_FPS));
    EXPECT_THAT(available_json(other), HasSubstr(R"("3":{"available":true,"why":[],"options":[],"unavailable":[]})"));
}

// What somebody called a network is no reason for a document that nobody can read.
TEST_F(Documents, AreJsonWhateverANetworkIsCalled)
{
    const State before(record_of(12), SABLE);
    EXPECT_EQ(before.status_document(), "\"status\":{\n" + status_json(before).substr(1));
    EXPECT_EQ(before.settings_document(), "\"settings\":" + settings_json(before));
    const struct {
        const char *name;
        const char *text;
    } rows[] = {
        {"my \"home\"", R"("my \"home\"")"},
        {"a\\b\tc", R"("a\\b\u0009c")"},
        {"\xC3\xA9\xFF\xC3", "\"\xC3\xA9\xEF\xBF\xBD\xEF\xBF\xBD\""},
        {"33 characters: no terminator her\xE2", "\"33 characters: no terminator her\xEF\xBF\xBD\""},
        {"},\"8\":1", R"("},\"8\":1")"},
    };
    for (const auto &row : rows) {
        const State state(record_of(12, row.name), SABLE);
        const json status = json::parse(status_json(state));
        EXPECT_EQ(82U, status.size());
        EXPECT_EQ(json::parse(row.text), status["30"]);
        EXPECT_THAT(status_json(state), HasSubstr("\"30\":" + std::string(row.text)));
        EXPECT_EQ("\"30\":" + std::string(row.text), difference(&before, state).status);
    }
}

TEST_F(Documents, TellOfACameraWhatTheSystemKnows)
{
    Snapshot snapshot; // before there is any camera
    EXPECT_EQ(R"({"model":0,"model_name":"","serial_number":"","firmware":"","link":"down","switched_off":false,)"
              R"("epoch":"","revision":0})",
              camera_json(snapshot));
    const SimProcess sim;
    EXPECT_THAT(camera_json(snapshot), HasSubstr(R"({"model":62,"model_name":"Simulated camera 62",)"));
    snapshot.state = std::make_shared<const State>(record_of(12), 58);
    snapshot.link = LinkState::STALE;
    snapshot.switched_off = true;
    snapshot.epoch = std::make_shared<const std::string>("0123abcd");
    snapshot.revision = 17;
    EXPECT_EQ(R"({"model":58,"model_name":"Simulated camera 62","serial_number":"SIM6200000001",)"
              R"("firmware":"SIM.62.01.00.00","link":"stale","switched_off":true,"epoch":"0123abcd","revision":17})",
              camera_json(snapshot));
}

} // namespace
