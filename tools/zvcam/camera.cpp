// The camera itself: what it is, its mode, its format, the shutter, the lens.

#include "bytes.h"
#include "command.h"
#include "failure.h"
#include "json.h"
#include "links.h"
#include "number.h"
#include "options.h"
#include "output.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include <zvctrl/camera_interface.h>
#include <zvctrl/camera_setting_ids.h>
#include <zvctrl/camera_settings.h>
#include <zvctrl/zvc_commands_zvx.h>
#include <zvctrl/zvc_video.h>
#include <zvctrl/zvcontrol_if.h>

namespace zvcam {

using zvservice::Outcome;
using zvservice::Result;

namespace {

constexpr int64_t BYTE = UINT8_MAX;
constexpr FormatSettings VIDEO_SETTINGS = {SETTING_VIDEO_RESOLUTION, SETTING_VIDEO_FPS, SETTING_VIDEO_FOV};

constexpr Number ZOOM = {"digital zoom", read_with<zvc_app_get_digital_zoom>, write_with<zvc_app_set_digital_zoom>,
                         BYTE};
constexpr Number DELAY = {"capture delay", read_with<zvc_app_get_capture_delay>, write_with<zvc_app_set_capture_delay>,
                          BYTE, SETTING_CAPTURE_DELAY};
constexpr Number LENS_TYPE = {"lens type", read_with<zvc_system_get_lens_type>, write_with<zvc_system_set_lens_type>,
                              INT8_MAX, SETTING_ADDON_LENS_ACTIVE};
constexpr Number LENS_STATUS = {"lens status", read_with<zvc_system_get_lens_status>,
                                write_with<zvc_system_set_lens_status>, INT8_MAX, SETTING_ADDON_LENS_STATUS};
constexpr Number LENS_MODE = {"lens mode", read_with<zvc_system_get_lens_mode>, write_with<zvc_system_set_lens_mode>,
                              INT8_MAX};
constexpr Number LENS_IN_USE = {"lens in use", read_with<zvc_system_get_lens>, write_with<zvc_system_set_lens>,
                                INT8_MAX};

// A field of the camera information record: a text, or a number where `is_number`.
struct InfoField {
    const char *name;
    size_t offset;
    bool is_number;
};

constexpr InfoField INFO_FIELDS[] = {
    {"model", CAMERA_INFO_MODEL_NAME, false},
    {"model number", CAMERA_INFO_MODEL_NUMBER, true},
    {"board", CAMERA_INFO_BOARD_TYPE, false},
    {"firmware", CAMERA_INFO_FIRMWARE_VERSION, false},
    {"serial number", CAMERA_INFO_SERIAL_NUMBER, false},
    {"network name", CAMERA_INFO_AP_SSID, false},
    {"network address", CAMERA_INFO_AP_MAC, false},
    {"features", CAMERA_INFO_COMMON_CAMERA_FEATURES, true},
    {"networks required", CAMERA_INFO_REQUIRED_NETWORKS, false},
};

void show_field(const InfoField &field, const uint8_t *bytes, Json *json)
{
    const auto *text = reinterpret_cast<const char *>(bytes);
    if (json != nullptr) {
        json->key(member_name(field.name));
        field.is_number ? json->value(zv::le32(bytes)) : json->value(text);
    } else {
        printf("%-18s %s\n", field.name, printable(field.is_number ? std::to_string(zv::le32(bytes)) : text).c_str());
    }
}

void info(const Arguments &arguments)
{
    uint8_t camera[CAMERA_INFO_SIZE] = {};
    check(Result::of_call(zvcontrol_get_camera_info(camera),
                          "read the camera's identity from the system information service"));
    show(arguments, [&camera](Json *json) {
        for (const InfoField &field : INFO_FIELDS) {
            show_field(field, camera + field.offset, json);
        }
    });
}

void shutter(const Arguments &arguments)
{
    const std::string &state = arguments.words.front();
    if (state != "on" && state != "off") {
        fail(EXIT_WRONG_USAGE, "the shutter is on or off, not \"%s\"", state.c_str());
    }
    const bool on = state == "on";
    Camera camera;
    check(camera.call(on ? "start the capture" : "stop the capture",
                      [on](zvc_msg_q_context_t *context) { return zvc_shutter(context, on ? 1 : 0); }));
    show_done(arguments, on ? "capture started" : "capture stopped");
}

void mode(const Arguments &arguments)
{
    Camera camera;
    if (!arguments.words.empty()) {
        const uint32_t value = find_value(SETTING_CURRENT_FLAT_MODE, arguments.words.front(), UINT32_MAX);
        check(camera.call("change the mode", [value](zvc_msg_q_context_t *context) {
            return camera_if_settings_set_value_int(context, SETTING_CURRENT_FLAT_MODE, -1, -1, value, 0, nullptr,
                                                    nullptr);
        }));
    }
    int32_t pair_mode = 0;
    int32_t sub_mode = 0;
    int32_t flat_mode = 0;
    check(camera.call("read the mode", [&](zvc_msg_q_context_t *context) {
        return zvc_app_get_mode_flat_mode(context, &pair_mode, &flat_mode);
    }));
    check(camera.call("read the sub mode", [&](zvc_msg_q_context_t *context) {
        return zvc_app_get_mode_sub_mode(context, &pair_mode, &sub_mode);
    }));
    show(arguments, [&](Json *json) {
        if (json != nullptr) {
            write_value(json->key("flat_mode"), SETTING_CURRENT_FLAT_MODE, flat_mode);
            json->member("mode", pair_mode).member("sub_mode", sub_mode);
        } else {
            printf("%s: flat mode %d, mode %d, sub mode %d\n",
                   value_text(SETTING_CURRENT_FLAT_MODE, static_cast<uint32_t>(flat_mode)).c_str(), flat_mode,
                   pair_mode, sub_mode);
        }
    });
}

Format read_format(Camera &camera)
{
    Format format = {};
    check(camera.call("read the format", [&](zvc_msg_q_context_t *context) {
        return zvc_video_get_res_fps_fov(context, &format.resolution, &format.fps, &format.fov);
    }));
    return format;
}

void tell_adjustment(const char *what, uint32_t setting, int32_t wanted, int32_t now)
{
    if (wanted != now) {
        printf("adjusted: %s %s is not offered there, %s is\n", what,
               value_text(setting, static_cast<uint32_t>(wanted)).c_str(),
               value_text(setting, static_cast<uint32_t>(now)).c_str());
    }
}

void set_format(Camera &camera, const Format &wanted)
{
    const Result result = camera.call("set the format", [&](zvc_msg_q_context_t *context) {
        return zvc_video_set_res_fps_fov(context, wanted.resolution, wanted.fps, wanted.fov);
    });
    if (result.outcome() == Outcome::FAILED && result.code() == ZV_ERR_INVALID_PARAM) {
        const auto resolution = static_cast<uint32_t>(wanted.resolution);
        check(Result(Outcome::NOT_OFFERED, "the camera offers no frame rate at " +
                                               value_text(SETTING_VIDEO_RESOLUTION, resolution) + " now"));
    }
    check(result);
}

void format(const Arguments &arguments)
{
    Camera camera;
    Format now = read_format(camera);
    const Format wanted = parse_format(arguments, VIDEO_SETTINGS, now);
    if (!arguments.words.empty()) {
        set_format(camera, wanted);
        now = read_format(camera);
    }
    show(arguments, [&](Json *json) {
        if (json != nullptr) {
            write_format(*json, now, VIDEO_SETTINGS);
            write_format(json->key("wanted").open('{'), wanted, VIDEO_SETTINGS);
            json->close();
            return;
        }
        tell_adjustment("resolution", SETTING_VIDEO_RESOLUTION, wanted.resolution, now.resolution);
        tell_adjustment("frame rate", SETTING_VIDEO_FPS, wanted.fps, now.fps);
        tell_adjustment("field of view", SETTING_VIDEO_FOV, wanted.fov, now.fov);
        printf("%s\n", format_text(now, VIDEO_SETTINGS).c_str());
    });
}

void lens(const Arguments &arguments)
{
    Camera camera;
    show(arguments, [&camera](Json *json) {
        for (const Number *number : {&LENS_TYPE, &LENS_STATUS, &LENS_MODE, &LENS_IN_USE}) {
            show_number(camera, *number, json);
        }
    });
}

constexpr char INFO_AS_JSON[] =
    R"({"model":TEXT,"model_number":NUMBER,"board":TEXT,"firmware":TEXT,"serial_number":TEXT,"network_name":TEXT,)"
    R"("network_address":TEXT,"features":NUMBER,"networks_required":TEXT})";
constexpr char LENS_AS_JSON[] = R"({"lens_type":VALUE,"lens_status":VALUE,"lens_mode":VALUE,"lens_in_use":VALUE})";

constexpr Command COMMANDS[] = {
    {"info", "", "which camera this is", info, {}, INFO_AS_JSON},
    {"shutter", "on|off", "start or stop a capture in the present mode", shutter},
    {"mode",
     "[FLAT_MODE]",
     "the capture mode: show it, or set it to an option of setting 144",
     mode,
     {},
     R"({"flat_mode":VALUE,"mode":NUMBER,"sub_mode":NUMBER})"},
    {"format",
     "[RESOLUTION] [FPS] [FOV]",
     "the video format: show it, or set the nearest that the camera offers; what is not given is kept",
     format,
     {},
     R"({"resolution":VALUE,"fps":VALUE,"fov":VALUE,"wanted":{...}}, wanted before the camera adjusted it)"},
    number_command<ZOOM>("zoom", "[ZOOM]", "the digital zoom"),
    number_command<DELAY>("delay", "[DELAY]", "the capture delay, an option of setting 105"),
    {"lens", "", "the lens", lens, {}, LENS_AS_JSON},
    {"lens show", "", "all of it", lens, {}, LENS_AS_JSON},
    number_command<LENS_TYPE>("lens type", "[TYPE]", "the lens that is mounted, an option of setting 189"),
    number_command<LENS_STATUS>("lens status", "[STATUS]", "whether the add-on lens is on, an option of setting 190"),
    number_command<LENS_MODE>("lens mode", "[MODE]", "how the lens is chosen"),
    number_command<LENS_IN_USE>("lens use", "[LENS]", "the lens in use"),
};

} // namespace

constinit const Commands CAMERA_COMMANDS = COMMANDS;

} // namespace zvcam
