// A fingerprint of each table, taken of what callers and peers get out of it: no row changes, comes or goes unseen.
// Where a change is meant, the failure shows the fingerprint to put here.
#include "camera_interface.h"
#include "camera_settings.h"
#include "camera_status.h"
#include "csi_keys.h"
#include "daemon_command_names.h"
#include "easy_mode.h"
#include "enumerator_name.h"
#include "fingerprint.h"
#include "http_utils.h"
#include "interpose.h"
#include "queue_names.h"
#include "zvHex.h"
#include "zvc_commands_zvx.h"

#include <gtest/gtest.h>
#include <random>

using namespace test;

namespace {

constexpr uint32_t SABLE = 62;
constexpr uint32_t DEFAULT_MODEL = 0;

// Answers nothing and keeps what is sent.
class Recorder : public ZVXCommand {
  public:
    explicit Recorder(Fingerprint &fingerprint) : m_fingerprint(fingerprint) { gFunctionMap = this; }
    Recorder(const Recorder &) = delete;
    Recorder &operator=(const Recorder &) = delete;
    ~Recorder() override { gFunctionMap = &zvxCommands; }

    int32_t send_remote_api(zvc_msg_q_context_t *, const uint8_t *request, int32_t size, uint8_t **rsp,
                            uint16_t *rspsize) override
    {
        m_fingerprint.add(std::string(request, request + size));
        if (rsp != nullptr) {
            *rsp = m_answer;
            *rspsize = sizeof m_answer;
        }
        return ZV_OK;
    }

  private:
    Fingerprint &m_fingerprint;
    uint8_t m_answer[4] = {1, 2, 3, 4};
};

// Records that reach every flat mode, easy preset and easy speed, the same in each run.
all_status_settings_t record(std::mt19937 &random, uint8_t flat_mode)
{
    const auto pick = [&](const auto &rows) { return rows[random() % std::size(rows)]; };
    all_status_settings_t record;
    for (uint8_t &byte : record.bytes) {
        byte = static_cast<uint8_t>(random() % 2 != 0 ? random() % 32 : random());
    }
    uint8_t *settings = record.bytes + ALL_SETTINGS_OFFSET;
    const zv::EasySpeed speed = pick(zv::EASY_SPEEDS);
    record.bytes[STATUS_APP_CURRENT_MODE] = settings[SETTINGS_SETUP_CURRENT_FLAT_MODE] = flat_mode;
    settings[SETTINGS_VIDEO_RESOLUTION] = speed.resolution;
    settings[SETTINGS_VIDEO_FPS] = random() % 2 != 0 ? speed.fps : speed.fps_50hz;
    for (const int offset :
         {STATUS_APP_ACTIVE_VIDEO_PRESETS, STATUS_APP_ACTIVE_PHOTO_PRESETS, STATUS_APP_ACTIVE_TIMELAPSE_PRESETS}) {
        const uint32_t preset = pick(zv::EASY_PRESETS).preset;
        for (int byte = 0; byte < 4; ++byte) {
            record.bytes[offset + byte] = static_cast<uint8_t>(preset >> 8 * byte);
        }
    }
    record.bytes[STATUS_APP_SCHEDULED_ENABLED] = 1;
    return record;
}

// The first of the rounds logs everything, so that no message is without its arguments, and the second nothing.
template <class Visit>
void for_each_record(Visit visit)
{
    std::mt19937 random(1);
    for (int round = 0; round < 8; ++round) {
        g_logLevel = round == 0 ? ZV_LOG_TRACE : round == 1 ? 0 : ZV_LOG_ERROR;
        for (uint8_t flat_mode = 0; flat_mode < 34; ++flat_mode) {
            const all_status_settings_t all = record(random, flat_mode);
            appc_setup_all_settings settings;
            appc_system_all_status status;
            std::copy_n(all.bytes + ALL_SETTINGS_OFFSET, sizeof settings.bytes, settings.bytes);
            std::copy_n(all.bytes, sizeof status.bytes, status.bytes);
            visit(settings, status);
        }
    }
}

class Tables : public testing::Test {
  protected:
    void SetUp() override { reset(); }

    void expect(const char *fingerprint) { EXPECT_EQ(fingerprint, m_fingerprint.text()); }

