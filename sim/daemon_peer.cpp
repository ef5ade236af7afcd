#include "daemon_peer.h"

#include <zvctrl/zvTlv.h>

#include "libzvCommon/src/bytes.h"

namespace zv::sim {

namespace {

constexpr uint8_t CATEGORY_COMMAND = 20;
constexpr uint8_t CATEGORY_RESPONSE = 21;

// The daemon's own numbers.
constexpr uint32_t GET_ALL_SETTINGS = 32;
constexpr uint32_t GET_ALL_STATUS = 33;
constexpr uint32_t GET_ALL_SETTINGS_STATUS = 34;
constexpr uint32_t RESYNC_MESSAGE_QUEUE = 102;

} // namespace

std::optional<Request> DaemonPeer::parse(View message) const
{
    if (!well_formed(message) || message[3] != CATEGORY_COMMAND) {
        return std::nullopt;
    }
    const auto command = find_element(message, TLV_CMD);
    const auto source = find_element(message, TLV_SRC);
    if (!command || command->size() != sizeof(uint32_t) || !source) {
        return std::nullopt;
    }
    Request request;
    request.link = Link::DAEMON;
    request.category = CATEGORY_COMMAND;
    request.command = le32(command->data());
    request.source = queue_name(*source);
    if (const auto argument = find_element(message, TLV_CMDARG)) {
        request.argument.assign(argument->begin(), argument->end());
    }
    return request.source.empty() ? std::nullopt : std::optional(request);
}

Answer DaemonPeer::answer(const Request &request)
{
    m_camera.refresh();
    switch (request.command) {
    case GET_ALL_SETTINGS:
        return good(m_camera.state().settings_record());
    case GET_ALL_STATUS:
        return good(m_camera.state().status_record());
    case GET_ALL_SETTINGS_STATUS:
        return good(m_camera.state().record());
    case RESYNC_MESSAGE_QUEUE:
        return good(request.argument);
    default:
        return refused(ZV_ERR_NOT_SUPPORTED);
    }
}

Bytes DaemonPeer::message(const Request &, const Answer &answer) const
{
    uint8_t code[sizeof(uint32_t)];
    put_le32(code, static_cast<uint32_t>(answer.switched_off ? ZV_ERR_NAK_OFF : answer.code));
    if (answer.payload.empty()) {
        return build_message(CATEGORY_RESPONSE, {{TLV_RSP, code}});
    }
    return build_message(CATEGORY_RESPONSE, {{TLV_RSP, code}, {TLV_RSPARG, answer.payload}});
}

} // namespace zv::sim
