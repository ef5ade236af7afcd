// The stages of a firmware update over the air.

#include "command.h"
#include "failure.h"
#include "json.h"
#include "links.h"

#include <zvctrl/zvc_fwupdate.h>

namespace zvcam {

using zvservice::Result;

namespace {

void download_start(const Arguments &arguments)
{
    confirm(arguments, "Tell the camera that a firmware download begins?");
    check(Result::of_call(zvc_fwupdate_download_start(nullptr), "store that the download begins"));
    show_done(arguments, "the download begins");
}

void download_cancel(const Arguments &arguments)
{
    confirm(arguments, "Tell the camera that the firmware download is given up?");
    check(Result::of_call(zvc_fwupdate_download_cancel(nullptr), "store that the download is given up"));
    show_done(arguments, "the download is given up");
}

void download_done(const Arguments &arguments)
{
    Camera camera;
    confirm(arguments, "Tell the camera that the firmware is there?");
    const bool prompt = arguments.given("--prompt");
    check(camera.call("report the download",
                      [prompt](zvc_msg_q_context_t *context) { return zvc_fwupdate_download_done(context, prompt); }));
    show_done(arguments, "the camera knows that the firmware is there");
}

void flash(const Arguments &arguments)
{
    Camera camera;
    confirm(arguments, "Flash the firmware now? The camera must not lose power until it is done.");
    check(camera.call("start flashing", zvc_fwupdate_flashing_start));
    show_done(arguments, "the camera flashes its firmware");
}

constexpr Option PROMPT = {"--prompt", nullptr, "the camera asks its user first"};

constexpr Command COMMANDS[] = {
    {"firmware", "", "a firmware update over the air", nullptr},
    {"firmware download-start", "", "the download begins", download_start, {YES}},
    {"firmware download-cancel", "", "the download is given up", download_cancel, {YES}},
    {"firmware download-done", "", "the download is complete", download_done, {YES, PROMPT}},
    {"firmware flash", "", "flash what was downloaded", flash, {YES}},
};

} // namespace

constinit const Commands FIRMWARE_COMMANDS = COMMANDS;

} // namespace zvcam
