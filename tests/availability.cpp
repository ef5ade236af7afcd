#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <zvservice/availability.h>

using testing::ElementsAre;
using zvservice::Availability;
using zvservice::CameraState;
using zvservice::Removal;

namespace {

constexpr uint32_t SABLE = 58;
constexpr uint32_t FLAT_MODE = 89;

std::vector<uint32_t> numbers(const std::vector<Removal> &removals)
{
    std::vector<uint32_t> rules;
    for (const Removal &removal : removals) {
        rules.push_back(removal.rule);
    }
    return rules;
}

uint32_t id_of(uint32_t setting, const std::string &key)
{
    for (const option_t *option : getCameraOptions(SABLE).at(setting)) {
        if (key == option->key) {
            return option->id;
        }
    }
    ADD_FAILURE() << "setting " << setting << " has no " << key;
    return 0;
}

class Rules : public testing::Test {
  protected:
    void choose(uint32_t setting, const char *key) { state.settings[setting] = id_of(setting, key); }

    void choose_at_random()
    {
        constexpr uint32_t MODES[] = {12, 13, 15, 16, 18, 19, 20, 21, 24, 26, 29, 30, 31, 23};
        for (const auto &[setting, options] : getCameraOptions(SABLE)) {
            state.settings[setting] = pick(20) == 0 ? 4711 : options[pick(static_cast<uint32_t>(options.size()))]->id;
        }
        for (uint32_t &status : state.statuses) {
            status = pick(6);
        }
        state.statuses[FLAT_MODE] = MODES[pick(std::size(MODES))];
    }

    uint32_t pick(uint32_t count) { return static_cast<uint32_t>(random() % count); }

