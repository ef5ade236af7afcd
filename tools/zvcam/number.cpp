#include "number.h"

#include "failure.h"
#include "options.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace zvcam {

void show_number(Camera &camera, const Number &number, Json *json)
{
    int64_t value = 0;
    check(camera.call((std::string("read the ") + number.name).c_str(),
                      [&](zvc_msg_q_context_t *context) { return number.read(context, value); }));
    if (json != nullptr) {
        write_value(json->key(member_name(number.name)), number.setting, value);
        return;
    }
    const bool named = number.setting != 0 && value >= 0;
    printf("%-20s %s\n", number.name,
           named ? value_text(number.setting, static_cast<uint32_t>(value)).c_str() : std::to_string(value).c_str());
}

void set_number(Camera &camera, const Number &number, const std::string &text)
{
    const int64_t value = number.setting != 0 ? find_value(number.setting, text, number.high)
                                              : parse_number(text, number.name, 0, number.high);
    check(camera.call((std::string("set the ") + number.name).c_str(),
                      [&](zvc_msg_q_context_t *context) { return number.write(context, value); }));
}

Format parse_format(const Arguments &arguments, const FormatSettings &settings, const Format &present)
{
    const auto parse = [&](size_t word, uint32_t setting, int32_t otherwise) {
        return word < arguments.words.size()
                   ? static_cast<int32_t>(find_value(setting, arguments.words[word], UINT8_MAX))
                   : otherwise;
    };
    return {parse(0, settings.resolution, present.resolution), parse(1, settings.fps, present.fps),
            parse(2, settings.fov, present.fov)};
}

std::string format_text(const Format &format, const FormatSettings &settings)
{
    return value_text(settings.resolution, static_cast<uint32_t>(format.resolution)) + ", " +
           value_text(settings.fps, static_cast<uint32_t>(format.fps)) + " frames a second, " +
           value_text(settings.fov, static_cast<uint32_t>(format.fov));
}

void write_format(Json &json, const Format &format, const FormatSettings &settings)
{
    write_value(json.key("resolution"), settings.resolution, format.resolution);
    write_value(json.key("fps"), settings.fps, format.fps);
    write_value(json.key("fov"), settings.fov, format.fov);
}

} // namespace zvcam
