// The broadcast service.

#include "command.h"
#include "failure.h"
#include "json.h"
#include "links.h"
#include "number.h"
#include "options.h"
#include "output.h"

#include <cstdint>
#include <cstdio>
#include <span>

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

Format read_format(Camera &camera, const FormatKind &kind)
{
    Format format = {};
    check(camera.call("read the broadcast's format", [&](zvc_msg_q_context_t *context) {
        return kind.read(context, &format.resolution, &format.fps, &format.fov);
    }));
    return format;
}

void print_format(const FormatKind &kind, const Format &format)
{
    printf("%-20s %s\n", kind.name, format_text(format, kind.settings).c_str());
}

template <const FormatKind &kind>
void format(const Arguments &arguments)
{
    Camera camera;
    if (!arguments.words.empty()) {
        const Format wanted = parse_format(arguments, kind.settings, read_format(camera, kind));
        check(camera.call("set the broadcast's format", [&](zvc_msg_q_context_t *context) {
            return kind.write(context, wanted.resolution, wanted.fps, wanted.fov);
        }));
    }
    const Format now = read_format(camera, kind);
    show(arguments, [&](Json *json) {
        if (json != nullptr) {
            write_format(*json, now, kind.settings);
        } else {
            print_format(kind, now);
        }
    });
}

void show_record(const char *name, std::span<const unsigned char> bytes, Json *json)
{
    if (json != nullptr) {
        json->member(name, hex(bytes));
        return;
    }
    printf("%s\n", name);
    print_bytes(bytes);
}

void show_all(Camera &camera, Json *json)
{
    for (const FormatKind *kind : {&BROADCAST, &RECORD}) {
        const Format format = read_format(camera, *kind);
        if (json != nullptr) {
            write_format(json->key(member_name(kind->name)).open('{'), format, kind->settings);
            json->close();
        } else {
            print_format(*kind, format);
        }
    }
    for (const Number *number : {&ENABLE, &SUB_MODE, &GOP_SIZE, &IDR_INTERVAL, &BIT_RATE, &WINDOW_SIZE, &PROGRESS}) {
        show_number(camera, *number, json);
    }
    zvc_broadcast_settings settings = {};
    check(camera.call("read the broadcast's settings",
                      [&](zvc_msg_q_context_t *context) { return zvc_broadcast_get_settings(context, &settings); }));
    show_record("settings", settings.bytes, json);
    zvc_broadcast_status status = {};
    check(camera.call("read the broadcast's status",
                      [&](zvc_msg_q_context_t *context) { return zvc_broadcast_get_status(context, &status); }));
    show_record("status", status.bytes, json);
}

void show_broadcast(const Arguments &arguments)
{
    Camera camera;
    show(arguments, [&camera](Json *json) { show_all(camera, json); });
}

void start(const Arguments &arguments)
{
    const int64_t value = arguments.words.empty() ? 1 : parse_number(arguments.words.front(), "the value", 0, BYTE);
    Camera camera;
    check(camera.call("start the broadcast", [value](zvc_msg_q_context_t *context) {
        return zvc_broadcast_set_start(context, static_cast<int32_t>(value));
    }));
    show_done(arguments, "broadcast started");
}

void stop(const Arguments &arguments)
{
    Camera camera;
    check(camera.call("stop the broadcast", zvc_broadcast_set_stop));
    show_done(arguments, "broadcast stopped");
}

constexpr char ALL_AS_JSON[] =
    R"({"format":{"resolution":VALUE,"fps":VALUE,"fov":VALUE},"record_format":{...},"enabled":VALUE,)"
    R"("default_sub_mode":VALUE,"gop_size":VALUE,"idr_interval":VALUE,"bit_rate":VALUE,"window_size":VALUE,)"
    R"("progress":VALUE,"settings":HEX,"status":HEX})";
constexpr char FORMAT[] = "[RESOLUTION] [FPS] [FOV]";

constexpr Command COMMANDS[] = {
    {"broadcast", "", "the broadcast service; its values are the firmware's own", show_broadcast, {}, ALL_AS_JSON},
    {"broadcast show", "", "all of it", show_broadcast, {}, ALL_AS_JSON},
    {"broadcast format",
     FORMAT,
     "the format: options of settings 41, 42 and 43",
     format<BROADCAST>,
     {},
     FORMAT_AS_JSON},
    {"broadcast record-format", FORMAT, "the format of the recording beside it", format<RECORD>, {}, FORMAT_AS_JSON},
    number_command<ENABLE>("broadcast enable", "[0|1]", "whether broadcasting is possible"),
    {"broadcast start", "[VALUE]", "start, with a value for the firmware: 1", start},
    {"broadcast stop", "", "stop", stop},
    number_command<SUB_MODE>("broadcast sub-mode", "[SUB_MODE]", "the default sub mode"),
    number_command<GOP_SIZE>("broadcast gop", "[FRAMES]", "the encoder's GOP size"),
    number_command<IDR_INTERVAL>("broadcast idr", "[INTERVAL]", "the encoder's IDR interval"),
    number_command<BIT_RATE>("broadcast bit-rate", "[RATE]", "the encoder's bit rate"),
    number_command<WINDOW_SIZE>("broadcast window", "[SIZE]", "the window size, 0 to 9"),
};

} // namespace

constinit const Commands BROADCAST_COMMANDS = COMMANDS;

} // namespace zvcam