    Fingerprint m_fingerprint;
};

TEST_F(Tables, Settings)
{
    for (const uint32_t model : {DEFAULT_MODEL, SABLE}) {
        uint32_t count = 0;
        const settings_id_entry_t *rows = camera_settings_id_table(model, &count);
        for (uint32_t id = 0; id < count; ++id) {
            m_fingerprint.add(rows[id].json_path, rows[id].group_id, rows[id].action_id, rows[id].value_size);
        }
        for_each_record([&](const appc_setup_all_settings &settings, const appc_system_all_status &status) {
            std::stringstream document;
            camera_settings_serialize_to_json(document, &settings, &status, nullptr, model);
            m_fingerprint.add(document.str());
        });
    }
    for (uint32_t id = 0; id < SETTINGS_ID_TABLE_COUNT; ++id) {
        m_fingerprint.add(bypassPresetEditStart(id, SABLE), skipOptionCheck(id, 50), skipOptionCheck(id, 1000),
                          getOptionIdByValue(SABLE, id, 1000000, 0));
    }
    expect("c158404f2a493ceb");
}

TEST_F(Tables, Options)
{
    for (const auto &[setting, options] : getCameraOptions(SABLE)) {
        for (const option_t *option : options) {
            m_fingerprint.add(setting, option->key, option->name, option->value, option->id);
        }
    }
    expect("1e957b786d05795");
}

TEST_F(Tables, Rules)
{
    for (const auto &[number, rule] : getCameraFilters(SABLE)) {
        for (const filter_info_t *element : rule) {
            m_fingerprint.add(number, element->type, element->id, element->include);
            for (const char *value : element->values) {
                m_fingerprint.add(value);
            }
        }
    }
    expect("9b65e7cf0f7e4a8d");
}

TEST_F(Tables, SettingWrites)
{
    const Recorder recorder(m_fingerprint);
    zvc_msg_q_context_t context = {};
    uint32_t value = 0;
    for_each_record([&](const appc_setup_all_settings &settings, const appc_system_all_status &status) {
        for (int32_t id = 0; id < SETTINGS_ID_TABLE_COUNT; ++id) {
            const uint32_t written = ++value % 140;
            m_fingerprint.add(id, written,
                              camera_if_settings_set_value_int(&context, id, 20, 30, written, 1, &settings, &status));
        }
    });
    expect("73d3543b16ca99cc");
}

TEST_F(Tables, Statuses)
{
    for_each_record([&](const appc_setup_all_settings &, const appc_system_all_status &status) {
        std::stringstream document;
        camera_status_serialize_status_to_json(document, &status, SABLE);
        m_fingerprint.add(document.str());
    });
    for (const camera_status_name_t &status : camera_status_names) {
        m_fingerprint.add(status.id, status.name);
    }
    expect("a92593098f55f93d");
}

TEST_F(Tables, Texts)
{
    for (int32_t code = 0; code < 600; ++code) {
        m_fingerprint.add(get_http_response_code_string(code));
    }
    for (int32_t code = -300; code <= 0; ++code) {
        m_fingerprint.add(zvErrno2Str(code));
    }
    for (int row = 0; row < ZV_TRACE_ROWS; ++row) {
        m_fingerprint.add(s_dmsgstr[row] != nullptr ? s_dmsgstr[row] : "", s_dmsghex[row]);
    }
    expect("e53392513d0d5380");
}

TEST_F(Tables, Floor)
{
    for (const zv::FlatModeRow &row : zv::FLAT_MODES) {
        m_fingerprint.add(row.flat_mode, row.mode, row.sub_mode, row.block, row.presets, row.shutter.start,
                          row.shutter.stop, row.capture_mode);
    }
    for (const zv::EasyPreset &row : zv::EASY_PRESETS) {
        m_fingerprint.add(row.preset, row.group, row.value, row.flat_mode);
    }
    for (const zv::EasySpeed &row : zv::EASY_SPEEDS) {
        m_fingerprint.add(row.speed, row.speed_50hz, row.resolution, row.fps, row.fps_50hz);
    }
    m_fingerprint.add(zv::DAEMON_QUEUE, zv::RELAY_QUEUE, zv::CAMERA_QUEUE, zv::RESPONSE_QUEUE_PREFIX,
                      zv::REMOTE_API_COMMAND, zv::CATEGORY_DORSAK, zv::CATEGORY_CAMERA);
    for (const std::string_view name : zv::enumerator_names<zv::RemoteCommand, 0x1400>()) {
        m_fingerprint.add(name);
    }
    for (const std::string_view name : zv::enumerator_names<zv::CsiKey, 0x100>()) {
        m_fingerprint.add(name);
    }
    for (uint32_t command = 0; command < 120; ++command) {
        m_fingerprint.add(zv::command_name(command));
    }
    expect("31dc2cb5aa442e39");
}

} // namespace
