// A fingerprint of each table of the simulated camera, taken of what its clients get out of it. Where a change is
// meant, the failure shows the fingerprint to put here.
#include "camera.h"
#include "capabilities.h"
#include "csi_double.h"
#include "fingerprint.h"
#include "firmware_peer.h"
#include "identity.h"
#include "interpose.h"

#include <gtest/gtest.h>
#include <optional>

using namespace zv;
using namespace zv::sim;

namespace {

constexpr uint8_t MODEL = 62;
constexpr uint64_t SECOND = 1000000;

std::string text_of(View bytes)
{
    return {bytes.begin(), bytes.end()};
}

class SimTables : public testing::Test {
  protected:
    void SetUp() override
    {
        test::reset();
        test::csi() = {};
    }

    void expect(const char *fingerprint) { EXPECT_EQ(fingerprint, m_fingerprint.text()); }

    test::Fingerprint m_fingerprint;
};

TEST_F(SimTables, Identity)
{
    EXPECT_EQ("", store_identity(MODEL));
    for (const auto &[key, value] : test::csi().sets) {
        m_fingerprint.add(+key, value);
    }
    m_fingerprint.add(text_of(Camera(MODEL, 1).state().record()));
    expect("b1088f10463b0846");
}

TEST_F(SimTables, Capabilities)
{
    const auto add_lists = [&](const Situation &situation) {
        for (const uint8_t key : {CAP_KEY_RESOLUTION, CAP_KEY_FPS, CAP_KEY_FOV}) {
            m_fingerprint.add(text_of(capability_list(key, situation).value_or(Bytes{})));
        }
    };
    const auto add_situation = [&](Situation situation) {
        add_lists(situation);
        for (uint8_t resolution = 0; resolution < 31; ++resolution) {
            situation.resolution = resolution;
            situation.fps.reset();
            add_lists(situation);
            for (uint8_t fps = 0; fps < 14; ++fps) {
                situation.fps = fps;
                add_lists(situation);
            }
        }
    };
    for (const FlatModeRow &mode : FLAT_MODES) {
        for (uint8_t lens = 0; lens < 3; ++lens) {
            for (uint8_t profile = 0; profile < 3; ++profile) {
                for (uint8_t mains = 0; mains < 2; ++mains) {
                    add_situation({lens, mode.flat_mode, profile, mains, std::nullopt, std::nullopt});
                }
            }
        }
    }
    expect("15d4be693b3c6844");
}

// Every command, with payloads of every length up to 7, and what they leave behind.
TEST_F(SimTables, Commands)
{
    Camera camera(MODEL, 1);
    for (uint32_t number = 0; number < 0x1400; ++number) {
        for (uint8_t size = 0; size < 8; ++size) {
            const Bytes payload(size, static_cast<uint8_t>(number % 3));
            const Answer answer = run_remote_command(camera, static_cast<RemoteCommand>(number), payload);
            m_fingerprint.add(answer.code, +answer.error, text_of(answer.payload));
        }
        m_fingerprint.add(text_of(camera.state().record()));
    }
    expect("40284e692d7e16e9");
}

// Every rate and interval for two minutes.
TEST_F(SimTables, Captures)
{
    for (const FlatModeRow &mode : FLAT_MODES) {
        for (uint8_t rate = 0; rate < 15; ++rate) {
            Camera camera(MODEL, 1);
            camera.set_mode(mode);
            for (const uint16_t offset : {SETTINGS_PHOTO_SINGLE_INTERVAL, SETTINGS_MULTI_SHOT_BURST_RATE,
                                          SETTINGS_MULTI_SHOT_TIMELAPSE_RATE, SETTINGS_MULTI_SHOT_NIGHTLAPSE_RATE}) {
                camera.state().set(settings(offset), rate);
            }
            camera.capture().start(mode);
            for (int i = 0; i < 4; ++i) {
                camera.advance(30 * SECOND);
                m_fingerprint.add(text_of(camera.state().record()));
            }
        }
    }
    expect("54e716f164f70098");
}

} // namespace
