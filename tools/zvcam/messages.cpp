// Messages as they are: raw sends one, decode explains them.

#include "command.h"
#include "failure.h"
#include "json.h"
#include "links.h"
#include "output.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <decode.h>
#include <fstream>
#include <iostream>
#include <iterator>
#include <names.h>
#include <span>
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
        fail(EXIT_WRONG_USAGE, "a payload is up to %zu bytes of two hexadecimal digits each", LONGEST_PAYLOAD);
    }
    return bytes;
}

void raw(const Arguments &arguments)
{
    const auto group = static_cast<int32_t>(parse_number(arguments.words[0], "a group", 0, UINT8_MAX));
    const auto action = static_cast<int32_t>(parse_number(arguments.words[1], "an action", 0, UINT8_MAX));
    const std::vector<uint8_t> payload = parse_bytes(joined(arguments.words, 2));
    Camera camera;
    std::vector<uint8_t> bytes;
    check(camera.call("send the command", [&](zvc_msg_q_context_t *context) {
        uint8_t *answer = nullptr;
        uint16_t size = 0;
        const int32_t result =
            payload.empty()
                ? zvc_send_remote_api_for_response(context, group, action, &answer, &size)
                : zvc_send_remote_api_payload_response(context, group, action, payload.data(),
                                                       static_cast<int32_t>(payload.size()), &answer, &size);
        if (answer != nullptr) {
            bytes.assign(answer, answer + size);
        }
        return result;
    }));
    show(arguments, [&bytes](Json *json) {
        if (json != nullptr) {
            json->member("answer", hex(bytes));
            return;
        }
        printf("done, %zu byte%s of answer\n", bytes.size(), bytes.size() == 1 ? "" : "s");
        print_bytes(bytes);
    });
}

void write_faults(Json &json, const std::vector<std::string> &faults)
{
    json.key("faults").open('[');
    for (const std::string &fault : faults) {
        json.value(fault);
    }
    json.close();
}

void write_element(Json &json, const zv::DecodedElement &element)
{
    json.open('{').member("offset", element.offset).member("tag", element.tag);
    json.member("name", zv::tag_name(element.tag)).member("meaning", element.meaning);
    json.member("value", hex(element.value)).close();
}

void write_message(Json &json, const zv::DecodedMessage &message, const zv::TraceMessage *traced)
{
    json.open('{');
    if (traced != nullptr) {
        json.member("microseconds", traced->microseconds);
        json.member("direction", zv::trace_direction_name(traced->direction));
    }
    json.member("link", message.link == zv::Link::DAEMON ? "daemon" : "camera");
    if (!message.headless) {
        json.member("response", message.response).member("category", message.category);
    }
    json.key("elements").open('[');
    for (const zv::DecodedElement &element : message.elements) {
        write_element(json, element);
    }
    json.close();
    write_faults(json, message.faults);
    json.member("bytes", hex(message.bytes)).close();
}

// Decodes what the arguments name. Returns the number of faults.
int decode_input(const Arguments &arguments, const zv::DecodeSink &sink)
{
    if (arguments.given("--trace")) {
        const std::string &name = arguments.options.at("--trace");
        std::ifstream file(name);
        const int faults = file ? zv::decode_trace(file, sink) : 0;
        if (!file.is_open() || file.bad()) { // a folder can be opened, and not read
            fail(EXIT_FAILED, "cannot read %s: %s", name.c_str(), strerror(errno));
        }
        return faults;
    }
    if (arguments.words.empty() || arguments.words.front() == "-") {
        const std::string input(std::istreambuf_iterator<char>(std::cin), {});
        return zv::decode_hex(input, sink);
    }
    return zv::decode_hex(joined(arguments.words, 0), sink);
}

void decode(const Arguments &arguments)
{
    if (arguments.given("--trace") && !arguments.words.empty()) {
        fail(EXIT_WRONG_USAGE, "a trace or a message, not both");
    }
    if (arguments.words.size() > 1 && arguments.words.front() == "-") {
        fail(EXIT_WRONG_USAGE, "a message on standard input (-) or in words, not both");
    }
    int faults = 0;
    show(arguments, [&](Json *json) {
        if (json == nullptr) {
            std::ostringstream text;
            faults = decode_input(arguments, zv::text_sink(text));
            printf("%s", text.str().c_str());
            return;
        }
        std::vector<std::string> others;
        json->key("messages").open('[');
        faults = decode_input(arguments, {[json](const zv::DecodedMessage &message, const zv::TraceMessage *traced) {
                                              write_message(*json, message, traced);
                                          },
                                          [&others](const std::string &fault) { others.push_back(fault); }});
        json->close();
        write_faults(*json, others);
    });
    if (faults > 0) {
        fail(EXIT_FAILED, "%d fault%s%s", faults, faults == 1 ? "" : "s", arguments.json() ? "" : ", marked with !");
    }
}

constexpr char MESSAGES_AS_JSON[] =
    R"({"messages":[{"microseconds":NUMBER,"direction":TEXT,"link":TEXT,"response":BOOL,"category":NUMBER,)"
    R"("elements":[{"offset":NUMBER,"tag":NUMBER,"name":TEXT,"meaning":TEXT,"value":HEX},...],"faults":[TEXT,...],)"
    R"("bytes":HEX},...],"faults":[TEXT,...]})"
    "\n  microseconds and direction in a trace alone; faults at the end are of what is no message";

constexpr Command COMMANDS[] = {
    {"raw",
     "GROUP ACTION [HEX...]",
     "send a command of the remote API as it is, and show the answer",
     raw,
     {},
     R"({"answer":HEX})"},
    {"decode",
     "[HEX...]",
     "explain a message, given in hexadecimal or on standard input",
     decode,
     {{"--trace", "FILE", "explain the messages of a trace"}},
     MESSAGES_AS_JSON},
};

} // namespace

constinit const Commands MESSAGE_COMMANDS = COMMANDS;

} // namespace zvcam
