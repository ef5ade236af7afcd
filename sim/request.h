// What a client asks and what a peer answers, apart from their bytes.
#pragma once

#include "message.h"

namespace zv::sim {

// On the daemon link `command` is the command's number; on the relay it is 0, and a request to the remote API has a
// group and an action.
struct Request {
    Link link = Link::DAEMON;
    uint32_t command = 0;
    uint8_t group = 0;
    uint8_t action = 0;
    uint8_t category = 0;
    std::string code;   // relay: the two-character command code
    Bytes argument;     // daemon: the parameter; relay: the whole command argument
    Bytes payload;      // remote API: what stands behind the request's header
    bool valid = false; // remote API: the header's payload size is that of the payload
    std::string source; // the queue that the answer goes to
};

// `code` is the daemon's return code or the firmware's acknowledge byte.
struct Answer {
    int32_t code = 0;
    uint8_t error = 0;         // the firmware's own error
    bool switched_off = false; // in place of all else: the camera is off
    Bytes payload;
};

Answer good(View payload = {});
Answer refused(int32_t code);

// The relay's categories: commands to itself, and to the camera.
inline constexpr uint8_t CATEGORY_RELAY = 2;
inline constexpr uint8_t CATEGORY_CAMERA = 4;

// The daemon's command that is answered with its own parameter.
inline constexpr uint32_t RESYNC_MESSAGE_QUEUE = 102;

// Takes a client's message apart. Nothing for one that cannot be answered: not well formed, not a command of this link,
// or without a queue to answer to.
std::optional<Request> parse_request(Link link, View message);

// The message that carries the answer to a request.
Bytes build_answer(const Request &request, const Answer &answer);

} // namespace zv::sim
