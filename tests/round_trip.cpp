// Every option of every setting, in every mode that a user can select: written through the dispatcher, read back
// through the daemon.

#include "camera_interface.h"
#include "camera_settings.h"
#include "flat_modes.h"
#include "interpose.h"
#include "queues.h"
#include "simulator.h"
#include "zvcontrol_if.h"

#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>

using namespace test;
using namespace zv::sim;

namespace {

constexpr uint32_t MODEL = 62;
constexpr uint8_t EASY = 0;
constexpr uint8_t PRO = 1;
constexpr uint8_t FLAT_MODES[] = {12, 13, 15, 16, 18, 19, 20, 21, 24, 26, 29, 30, 31};

bool always(uint32_t)
{
    return true;
}
bool looping(uint32_t flat_mode)
{
    return flat_mode == 15;
}
bool not_looping(uint32_t flat_mode)
{
    return flat_mode != 15;
}
bool video_or_photo(uint32_t flat_mode)
{
    return flat_mode == 12 || flat_mode == 16;
}
bool neither_video_nor_photo(uint32_t flat_mode)
{
    return !video_or_photo(flat_mode);
}

// Options that read back as another one, and why.
struct Exception {
    uint32_t first; // setting
    uint32_t last;
    uint32_t option;
    uint32_t reads_as;
    bool (*in_mode)(uint32_t flat_mode);
    const char *reason;
};

constexpr char ONE_INTERVAL[] = "both intervals have one value: it is the looping interval in looping alone";
constexpr char ONE_SHUTTER[] = "both shutters have one value: it is the video shutter in video and photo alone";
constexpr char MAINS[] = "the mains frequency is 60 Hz, which decides between the twins of a speed";

constexpr Exception EXCEPTIONS[] = {
    {129, 132, 109, 13, not_looping, ONE_INTERVAL},
    {129, 132, 13, 109, looping, ONE_INTERVAL},
    {129, 132, 111, 6, neither_video_nor_photo, ONE_SHUTTER},
    {129, 132, 6, 111, video_or_photo, ONE_SHUTTER},
    {176, 176, 104, 100, always, MAINS},
    {176, 176, 105, 101, always, MAINS},
    {176, 176, 106, 102, always, MAINS},
    {176, 176, 107, 103, always, MAINS},
    {176, 176, 112, 108, always, MAINS},
    {176, 176, 113, 109, always, MAINS},
    {176, 176, 114, 110, always, MAINS},
    {176, 176, 115, 111, always, MAINS},
    {176, 176, 117, 116, always, MAINS},
    {176, 176, 119, 118, always, MAINS},
    {176, 176, 121, 120, always, MAINS},
    {176, 176, 123, 122, always, MAINS},
    {176, 176, 125, 124, always, MAINS},
    {176, 176, 127, 126, always, MAINS},
    {176, 176, 129, 128, always, MAINS},
    {176, 176, 131, 130, always, MAINS},
    {176, 176, 133, 132, always, MAINS},
    {176, 176, 135, 134, always, MAINS},
    {176, 176, 137, 136, always, MAINS},
};

const Exception *find_exception(uint32_t setting, uint32_t option, uint32_t flat_mode)
{
    const auto *row = std::find_if(std::begin(EXCEPTIONS), std::end(EXCEPTIONS), [&](const Exception &e) {
        return setting >= e.first && setting <= e.last && option == e.option && e.in_mode(flat_mode);
    });
    return row == std::end(EXCEPTIONS) ? nullptr : row;
}

class RoundTrip : public testing::Test {
  protected:
    RoundTrip() : reply("/t_round_trip", 10, ZVMSG_MAX)
    {
        reset();
        EXPECT_EQ("", simulator.open());
        context.mbox_name = reply.name();
        context.mq_rx = reply.descriptor();
        context.mq_tx = mq_open("/to_zvnet", O_WRONLY);
        on_wait([this] { simulator.serve(); });
        EXPECT_EQ(0, zvcontrol_interface_open());
        fresh = simulator.camera().state();
        fresh.set(status(STATUS_APP_SCHEDULED_ENABLED), 1); // its setting has one option, off
    }
    ~RoundTrip() override
    {
        zvcontrol_interface_close();
        on_wait(nullptr);
        mq_close(context.mq_tx);
    }

