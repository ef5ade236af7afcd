// A service in C++17.
#include <cstdio>
#include <sstream>
#include <zvctrl/camera_settings.h>
#include <zvctrl/camera_status.h>
#include <zvctrl/http_utils.h>
#include <zvctrl/messages.h>
#include <zvctrl/zvc_commands_zvx.h>

int main()
{
    std::stringstream document;
    const appc_system_all_status status = {};
    if (camera_status_serialize_status_to_json(document, &status, 62) != 0 || getCameraOptions(62).empty()) {
        return 1;
    }
    std::puts("service in C++");
    return 0;
}
