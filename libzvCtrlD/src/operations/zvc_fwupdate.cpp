#include "zvc_fwupdate.h"

#include "csi.h"
#include "csi_keys.h"
#include "remote_call.h"

using namespace zv;

namespace {

int32_t set_ota_state(OtaState state)
{
    const uint8_t value = state;
    if (csi_set(CSI_OTA_STATE, &value, sizeof value) != 0) {
        ZV_LOG(ZV_LOG_ERROR, "error during csi_set ota_state %u\n", value);
        return ZV_ERR;
    }
    return ZV_OK;
}

} // namespace

int32_t zvc_fwupdate_download_start([[maybe_unused]] zvc_msg_q_context_t *context)
{
    return set_ota_state(OTA_DOWNLOADING);
}

int32_t zvc_fwupdate_download_cancel([[maybe_unused]] zvc_msg_q_context_t *context)
{
    return set_ota_state(OTA_IDLE);
}

int32_t zvc_fwupdate_download_done(zvc_msg_q_context_t *context, bool user_prompt)
{
    return remote_set(context, REMOTE_FWUPDATE_DOWNLOAD_DONE, user_prompt,
                      {"REMOTE_FWUPDATE_DOWNLOAD_DONE user_prompt, %d\n"});
}

int32_t zvc_fwupdate_flashing_start(zvc_msg_q_context_t *context)
{
    return remote_action(context, REMOTE_FWUPDATE_FLASHING_START);
}