    // The camera as it is switched on, but in this user interface mode and flat mode.
    void start_in(uint8_t ux_mode, uint8_t flat_mode)
    {
        simulator.camera().state() = fresh;
        simulator.camera().state().set(settings(SETTINGS_SETUP_CAMERA_UX_MODE), ux_mode);
        simulator.camera().set_mode(*zv::find_flat_mode(flat_mode));
    }

    all_status_settings_t snapshot()
    {
        all_status_settings_t record = {};
        EXPECT_EQ(0, zvcontrol_send_command_param_response(ZVCONTROL_GET_ALL_SETTINGS_STATUS, nullptr, 0, record.bytes,
                                                           sizeof record.bytes));
        return record;
    }

    int32_t write(uint32_t setting, uint32_t option)
    {
        uint32_t count = 0;
        const settings_id_entry_t &row = camera_settings_id_table(MODEL, &count)[setting];
        const all_status_settings_t record = snapshot();
        appc_system_all_status status_record = {};
        appc_setup_all_settings settings_record = {};
        split(record, status_record, settings_record);
        return camera_if_settings_set_value_int(&context, static_cast<int32_t>(setting), row.group_id, row.action_id,
                                                getOptionValueById(MODEL, setting, option), row.value_size,
                                                &settings_record, &status_record);
    }

    // The setting's option in the settings object.
    uint32_t read(uint32_t setting)
    {
        const all_status_settings_t record = snapshot();
        appc_system_all_status status_record = {};
        appc_setup_all_settings settings_record = {};
        split(record, status_record, settings_record);
        std::stringstream json;
        camera_settings_serialize_to_json(json, &settings_record, &status_record, nullptr, MODEL);
        const std::string text = json.str();
        const std::string key = '"' + std::to_string(setting) + "\":";
        const size_t place = text.find(key);
        return place == std::string::npos ? UINT32_MAX
                                          : static_cast<uint32_t>(std::stoul(text.substr(place + key.size())));
    }

    static void split(const all_status_settings_t &record, appc_system_all_status &status_record,
                      appc_setup_all_settings &settings_record)
    {
        std::copy_n(record.bytes, sizeof status_record.bytes, status_record.bytes);
        std::copy_n(record.bytes + ALL_SETTINGS_OFFSET, sizeof settings_record.bytes, settings_record.bytes);
    }

    test::Queue reply;
    Simulator simulator{MODEL, 1};
    State fresh{MODEL, 1};
    zvc_msg_q_context_t context = {};
};

TEST_F(RoundTrip, ReadsBackWhatWasWritten)
{
    std::vector<int> met(std::size(EXCEPTIONS));
    const auto check = [&](uint32_t setting, const option_t &option, uint8_t flat_mode) {
        simulator.camera().set_mode(*zv::find_flat_mode(flat_mode));
        ASSERT_EQ(ZV_OK, write(setting, option.id));
        const Exception *exception = find_exception(setting, option.id, simulator.camera().mode().flat_mode);
        if (exception == nullptr) {
            EXPECT_EQ(option.id, read(setting));
        } else {
            EXPECT_EQ(exception->reads_as, read(setting)) << exception->reason;
            ++met[static_cast<size_t>(exception - EXCEPTIONS)];
        }
    };
    for (const uint8_t ux_mode : {EASY, PRO}) {
        for (const uint8_t flat_mode : FLAT_MODES) {
            for (const auto &[setting, options] : getCameraOptions(MODEL)) {
                start_in(ux_mode, flat_mode);
                write(setting, options.back()->id); // so that every write after it has something to change
                for (const option_t *option : options) {
                    SCOPED_TRACE("user interface " + std::to_string(ux_mode) + ", flat mode " +
                                 std::to_string(flat_mode) + ", setting " + std::to_string(setting) + ", " +
                                 option->key);
                    check(setting, *option, flat_mode);
                }
            }
        }
    }
    for (size_t row = 0; row < met.size(); ++row) {
        EXPECT_GT(met[row], 0) << "exception " << row << " does not occur";
    }
}

} // namespace
