// Messages as they are: raw sends one, decode explains them.

#include "command.h"
#include "failure.h"
#include "links.h"
#include "output.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <decode.h>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <trace.h>
#include <vector>

namespace zvcam {

namespace {

constexpr size_t LONGEST_PAYLOAD = 1400; // what surely fits in a message

std::string joined(const std::vector<std::string> &words, size_t first)
{
    std::string text;
    for (size_t i = first; i < words.size(); ++i) {
        text += words[i] + " ";
    }
    return text;
}

std::vector<uint8_t> parse_bytes(std::string text)
{
    std::vector<uint8_t> bytes;
    std::erase(text, ' '); // a byte's two digits may be two words
    if (!zv::read_hex(text, bytes) || bytes.size() > LONGEST_PAYLOAD) {
        fail(WRONG_USAGE, "a payload is up to %zu bytes of two hexadecimal digits each", LONGEST_PAYLOAD);
    }
    return bytes;
}

void raw(const Arguments &arguments)
{
    const auto group = static_cast<int32_t>(parse_number(arguments.words[0], "a group", 0, UINT8_MAX));
    const auto action = static_cast<int32_t>(parse_number(arguments.words[1], "an action", 0, UINT8_MAX));
    const std::vector<uint8_t> payload = parse_bytes(joined(arguments.words, 2));
    CameraLink camera;
    uint8_t *answer = nullptr;
    uint16_t size = 0;
    const int32_t result =
        payload.empty() ? zvc_send_remote_api_for_response(camera, group, action, &answer, &size)
                        : zvc_send_remote_api_payload_response(camera, group, action, payload.data(),
                                                               static_cast<int32_t>(payload.size()), &answer, &size);
    camera.check(result, "send the command");
    print("done, %u byte%s of answer\n", size, size == 1 ? "" : "s");
    print_bytes(answer, size);
}

void decode(const Arguments &arguments)
{
    std::ostringstream text;
    int faults = 0;
    if (arguments.given("--trace")) {
        const std::string &name = arguments.options.at("--trace");
        std::ifstream file(name);
        if (!file) {
            fail(FAILED, "cannot read %s: %s", name.c_str(), strerror(errno));
        }
        faults = zv::decode_trace(file, zv::text_sink(text));
    } else if (arguments.words.empty() || arguments.words.front() == "-") {
        const std::string input(std::istreambuf_iterator<char>(std::cin), {});
        faults = zv::decode_hex(input, zv::text_sink(text));
    } else {
        faults = zv::decode_hex(joined(arguments.words, 0), zv::text_sink(text));
    }
    print("%s", text.str().c_str());
    if (faults > 0) {
        fail(FAILED, "%d fault%s, marked with !", faults, faults == 1 ? "" : "s");
    }
}

constexpr Command COMMANDS[] = {
    {"raw", "GROUP ACTION [HEX...]", "send a command of the remote API as it is, and show the answer", raw},
    {"decode",
     "[HEX...]",
     "explain a message, given in hexadecimal or on standard input",
     decode,
     {{"--trace", "FILE", "explain the messages of a trace"}}},
};

} // namespace

constinit const Commands MESSAGE_COMMANDS = COMMANDS;

} // namespace zvcam
