#include "zvc_settings.h"

#include "remote_call.h"

using namespace zv;

namespace {

// Messages of the shape end in a line feed in this file; the reads do not log their opening.
constexpr ReadTexts QUIET_TEXTS{nullptr, READ_TEXTS_LF.failure, READ_TEXTS_LF.size};

} // namespace

int32_t zvc_settings_set_onscreen_control(zvc_msg_q_context_t *context, int32_t onscreen_control_type,
                                          int32_t control_type_id)
{
    ZV_LOG(ZV_LOG_INFO, "control_type_id=%d onscreen_control_type=%d", control_type_id, onscreen_control_type);
    return remote_send(context, REMOTE_PRESET_ONSCREEN_CONTROL_SET,
                       {low_byte(control_type_id), low_byte(onscreen_control_type)});
}

int32_t zvc_settings_get_onscreen_control(zvc_msg_q_context_t *context, int8_t *first, int8_t *second)
{
    return remote_get_bytes(context, REMOTE_PRESET_ONSCREEN_CONTROL_GET, {first, second},
                            "response[0]=%d response[1]=%d", QUIET_TEXTS);
}
