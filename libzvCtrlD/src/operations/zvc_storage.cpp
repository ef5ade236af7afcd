#include "zvc_storage.h"

#include "bytes.h"
#include "remote_call.h"
#include "zvc_state.h"

#include <cstdio>
#include <cstring>
#include <iterator>

using namespace zv;

namespace {

// Messages of this file end in a line feed, but for those of zvc_storage_tag_file.

constexpr uint8_t MODEL_WITH_SLASHES = 32;

// A path on the card as the firmware names it, such as "DCIM\100ABCDE\CLIP0001.MP4".
struct CardPath {
    char text[261];
    size_t length;
};

// The bytes before the path in a request's payload.
constexpr size_t LEAD_MAX = 5;

// The delete list: the header, a count of two bytes, and the entries, each a flag and a path field.
constexpr size_t LIST_COUNT_OFFSET = REMOTE_API_HEADER_SIZE;
constexpr size_t LIST_ENTRIES_OFFSET = LIST_COUNT_OFFSET + 2;
constexpr size_t LIST_PATH_SIZE = 32;
constexpr size_t LIST_ENTRY_SIZE = 1 + LIST_PATH_SIZE;
constexpr size_t LIST_SEPARATOR = 13; // in the path field, after the folder of eight characters

static_assert(sizeof(file_list_item_t) == 23);

// The time that must remain for each looping interval, in seconds.
constexpr uint32_t LOOPING_SECONDS[] = {1200, 360, 1500, 3900, 7500};

bool is_usable(const char *name, uint32_t name_len)
{
    return name != nullptr && name_len <= STORAGE_NAME_MAX;
}

// False for a name that is too long for the card, whatever the caller says of its length.
bool make_path(const char *name, CardPath &path)
{
    const bool leading_separator = *name == '\\' || *name == '/';
    const int length = snprintf(path.text, sizeof path.text, "DCIM\\%s", leading_separator ? name + 1 : name);
    if (length <= 0 || static_cast<size_t>(length) >= sizeof path.text) {
        return false;
    }
    path.length = static_cast<size_t>(length);
    if (zvc_state_get_model_number() != MODEL_WITH_SLASHES) {
        std::replace(path.text, path.text + path.length, '/', '\\');
    }
    return true;
}

int32_t send_path(zvc_msg_q_context_t *context, RemoteCommand command, std::initializer_list<uint8_t> lead,
                  const CardPath &path)
{
    uint8_t request[REMOTE_API_HEADER_SIZE + LEAD_MAX + sizeof path.text];
    const size_t path_size = path.length + 1;
    const size_t payload_size = lead.size() + path_size;
    zvc_init_remote_api_input_header(request, group_of(command), action_of(command),
                                     static_cast<uint16_t>(payload_size));
    uint8_t *after_lead = std::copy(lead.begin(), lead.end(), request + REMOTE_API_HEADER_SIZE);
    memcpy(after_lead, path.text, path_size);
    return zvc_send_remote_api(context, request, static_cast<int32_t>(REMOTE_API_HEADER_SIZE + payload_size), nullptr,
                               nullptr);
}

int32_t delete_path(zvc_msg_q_context_t *context, RemoteCommand command, std::initializer_list<uint8_t> lead,
                    const char *name, uint32_t name_len)
{
    CardPath path;
    if (!is_usable(name, name_len) || !make_path(name, path)) {
        return ZV_ERR_INVALID_PARAM;
    }
    return send_path(context, command, lead, path);
}

} // namespace

int32_t zvc_storage_delete_all(zvc_msg_q_context_t *context)
{
    return remote_action(context, REMOTE_STORAGE_DELETE_ALL);
}

int32_t zvc_storage_delete_last(zvc_msg_q_context_t *context)
{
    return remote_action(context, REMOTE_STORAGE_DELETE_LAST);
}

