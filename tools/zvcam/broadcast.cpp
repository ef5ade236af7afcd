// The broadcast service.

#include "command.h"
#include "failure.h"
#include "links.h"
#include "number.h"
#include "options.h"
#include "output.h"

#include <cstdint>

#include <zvctrl/camera_setting_ids.h>
#include <zvctrl/zvc_broadcast.h>

namespace zvcam {

namespace {

constexpr int64_t BYTE = UINT8_MAX;
constexpr int64_t WORD = UINT32_MAX;

constexpr Number ENABLE = {"enabled", read_with<zvc_broadcast_get_enable>, write_with<zvc_broadcast_set_enable>, 1};
constexpr Number SUB_MODE = {"default sub mode", read_with<zvc_broadcast_get_default_sub_mode>,
                             write_with<zvc_broadcast_set_default_sub_mode>, BYTE};
constexpr Number GOP_SIZE = {"GOP size", read_with<zvc_broadcast_get_gop_size>, write_with<zvc_broadcast_set_gop_size>,
                             WORD};
constexpr Number IDR_INTERVAL = {"IDR interval", read_with<zvc_broadcast_get_idr_interval>,
                                 write_with<zvc_broadcast_set_idr_interval>, WORD};
constexpr Number BIT_RATE = {"bit rate", read_with<zvc_broadcast_get_bit_rate>, write_with<zvc_broadcast_set_bit_rate>,
                             WORD};
constexpr Number WINDOW_SIZE = {"window size", read_with<zvc_broadcast_get_window_size>,
                                write_with<zvc_broadcast_set_window_size>, ZVC_BROADCAST_WINDOW_SIZE_MAX};
constexpr Number PROGRESS = {"progress", read_with<zvc_broadcast_get_progress_counter>, nullptr, 0};

// The broadcast's format, or that of the recording that goes with it.
struct FormatKind {
    const char *name;
    int32_t (*read)(zvc_msg_q_context_t *, int32_t *, int32_t *, int32_t *);
    int32_t (*write)(zvc_msg_q_context_t *, int32_t, int32_t, int32_t);
    FormatSettings settings;
};

constexpr FormatKind BROADCAST = {"format",
                                  zvc_broadcast_get_res_fps_fov,
                                  zvc_broadcast_set_res_fps_fov,
                                  {SETTING_BROADCAST_RESOLUTION, SETTING_BROADCAST_FPS, SETTING_BROADCAST_FOV}};
constexpr FormatKind RECORD = {
    "record format",
    zvc_broadcast_get_record_res_fps_fov,
    zvc_broadcast_set_record_res_fps_fov,
    {SETTING_BROADCAST_RECORD_RESOLUTION, SETTING_BROADCAST_RECORD_FPS, SETTING_BROADCAST_FOV}};

Format read_format(CameraLink &camera, const FormatKind &kind)
{
    Format format = {};
    camera.check(kind.read(camera, &format.resolution, &format.fps, &format.fov), "read the broadcast's format");
    return format;
}

void show_format(CameraLink &camera, const FormatKind &kind)
{
    print("%-20s %s\n", kind.name, format_text(read_format(camera, kind), kind.settings).c_str());
}

template <const FormatKind &kind>
void format(const Arguments &arguments)
{
    CameraLink camera;
    if (!arguments.words.empty()) {
        const Format wanted = parse_format(arguments, kind.settings, read_format(camera, kind));
        camera.check(kind.write(camera, wanted.resolution, wanted.fps, wanted.fov), "set the broadcast's format");
    }
    show_format(camera, kind);
}

void show(const Arguments &)
{
    CameraLink camera;
    show_format(camera, BROADCAST);
    show_format(camera, RECORD);
    for (const Number *number : {&ENABLE, &SUB_MODE, &GOP_SIZE, &IDR_INTERVAL, &BIT_RATE, &WINDOW_SIZE, &PROGRESS}) {
        show_number(camera, *number);
    }
    zvc_broadcast_settings settings = {};
    camera.check(zvc_broadcast_get_settings(camera, &settings), "read the broadcast's settings");
    print("settings\n");
    print_bytes(settings.bytes, sizeof settings.bytes);
    zvc_broadcast_status status = {};
    camera.check(zvc_broadcast_get_status(camera, &status), "read the broadcast's status");
    print("status\n");
    print_bytes(status.bytes, sizeof status.bytes);
}

void start(const Arguments &arguments)
{
    const int64_t value = arguments.words.empty() ? 1 : parse_number(arguments.words.front(), "the value", 0, BYTE);
    CameraLink camera;
    camera.check(zvc_broadcast_set_start(camera, static_cast<int32_t>(value)), "start the broadcast");
    print("broadcast started\n");
}

void stop(const Arguments &)
{
    CameraLink camera;
    camera.check(zvc_broadcast_set_stop(camera), "stop the broadcast");
    print("broadcast stopped\n");
}

constexpr char FORMAT[] = "[RESOLUTION] [FPS] [FOV]";

constexpr Command COMMANDS[] = {
    {"broadcast", "", "the broadcast service; its values are the firmware's own", show},
    {"broadcast show", "", "all of it", show},
    {"broadcast format", FORMAT, "the format: options of settings 41, 42 and 43", format<BROADCAST>},
    {"broadcast record-format", FORMAT, "the format of the recording beside it", format<RECORD>},
    {"broadcast enable", "[0|1]", "whether broadcasting is possible", show_or_set<ENABLE>},
    {"broadcast start", "[VALUE]", "start, with a value for the firmware: 1", start},
    {"broadcast stop", "", "stop", stop},
    {"broadcast sub-mode", "[SUB_MODE]", "the default sub mode", show_or_set<SUB_MODE>},
    {"broadcast gop", "[FRAMES]", "the encoder's GOP size", show_or_set<GOP_SIZE>},
    {"broadcast idr", "[INTERVAL]", "the encoder's IDR interval", show_or_set<IDR_INTERVAL>},
    {"broadcast bit-rate", "[RATE]", "the encoder's bit rate", show_or_set<BIT_RATE>},
    {"broadcast window", "[SIZE]", "the window size, 0 to 9", show_or_set<WINDOW_SIZE>},
};

} // namespace

constinit const Commands BROADCAST_COMMANDS = COMMANDS;

} // namespace zvcam
