// The media on the card. Names are relative to the media folder, such as "100ABCDE/CLIP0001.MP4".

#include "command.h"
#include "failure.h"
#include "json.h"
#include "links.h"
#include "options.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>
#include <zvctrl/camera_setting_ids.h>
#include <zvctrl/zvc_storage.h>

namespace zvcam {

using zvservice::Outcome;
using zvservice::Result;

namespace {

constexpr size_t LIST_FOLDER = 8; // characters of the folder in a list entry

uint32_t length_of(const std::string &name)
{
    if (name.empty() || name.size() > STORAGE_NAME_MAX) {
        fail(EXIT_WRONG_USAGE, "a name has 1 to %d characters, such as 100ABCDE/CLIP0001.MP4", STORAGE_NAME_MAX);
    }
    return static_cast<uint32_t>(name.size());
}

file_list_item_t list_item(const std::string &name)
{
    file_list_item_t item = {1, {}};
    if (name.size() > sizeof item.name || name.find_first_of("/\\") != LIST_FOLDER) {
        fail(EXIT_WRONG_USAGE,
             "in a list, a name is a folder of 8 characters, a slash and a file, 22 characters at most: "
             "not \"%s\"",
             name.c_str());
    }
    memcpy(item.name, name.data(), name.size());
    return item;
}

void remove(const Arguments &arguments)
{
    Camera camera;
    if (arguments.words.size() == 1) {
        const std::string &name = arguments.words.front();
        const uint32_t length = length_of(name);
        check(camera.call("delete the file", [&](zvc_msg_q_context_t *context) {
            return zvc_storage_delete_file(context, name.c_str(), length);
        }));
        show_done(arguments, "deleted");
        return;
    }
    std::vector<file_list_item_t> list;
    std::transform(arguments.words.begin(), arguments.words.end(), std::back_inserter(list), list_item);
    for (size_t first = 0; first < list.size(); first += FILE_LIST_MAX) {
        const size_t count = std::min<size_t>(list.size() - first, FILE_LIST_MAX);
        check(camera.call("delete the files", [&](zvc_msg_q_context_t *context) {
            return zvc_storage_delete_list(context, &list[first], static_cast<uint32_t>(count));
        }));
    }
    show_done(arguments, "deleted " + std::to_string(list.size()) + " files");
}

void remove_last(const Arguments &arguments)
{
    Camera camera;
    check(camera.call("delete the last file", zvc_storage_delete_last));
    show_done(arguments, "deleted the file that was taken last");
}

void remove_all(const Arguments &arguments)
{
    Camera camera;
    confirm(arguments, "Delete all media on the card?");
    check(camera.call("delete all media", zvc_storage_delete_all));
    show_done(arguments, "deleted all media");
}

void remove_group(const Arguments &arguments)
{
    Camera camera;
    const std::string &name = arguments.words.front();
    const uint32_t length = length_of(name);
    check(camera.call("delete the group", [&](zvc_msg_q_context_t *context) {
        return zvc_storage_delete_group(context, name.c_str(), length);
    }));
    show_done(arguments, "deleted");
}

void tag(const Arguments &arguments)
{
    Camera camera;
    const std::string &name = arguments.words.front();
    const auto offset = static_cast<uint32_t>(parse_number(arguments.words[1], "an offset", 0, UINT32_MAX));
    const uint32_t enable = arguments.given("--remove") ? 0 : 1;
    const uint32_t length = length_of(name);
    check(camera.call("tag the file", [&](zvc_msg_q_context_t *context) {
        return zvc_storage_tag_file(context, name.c_str(), length, offset, enable);
    }));
    show_done(arguments, enable != 0 ? "tagged" : "tag removed");
}

void room(const Arguments &arguments)
{
    Camera camera;
    const uint32_t looping = find_value(SETTING_VIDEO_LOOPING, arguments.words.front(), UINT8_MAX);
    const Result result = camera.call("ask for the room on the card", [looping](zvc_msg_q_context_t *context) {
        return zvc_storage_looping_sd_check(context, static_cast<uint8_t>(looping));
    });
    const bool enough = result.outcome() != Outcome::FAILED || result.code() != ZV_ERR;
    if (enough) {
        check(result);
    }
    const std::string interval = value_text(SETTING_VIDEO_LOOPING, looping);
    if (!enough && !arguments.json()) {
        fail(EXIT_FAILED, "the card has no room for looping at %s", interval.c_str());
    }
    show(arguments, [&](Json *json) {
        if (json != nullptr) {
            write_value(json->key("interval"), SETTING_VIDEO_LOOPING, looping);
            json->member("room", enough);
        } else {
            printf("the card has room for looping at %s\n", interval.c_str());
        }
    });
    if (!enough) {
        answer_no();
    }
}

constexpr Command COMMANDS[] = {
    {"media", "", "the media on the card", nullptr},
    {"media delete", "NAME...", "delete files", remove},
    {"media delete-last", "", "delete the file that was taken last", remove_last},
    {"media delete-all", "", "delete everything", remove_all, {YES}},
    {"media delete-group", "NAME", "delete the group that a file belongs to", remove_group},
    {"media tag", "NAME OFFSET", "tag a moment in a file", tag, {{"--remove", nullptr, "remove the tag instead"}}},
    {"media room",
     "INTERVAL",
     "whether the card has room for a looping interval, an option of setting 6",
     room,
     {},
     R"({"interval":VALUE,"room":BOOL})"},
};

} // namespace

constinit const Commands MEDIA_COMMANDS = COMMANDS;

} // namespace zvcam