int32_t zvc_storage_delete_file(zvc_msg_q_context_t *context, const char *name, uint32_t name_len)
{
    return delete_path(context, REMOTE_STORAGE_DELETE_FILE, {1}, name, name_len);
}

int32_t zvc_storage_delete_group(zvc_msg_q_context_t *context, const char *name, uint32_t name_len)
{
    return delete_path(context, REMOTE_STORAGE_DELETE_GROUP, {}, name, name_len);
}

int32_t zvc_storage_tag_file(zvc_msg_q_context_t *context, const char *name, uint32_t name_len, uint32_t offset,
                             uint32_t enable)
{
    if (!is_usable(name, name_len)) {
        return ZV_ERR_INVALID_PARAM;
    }
    CardPath path;
    if (!make_path(name, path)) {
        ZV_LOG(ZV_LOG_ERROR, "Invalid filename specified [%s]", name);
        return ZV_ERR_INVALID_PARAM;
    }
    ZV_LOG(ZV_LOG_INFO, "TAGGING PLAYBACK file[%s] offset:%d, enable:%d", path.text, offset, enable);
    uint8_t at[sizeof offset];
    put_be32(at, offset);
    return send_path(context, REMOTE_STORAGE_TAG_FILE, {static_cast<uint8_t>(enable), at[0], at[1], at[2], at[3]},
                     path);
}

int32_t zvc_storage_delete_list(zvc_msg_q_context_t *context, const file_list_item_t *list, uint32_t count)
{
    ZV_LOG(ZV_LOG_DEBUG, "enter zvc_storage_delete_list\n");
    if (list == nullptr && count != 0) {
        ZV_LOG(ZV_LOG_ERROR, "null list\n");
        return ZV_ERR_INVALID_PARAM;
    }
    uint8_t request[LIST_ENTRIES_OFFSET + FILE_LIST_MAX * LIST_ENTRY_SIZE] = {};
    put_le16(request + LIST_COUNT_OFFSET, static_cast<uint16_t>(count));
    const uint32_t entries = std::min<uint32_t>(count, FILE_LIST_MAX);
    for (uint32_t i = 0; i < entries; ++i) {
        uint8_t *entry = request + LIST_ENTRIES_OFFSET + i * LIST_ENTRY_SIZE;
        auto *path = reinterpret_cast<char *>(entry + 1);
        entry[0] = list[i].flag != 0 ? 1 : 0;
        snprintf(path, LIST_PATH_SIZE, "DCIM\\%.*s", static_cast<int>(sizeof list[i].name), list[i].name);
        path[LIST_SEPARATOR] = '\\';
    }
    const size_t size = LIST_ENTRIES_OFFSET + entries * LIST_ENTRY_SIZE;
    const size_t payload_size = size - REMOTE_API_HEADER_SIZE;
    ZV_LOG(ZV_LOG_DEBUG, "arg_size=%d and msg_size=%d\n", static_cast<int>(payload_size), static_cast<int>(size));
    zvc_init_remote_api_input_header(request, group_of(REMOTE_STORAGE_DELETE_LIST),
                                     action_of(REMOTE_STORAGE_DELETE_LIST), static_cast<uint16_t>(payload_size));
    const int32_t result = zvc_send_remote_api(context, request, static_cast<int32_t>(size), nullptr, nullptr);
    ZV_LOG(ZV_LOG_DEBUG, "err is %d\n", result);
    return result;
}

int32_t zvc_storage_looping_sd_check(zvc_msg_q_context_t *context, uint8_t looping)
{
    uint32_t remaining = 0;
    const int32_t result = remote_get_be32(context, REMOTE_STORAGE_REMAINING_VIDEO_TIME_GET, &remaining,
                                           "remaining_video_time, %d\n", sizeof remaining, READ_TEXTS_LF);
    if (result != ZV_OK) {
        return result;
    }
    return looping < std::size(LOOPING_SECONDS) && remaining >= LOOPING_SECONDS[looping] ? ZV_OK : ZV_ERR;
}
