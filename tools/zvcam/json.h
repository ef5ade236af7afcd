// The JSON that commands write for scripts.
#pragma once

#include "command.h"

#include <functional>
#include <string>
#include <string_view>
#include <zvservice/json.h>

namespace zvcam {

using zvservice::Json;

// What the words in capitals mean that the commands' helps use.
extern const char JSON_WORDS[];

// A name that people read as a member's: "GOP size" is "gop_size".
constexpr char member_character(char c)
{
    return c == ' ' ? '_' : c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
std::string member_name(std::string_view name);

// Shows something in words, where `write` gets null, or with --json as the members of one object, which is printed when
// all of them are there.
void show(const Arguments &arguments, const std::function<void(Json *)> &write);

// What a command says that only does something: the words, or {"done":"media delete"}.
void show_done(const Arguments &arguments, std::string_view words);

} // namespace zvcam
