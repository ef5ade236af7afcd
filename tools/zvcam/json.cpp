#include "json.h"

#include <algorithm>
#include <cstdio>

namespace zvcam {

const char JSON_WORDS[] =
    "In JSON:\n"
    "  OPTION     \"id\":NUMBER, with \"key\" and \"name\" of an option that the setting lists\n"
    "  VALUE      {\"value\":NUMBER,OPTION}, the firmware's number and the option that it is, if there is one\n"
    "  SETTING    \"setting\":NUMBER,\"name\":TEXT,\"available\":BOOL,\"present\":{OPTION,\"available\":BOOL}\n"
    "  RULES      [{\"rule\":NUMBER,\"because\":[CONDITION,...]},...]\n"
    "  CONDITION  {\"setting\":NUMBER,\"name\":TEXT,\"is\":KEY} or {\"status\":NUMBER,\"name\":TEXT,\"is\":NUMBER}\n"
    "A setting is available when one of its options is. A failure is a text on standard error, and an exit code.\n";

std::string member_name(std::string_view name)
{
    std::string result(name);
    std::transform(result.begin(), result.end(), result.begin(), member_character);
    return result;
}

void show(const Arguments &arguments, const std::function<void(Json *)> &write)
{
    if (!arguments.json()) {
        write(nullptr);
        return;
    }
    Json json;
    json.open('{');
    write(&json);
    json.close();
    printf("%s\n", json.text().c_str());
}

void show_done(const Arguments &arguments, std::string_view words)
{
    show(arguments, [&](Json *json) {
        if (json != nullptr) {
            json->member("done", std::string_view(arguments.command));
        } else {
            printf("%.*s\n", static_cast<int>(words.size()), words.data());
        }
    });
}

} // namespace zvcam
