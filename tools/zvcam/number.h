// Numbers of the camera that have a read and a write of their own: a row each, and one piece of code for all.
#pragma once

#include "command.h"
#include "json.h"
#include "links.h"
#include "options.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace zvcam {

struct Number {
    const char *name;
    int32_t (*read)(zvc_msg_q_context_t *, int64_t &);
    int32_t (*write)(zvc_msg_q_context_t *, int64_t);
    int64_t high;         // the largest number that goes out whole
    uint32_t setting = 0; // whose options name the numbers, where there is one
};

// A read and a write of the library, whatever the type of their number.
template <auto Read>
int32_t read_with(zvc_msg_q_context_t *context, int64_t &number)
{
    const auto call = [&]<typename Value>(int32_t (*read)(zvc_msg_q_context_t *, Value *)) {
        Value value = {};
        const int32_t result = read(context, &value);
        // NOLINTNEXTLINE(bugprone-signed-char-misuse): a number may be negative, and stays so
        number = static_cast<int64_t>(value);
        return result;
    };
    return call(Read);
}

template <auto Write>
int32_t write_with(zvc_msg_q_context_t *context, int64_t number)
{
    const auto call = [&]<typename Value>(int32_t (*write)(zvc_msg_q_context_t *, Value)) {
        return write(context, static_cast<Value>(number));
    };
    return call(Write);
}

// In words, or as a member of `json` where that is not null.
void show_number(Camera &camera, const Number &number, Json *json);
void set_number(Camera &camera, const Number &number, const std::string &text);

// The command of one number: sets it to the operand, if there is one, and shows it.
template <const Number &number>
void show_or_set(const Arguments &arguments)
{
    Camera camera;
    if (!arguments.words.empty()) {
        set_number(camera, number, arguments.words.front());
    }
    show(arguments, [&camera](Json *json) { show_number(camera, number, json); });
}

// What that prints with --json, for its help: {"gop_size":VALUE}
template <const Number &number>
inline constexpr auto NUMBER_AS_JSON = [] {
    constexpr std::string_view NAME = number.name;
    constexpr std::string_view HEAD = R"({")";
    constexpr std::string_view END = R"(":VALUE})";
    std::array<char, HEAD.size() + NAME.size() + END.size() + 1> text = {};
    auto next = std::copy(HEAD.begin(), HEAD.end(), text.begin());
    next = std::transform(NAME.begin(), NAME.end(), next, member_character);
    std::copy(END.begin(), END.end(), next);
    return text;
}();

template <const Number &number>
constexpr Command number_command(const char *name, const char *operand, const char *help)
{
    return {name, operand, help, show_or_set<number>, {}, NUMBER_AS_JSON<number>.data()};
}

// A format: resolution, frame rate and field of view, each the firmware's number of an option of a setting.
struct Format {
    int32_t resolution;
    int32_t fps;
    int32_t fov;
};

struct FormatSettings {
    uint32_t resolution;
    uint32_t fps;
    uint32_t fov;
};

// Operands as options; what is not given stays as it is in `present`.
Format parse_format(const Arguments &arguments, const FormatSettings &settings, const Format &present);

std::string format_text(const Format &format, const FormatSettings &settings);

// The members of a format, each a value, and how a command's help says so.
void write_format(Json &json, const Format &format, const FormatSettings &settings);
inline constexpr char FORMAT_AS_JSON[] = R"({"resolution":VALUE,"fps":VALUE,"fov":VALUE})";

} // namespace zvcam