    CameraState state;
    std::mt19937 random{20};
};

TEST_F(Rules, TellWhichRuleTakesAnOptionAwayAndWhy)
{
    choose(2, "5_3K");
    choose(175, "PRO");
    choose(184, "STANDARD");
    state.statuses[FLAT_MODE] = 12;
    const Availability availability(state, SABLE);

    EXPECT_TRUE(availability.offers(3));
    EXPECT_FALSE(availability.offers(3, id_of(3, "240")));
    EXPECT_TRUE(availability.offers(3, id_of(3, "60")));
    const std::vector<Removal> why = availability.why(3, id_of(3, "240"));
    EXPECT_THAT(numbers(why), testing::Contains(83));
    const auto rule83 = std::find_if(why.begin(), why.end(), [](const Removal &r) { return r.rule == 83; });
    EXPECT_EQ("setting 2 is 5_3K", because(*rule83));
    EXPECT_EQ(3U, rule83->consequence->id);

    EXPECT_FALSE(availability.offers(186)); // an easy level's setting
    EXPECT_THAT(numbers(availability.why(186)), ElementsAre(5));
    EXPECT_FALSE(availability.offers(186, id_of(186, "BASIC_QUALITY")));
    EXPECT_TRUE(availability.options(186).empty());
    EXPECT_THAT(numbers(availability.why(144, id_of(144, "SINGLE_PHOTO"))), ElementsAre(66));
    EXPECT_EQ("status 89 is 12", because(availability.why(144, id_of(144, "SINGLE_PHOTO")).front()));
}

TEST_F(Rules, NeedAllTheirConditions)
{
    state.statuses[74] = 0;
    state.statuses[102] = 3;
    EXPECT_TRUE(Availability(state, SABLE).offers(169));
    state.statuses[102] = 2;
    const Availability availability(state, SABLE);
    EXPECT_FALSE(availability.offers(169));
    EXPECT_EQ("status 74 is 0 and status 102 is 2", because(availability.why(169).front()));
}

TEST_F(Rules, TakeAnUnlistedOptionForNoneOfTheListed)
{
    state.settings[2] = 4711;
    const std::vector<Removal> why = Availability(state, SABLE).why(121, id_of(121, "ARCASCAPE"));
    const auto rule81 = std::find_if(why.begin(), why.end(), [](const Removal &r) { return r.rule == 81; });
    ASSERT_NE(why.end(), rule81); // unless the resolution is 5_3K or 4K
    EXPECT_EQ("setting 2 is 4711", because(*rule81));

    state.settings[3] = 240; // an id that nothing has, and the key of another option
    EXPECT_THAT(numbers(Availability(state, SABLE).why(145, 31)), testing::Not(testing::Contains(68)));
}

TEST_F(Rules, KnowNothingOfOtherSettings)
{
    const Availability availability(state, SABLE);
    for (const uint32_t setting : {0U, 4U, 83U, 195U, 0xFFFFFFFFU}) {
        EXPECT_FALSE(availability.offers(setting));
        EXPECT_FALSE(availability.offers(setting, 0));
        EXPECT_TRUE(availability.options(setting).empty());
        EXPECT_TRUE(availability.why(setting).empty());
    }
    EXPECT_FALSE(availability.offers(3, 4711));
    EXPECT_TRUE(availability.why(3, 4711).empty());
}

TEST_F(Rules, ReadASnapshotAsClientsSeeIt)
{
    all_status_settings_t record = {};
    uint8_t *status = record.bytes + ALL_STATUS_OFFSET;
    uint8_t *settings = record.bytes + ALL_SETTINGS_OFFSET;
    status[STATUS_APP_CURRENT_MODE] = 16;
    status[STATUS_LIVEVIEW_EXPOSURE_SELECT_TYPE] = 1;
    settings[SETTINGS_SETUP_CURRENT_FLAT_MODE] = 16;
    settings[SETTINGS_VIDEO_RESOLUTION] = 24;
    const CameraState read = zvservice::read_state(record, SABLE);
    EXPECT_EQ(100U, read.settings[2]);
    EXPECT_EQ(16U, read.settings[144]);
    EXPECT_EQ(16U, read.statuses[FLAT_MODE]);
    EXPECT_EQ(2U, read.statuses[65]);
    EXPECT_THAT(numbers(Availability(read, SABLE).why(13)), testing::Contains(192));
}

// ---- Against a model that asks every rule about every option ----

bool met(const filter_info_t &condition, const CameraState &state)
{
    std::set<std::string> current;
    if (condition.type == FILTER_INFO_STATUS) {
        current.insert(std::to_string(state.statuses[condition.id]));
    } else {
        for (const option_t *option : getCameraOptions(SABLE).at(condition.id)) {
            if (option->id == state.settings[condition.id]) {
                current.insert(option->key);
            }
        }
    }
    bool among = false;
    for (const char *value : condition.values) {
        among = among || current.count(value) == 1;
    }
    return condition.include == 1 ? among : !among;
}

bool applies(const std::vector<filter_info_t *> &rule, const CameraState &state)
{
    return std::all_of(rule.begin(), rule.end(), [&state](const filter_info_t *element) {
        return element->type == FILTER_INFO_BLOCK || met(*element, state);
    });
}

bool takes(const std::vector<filter_info_t *> &rule, uint32_t setting, const option_t *option)
{
    bool taken = false;
    for (const filter_info_t *element : rule) {
        if (element->type == FILTER_INFO_BLOCK && element->id == setting) {
            bool among = false;
            for (const char *value : element->values) {
                among = among || (option != nullptr && std::string(value) == option->key);
            }
            const bool whole = element->include == 1 && element->values.empty();
            taken = taken || whole || (option != nullptr && among == (element->include == 1));
        }
    }
    return taken;
}

TEST_F(Rules, AreAskedAnewOnlyForWhatTheyLookAt)
{
    choose(2, "4K");
    state.statuses[FLAT_MODE] = 12;
    const CameraState before = state;
    state.statuses[70] = 55; // the battery
    state.settings[87] = 30; // the volume
    EXPECT_TRUE(zvservice::same_offers(before, state, SABLE));
    choose(2, "1080");
    EXPECT_FALSE(zvservice::same_offers(before, state, SABLE));
    state = before;
    state.statuses[FLAT_MODE] = 13;
    EXPECT_FALSE(zvservice::same_offers(before, state, SABLE));
}

// All that an Availability says of a state.
std::string told(const CameraState &state)
{
    const Availability availability(state, SABLE);
    std::string text;
    for (const auto &[setting, options] : getCameraOptions(SABLE)) {
        for (const option_t *option : options) {
            for (const Removal &removal : availability.against(setting, option->id)) {
                text += std::to_string(removal.rule) + " " + zvservice::because(removal) + "\n";
            }
        }
    }
    return text;
}

TEST_F(Rules, AreAskedAnewWhereverTheySayAnythingElse)
{
    size_t differing = 0;
    for (int round = 0; round < 2; ++round) {
        choose_at_random();
        const std::string before = told(state);
        for (std::vector<uint32_t> CameraState::*values : {&CameraState::settings, &CameraState::statuses}) {
            for (size_t id = 0; id < (state.*values).size(); ++id) {
                CameraState after = state;
                ++(after.*values)[id];
                if (told(after) != before) {
                    ++differing;
                    EXPECT_FALSE(zvservice::same_offers(state, after, SABLE)) << id;
                }
            }
        }
    }
    EXPECT_GT(differing, 20U) << "the states met no rules";
}

TEST_F(Rules, AgreeWithAskingEveryRuleAboutEveryOption)
{
    size_t removals = 0;
    for (int round = 0; round < 50; ++round) {
        choose_at_random();
        const Availability availability(state, SABLE);
        std::map<uint32_t, std::vector<filter_info_t *>> rules = getCameraFilters(SABLE);
        std::erase_if(rules, [&](const auto &rule) { return !applies(rule.second, state); });
        const auto expected = [&](uint32_t setting, const option_t *option) {
            std::vector<uint32_t> found;
            for (const auto &[number, rule] : rules) {
                if (takes(rule, setting, option)) {
                    found.push_back(number);
                }
            }
            return found;
        };
        for (const auto &[setting, options] : getCameraOptions(SABLE)) {
            const std::vector<uint32_t> whole = expected(setting, nullptr);
            ASSERT_EQ(whole, numbers(availability.why(setting))) << setting;
            ASSERT_EQ(whole.empty(), availability.offers(setting));
            std::vector<const option_t *> left;
            for (const option_t *option : options) {
                const std::vector<uint32_t> reasons = expected(setting, option);
                ASSERT_EQ(reasons, numbers(availability.why(setting, option->id))) << setting << " " << option->key;
                ASSERT_EQ(reasons.empty(), availability.offers(setting, option->id));
                if (reasons.empty()) {
                    left.push_back(option);
                }
                removals += reasons.size();
            }
            ASSERT_EQ(left, availability.options(setting));
        }
    }
    EXPECT_GT(removals, 10000U) << "the states met no rules";
}

} // namespace
