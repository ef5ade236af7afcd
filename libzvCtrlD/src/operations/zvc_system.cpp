// The lens, the power profile and the buttons; declared in zvc_commands.h.
#include "remote_call.h"

using namespace zv;

namespace {

constexpr uint8_t LENS_UNCHANGED = 0xFF;

// Successful reads are not logged, and some failures name the function.
constexpr ReadTexts QUIET_TEXTS{nullptr, READ_TEXTS.failure, READ_TEXTS.size};
constexpr ReadTexts LENS_STATUS_TEXTS{nullptr, READ_TEXTS.failure,
                                      "zvc_system_get_lens_status rsp_size exp/act, %d,%d"};
constexpr ReadTexts POWER_PROFILE_TEXTS{nullptr, "zvc_system_get_power_profile:  zvc_send_remote_api error %d",
                                        "zvc_system_get_power_profile: rsp_size exp/act, %d,%d"};

} // namespace

int32_t zvc_system_get_lens_mode(zvc_msg_q_context_t *context, int8_t *lens_mode)
{
    int8_t lens = 0;
    return remote_get_bytes(context, REMOTE_PRESET_LENS_GET, {lens_mode, &lens}, nullptr, QUIET_TEXTS);
}

int32_t zvc_system_get_lens(zvc_msg_q_context_t *context, int8_t *lens)
{
    int8_t lens_mode = 0;
    return remote_get_bytes(context, REMOTE_PRESET_LENS_GET, {&lens_mode, lens}, nullptr, QUIET_TEXTS);
}

int32_t zvc_system_get_lenses(zvc_msg_q_context_t *context, int8_t *lens_mode, int8_t *lens)
{
    return remote_get_bytes(context, REMOTE_PRESET_LENS_GET, {lens_mode, lens}, nullptr, QUIET_TEXTS);
}

int32_t zvc_system_set_lens_mode(zvc_msg_q_context_t *context, int32_t lens_mode)
{
    return remote_send(context, REMOTE_PRESET_LENS_SET, {low_byte(lens_mode), LENS_UNCHANGED});
}

int32_t zvc_system_set_lens(zvc_msg_q_context_t *context, int32_t lens)
{
    return remote_send(context, REMOTE_PRESET_LENS_SET, {LENS_UNCHANGED, low_byte(lens)});
}

int32_t zvc_system_get_lens_type(zvc_msg_q_context_t *context, int8_t *type)
{
    return remote_get(context, REMOTE_SYSTEM_LENS_TYPE_GET, type, nullptr, QUIET_TEXTS);
}

int32_t zvc_system_set_lens_type(zvc_msg_q_context_t *context, int32_t type)
{
    return remote_set(context, REMOTE_SYSTEM_LENS_TYPE_SET, type);
}

int32_t zvc_system_get_lens_status(zvc_msg_q_context_t *context, int8_t *status)
{
    return remote_get(context, REMOTE_SYSTEM_LENS_STATUS_GET, status, nullptr, LENS_STATUS_TEXTS);
}

int32_t zvc_system_set_lens_status(zvc_msg_q_context_t *context, int8_t status)
{
    return remote_set(context, REMOTE_SYSTEM_LENS_STATUS_SET, status, {"lens_status:%d"});
}

int32_t zvc_system_get_power_profile(zvc_msg_q_context_t *context, uint8_t *profile)
{
    return remote_get(context, REMOTE_SYSTEM_POWER_PROFILE_GET, profile, nullptr, POWER_PROFILE_TEXTS);
}

int32_t zvc_system_set_button(zvc_msg_q_context_t *context, uint8_t first, uint8_t second)
{
    return remote_send(context, REMOTE_SYSTEM_BUTTON_SET, {first, second});
}

int32_t zvc_system_set_rc_rotation(zvc_msg_q_context_t *context, uint8_t rotation)
{
    return remote_set(context, REMOTE_SETUP_RC_ROTATION_SET, rotation);
}
