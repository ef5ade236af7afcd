#include "offered_options.h"

#include "easy_mode.h"
#include "flat_modes.h"
#include "setting_writes.h"
#include "state.h"

#include <zvctrl/camera_records.h>
#include <zvctrl/camera_settings.h>
#include <zvservice/availability.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace zv::sim {

namespace {

// What one setting takes can take away another's option. A few rounds follow any such chain; rules that go in circles
// end here.
constexpr int ROUNDS = 10;

// As write_setting(), but the mode stays, and so does the preset that brought it: another group's preset is made active
// without its mode. True when something is different now.
bool write_in_mode(Camera &camera, uint32_t setting, uint32_t value)
{
    const State before = camera.state();
    const FlatModeRow &mode = camera.mode();
    const EasyPreset *preset = camera.preset();
    write_setting(camera, setting, value);
    if (preset != nullptr) {
        camera.load_preset(preset->preset);
    } else {
        camera.set_mode(mode);
    }
    return !std::ranges::equal(before.record(), camera.state().record());
}

// True when a setting took another option.
bool take_once(Camera &camera)
{
    const uint32_t model = camera.state().model();
    all_status_settings_t record = {};
    std::copy(camera.state().record().begin(), camera.state().record().end(), record.bytes);
    const zvservice::CameraState state = zvservice::read_state(record, model);
    const zvservice::Availability availability(state, model);
    bool taken = false;
    for (const auto &[setting, options] : getCameraOptions(model)) {
        const std::vector<const option_t *> left = availability.options(setting);
        if (left.empty() || availability.why(setting, state.settings[setting]).empty()) {
            continue;
        }
        const uint32_t value = getOptionValueById(model, setting, left.front()->id);
        taken = write_in_mode(camera, setting, value) || taken;
    }
    return taken;
}

} // namespace

void take_offered_options(Camera &camera)
{
    if (getCameraOptions(camera.state().model()).empty()) {
        return;
    }
    for (int round = 0; round < ROUNDS && take_once(camera); ++round) {
    }
}

} // namespace zv::sim
