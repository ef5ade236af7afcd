#include <zvservice/catalogue.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::HasSubstr;
using namespace zvservice;

namespace {

constexpr uint32_t SABLE = 62;
constexpr uint32_t WITHOUT_OPTIONS = 51;

TEST(Catalogue, FindsASettingByWhateverAPersonCallsIt)
{
    const Catalogue catalogue(SABLE);
    struct {
        const char *text;
        Outcome outcome;
        uint32_t setting;
        const char *sentence;
    } const cases[] = {
        {"3", Outcome::DONE, 3, ""},
        {"modes/video/settings/fps", Outcome::DONE, 3, ""},
        {"Video/FPS", Outcome::DONE, 3, ""},
        {"vellix_ev", Outcome::DONE, 118, ""},
        {"scheduled_capture", Outcome::DONE, 168, ""},
        {"easy_presets", Outcome::NO_SUCH_SETTING, 0, "names several settings: "},
        {"fps", Outcome::NO_SUCH_SETTING, 0, "\"fps\" names several settings: 3 video/fps, "},
        {"0", Outcome::NO_SUCH_SETTING, 0, "this camera has no setting 0"},
        {"194", Outcome::NO_SUCH_SETTING, 0, "this camera has no setting 194"},
        {"4294967299", Outcome::NO_SUCH_SETTING, 0, "this camera has no setting \"4294967299\""},
        {"video/fsp", Outcome::NO_SUCH_SETTING, 0, "did you mean video/fps"},
        {"", Outcome::NO_SUCH_SETTING, 0, "this camera has no setting \"\""},
    };
    for (const auto &row : cases) {
        uint32_t setting = 0;
        const Result result = catalogue.find_setting(row.text, setting);
        EXPECT_EQ(row.outcome, result.outcome()) << row.text << ": " << result.sentence();
        EXPECT_EQ(row.setting, setting) << row.text;
        EXPECT_THAT(result.sentence(), HasSubstr(row.sentence)) << row.text;
    }
    EXPECT_EQ(89u, catalogue.settings().size());
}

TEST(Catalogue, FindsAnOptionByKeyThenIdThenName)
{
    const Catalogue catalogue(SABLE);
    struct {
        uint32_t setting;
        const char *text;
        Outcome outcome;
        uint32_t id;
        const char *sentence;
    } const cases[] = {
        {3, "60", Outcome::DONE, 5, ""},
        {3, "5", Outcome::DONE, 5, ""},
        {2, "4k", Outcome::DONE, 1, ""},
        {6, "5 minutes", Outcome::DONE, 1, ""},
        {88, "55", Outcome::DONE, 55, ""},
        {88, "101", Outcome::NO_SUCH_OPTION, 9, "has no option \"101\""},
        {3, "99", Outcome::NO_SUCH_OPTION, 9, "setting 3, video/fps, has no option \"99\"; it has 0 240, 13 200"},
        {2, "5.3k", Outcome::NO_SUCH_OPTION, 9, "names several options of setting 2: 100 5_3K, 107 5_3K_8BY7_V2"},
        {144, "vidoe", Outcome::NO_SUCH_OPTION, 9, "did you mean VIDEO"},
        {168, "7:30", Outcome::DONE, 7 << 8 | 30 << 2 | 3, ""},
        {168, "OFF", Outcome::DONE, 0, ""},
        {168, "24:00", Outcome::NO_SUCH_OPTION, 9, "a time of day such as 07:30, or off"},
        {168, "4000", Outcome::NO_SUCH_OPTION, 9, "a time of day such as 07:30, or off"},
    };
    constexpr uint32_t PRESENT = 2; // the other clock format
    for (const auto &row : cases) {
        uint32_t id = 9;
        const Result result = catalogue.find_option(row.setting, row.text, PRESENT, id);
        EXPECT_EQ(row.outcome, result.outcome()) << row.text << ": " << result.sentence();
        EXPECT_EQ(row.id, id) << row.text;
        EXPECT_THAT(result.sentence(), HasSubstr(row.sentence)) << row.text;
    }
    EXPECT_EQ("07:30", catalogue.option_text(168, 7 << 8 | 30 << 2 | 1));
    EXPECT_EQ("4K [4K]", catalogue.option_text(2, 1));
    EXPECT_EQ("60", catalogue.option_text(3, 5));
    EXPECT_EQ("777", catalogue.option_text(3, 777));
}

TEST(Catalogue, OfACameraWithoutOptionsTakesNumbers)
{
    const Catalogue catalogue(WITHOUT_OPTIONS);
    uint32_t id = 0;
    EXPECT_TRUE(catalogue.find_option(2, "24", 0, id).done());
    EXPECT_EQ(24u, id);
    EXPECT_FALSE(catalogue.default_option(2, id));
    EXPECT_THAT(catalogue.find_option(2, "4K", 0, id).sentence(), HasSubstr("it has numbers"));
}

TEST(Catalogue, SuggestsWhatIsNearlyTheSame)
{
    const std::vector<std::string> words = {"status", "settings",         "set",
                                            "start",  "video/resolution", "photo/resolution"};
    EXPECT_THAT(near_misses("STATSU", words), ElementsAre("status"));
    EXPECT_THAT(near_misses("resolutoin", words), ElementsAre("video/resolution", "photo/resolution"));
    EXPECT_THAT(near_misses("sett", words), ElementsAre("set", "settings"));
    EXPECT_THAT(near_misses("qqqqqq", words), ElementsAre());
    EXPECT_THAT(near_misses("", words), ElementsAre());
}

} // namespace
