// Presets; declared in zvc_commands.h.
#include "remote_call.h"

using namespace zv;

int32_t zvc_preset_onscreen_shortcuts_reset(zvc_msg_q_context_t *context)
{
    return remote_action(context, REMOTE_PRESET_ONSCREEN_SHORTCUTS_RESET);
}
