#include "replay.h"

#include "trace.h"

#include <algorithm>
#include <utility>

#include <zvctrl/zvcontrol_if.h>

namespace zv::sim {

namespace {

bool from_client(TraceDirection direction)
{
    return direction == TraceDirection::CLIENT_TO_DAEMON || direction == TraceDirection::CLIENT_TO_CAMERA;
}

Link link_of(TraceDirection direction)
{
    return direction == TraceDirection::CLIENT_TO_DAEMON || direction == TraceDirection::DAEMON_TO_CLIENT ? Link::DAEMON
                                                                                                          : Link::RELAY;
}

} // namespace

Replay::Key Replay::key_of(const Request &request)
{
    return {request.link, request.command, request.code, request.argument};
}

std::string Replay::read(std::istream &trace)
{
    struct Latest {
        std::vector<Reply> *replies = nullptr;
        uint64_t time = 0;
    };
    Latest latest[LINK_COUNT]; // request on each link
    TraceReader reader(trace);
    for (TraceMessage message; reader.next(message);) {
        const Link link = link_of(message.direction);
        Latest &open = latest[static_cast<size_t>(link)];
        if (!from_client(message.direction)) {
            if (open.replies != nullptr) {
                open.replies->push_back(
                    {message.microseconds - std::min(open.time, message.microseconds), message.bytes});
            }
        } else if (const auto request = parse_request(link, message.bytes)) {
            open = {&m_occasions[key_of(*request)].replies.emplace_back(), message.microseconds};
        } else {
            open = {};
        }
    }
    return reader.problem();
}

const std::vector<Reply> *Replay::find(const Request &request)
{
    const auto found = m_occasions.find(key_of(request));
    if (found == m_occasions.end() ||
        (request.link == Link::DAEMON && request.command == ZVCONTROL_RESYNC_MESSAGE_QUEUE)) {
        return nullptr;
    }
    Occasions &occasions = found->second;
    const std::vector<Reply> &replies = occasions.replies[occasions.next];
    if (occasions.next + 1 < occasions.replies.size()) {
        ++occasions.next;
    }
    return &replies;
}

} // namespace zv::sim
