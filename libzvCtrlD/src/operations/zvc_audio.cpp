// Audio options; declared in zvc_commands.h.
#include "remote_call.h"

using namespace zv;

int32_t zvc_audio_set_audio_option(zvc_msg_q_context_t *context, uint8_t option)
{
    return remote_set(context, REMOTE_AUDIO_AUDIO_OPTION_SET, option);
}

int32_t zvc_audio_set_mic_option(zvc_msg_q_context_t *context, uint8_t option)
{
    return remote_set(context, REMOTE_AUDIO_MIC_OPTION_SET, option);
}
