#include "sent_request.h"

#include "bytes.h"
#include "message_format.h"
#include "queue_names.h"
#include "remote_commands.h"
#include "zvDbg.h"

#include <algorithm>

namespace zv {

namespace {

constexpr int32_t COMMAND_SIZE = sizeof REMOTE_API_COMMAND - 1;

bool is_remote_api(const uint8_t *message)
{
    uint8_t command[COMMAND_SIZE + 1];
    return message[MESSAGE_CATEGORY] == CATEGORY_CAMERA &&
           sntlv_find(command, sizeof command, TLV_CMD, message) == COMMAND_SIZE &&
           std::equal(command, command + COMMAND_SIZE, REMOTE_API_COMMAND);
}

bool is_whole_request(const uint8_t *bytes, int32_t size)
{
    return size >= REMOTE_API_HEADER_SIZE && bytes[0] == 0 &&
           be16(bytes + REMOTE_REQUEST_SIZE) == size - REMOTE_API_HEADER_SIZE;
}

} // namespace

SentRequest::SentRequest(const uint8_t *message)
{
    if (is_remote_api(message)) {
        m_size = sntlv_find(m_bytes, sizeof m_bytes, TLV_CMDARG, message);
    }
}

bool SentRequest::refuses(const uint8_t *message, int32_t length) const
{
    if (m_size == 0 || length < TLV_HEADER_SIZE || sntlv_msg_len(message) != length) {
        return false;
    }
    uint8_t repeated[ZVMSG_MAX];
    const int32_t size = sntlv_find(repeated, sizeof repeated, TLV_CMDARG, message);
    if (!is_whole_request(repeated, size) || std::equal(m_bytes, m_bytes + m_size, repeated, repeated + size)) {
        return false;
    }
    ZV_LOG(ZV_LOG_ERROR, "Dropped the answer to another request, gid/aid, %d,%d", repeated[REMOTE_REQUEST_GROUP],
           repeated[REMOTE_REQUEST_ACTION]);
    return true;
}

} // namespace zv
