/* A service in C: every header that C can use, and a call into each folder. */
#include <stdio.h>
#include <string.h>
#include <zvctrl/camera_interface.h>
#include <zvctrl/camera_settings.h>
#include <zvctrl/camera_status.h>
#include <zvctrl/csi.h>
#include <zvctrl/http_utils.h>
#include <zvctrl/messages.h>
#include <zvctrl/utils.h>
#include <zvctrl/zvDbg.h>
#include <zvctrl/zvHex.h>
#include <zvctrl/zvMbox.h>
#include <zvctrl/zvMsg.h>
#include <zvctrl/zvTlv.h>
#include <zvctrl/zvc_broadcast.h>
#include <zvctrl/zvc_commands.h>
#include <zvctrl/zvc_commands_zvx.h>
#include <zvctrl/zvc_fwupdate.h>
#include <zvctrl/zvc_multishot.h>
#include <zvctrl/zvc_photo.h>
#include <zvctrl/zvc_settings.h>
#include <zvctrl/zvc_setup.h>
#include <zvctrl/zvc_state.h>
#include <zvctrl/zvc_storage.h>
#include <zvctrl/zvc_video.h>
#include <zvctrl/zvcontrol_if.h>

int main(void)
{
    zvc_msg_q_context_t context;
    memset(&context, 0, sizeof context);
    ZV_LOG(ZV_LOG_TRACE, "silent %d", 1);
    if (strcmp(zvErrno2Str(ZV_ERR_NAK), "ZV_ERR_NAK") != 0 || zvc_reset_context(&context) != ZV_OK) {
        return 1;
    }
    puts("service in C");
    return 0;
}
