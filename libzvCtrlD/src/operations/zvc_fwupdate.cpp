#include "zvc_fwupdate.h"

#include "csi.h"
#include "remote_command.h"

using namespace zv;

namespace {

constexpr RemoteCommand REMOTE_FWUPDATE_FLASHING_START{REMOTE_GROUP_FWUPDATE, 0};
constexpr RemoteCommand REMOTE_FWUPDATE_DOWNLOAD_DONE{REMOTE_GROUP_FWUPDATE, 3};

constexpr uint8_t CSI_OTA_STATE = 42;
constexpr uint8_t OTA_STATE_IDLE = 0;
constexpr uint8_t OTA_STATE_DOWNLOADING = 6;

int32_t set_ota_state(uint8_t state)
{
    if (csi_set(CSI_OTA_STATE, &state, sizeof state) != 0) {
        ZV_LOG(ZV_LOG_ERROR, "error during csi_set ota_state %u\n", state);
        return ZV_ERR;
    }
    return ZV_OK;
}

} // namespace

int32_t zvc_fwupdate_download_start([[maybe_unused]] zvc_msg_q_context_t *context)
{
    return set_ota_state(OTA_STATE_DOWNLOADING);
}

int32_t zvc_fwupdate_download_cancel([[maybe_unused]] zvc_msg_q_context_t *context)
{
    return set_ota_state(OTA_STATE_IDLE);
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
