// What a client asks and what a peer answers, apart from their bytes.
#pragma once

#include "message.h"

#include <cstdint>
#include <optional>
#include <string>

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
    Bytes payload;      // remote API: what follows the request's header
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

// The acknowledge byte of a command that the firmware does not know, or whose payload it cannot read.
inline constexpr int32_t NAK = 1;

// The firmware's own errors: the command was understood and cannot be carried out.
enum FirmwareError : uint8_t {
    FIRMWARE_BUSY = 1,      // a capture is going on, or none can begin
    FIRMWARE_NO_FILE = 2,   // no such file on the card
    FIRMWARE_BAD_VALUE = 3, // no such mode, preset, ...
};

Answer good(View payload = {});
Answer refused(int32_t code);
Answer failed(FirmwareError error);

// Takes a client's message apart. Nothing for one that cannot be answered: not well formed, not a command of this link,
// or without a queue to answer to.
std::optional<Request> parse_request(Link link, View message);

// The message that carries the answer to a request.
Bytes build_answer(const Request &request, const Answer &answer);

} // namespace zv::sim
