// The JSON that commands write for scripts.
#pragma once

#include "command.h"

#include <concepts>
#include <functional>
#include <string>
#include <string_view>

namespace zvcam {

// One value, written from left to right. Commas come by themselves; brackets and keys are the caller's to match.
class Json {
  public:
    Json &open(char bracket); // '{' or '['
    Json &close();            // the bracket that was opened last
    Json &key(std::string_view name);

    // A number, true or false, or a text. A byte that is not UTF-8 becomes U+FFFD.
    template <class Value>
    Json &value(const Value &value)
    {
        if constexpr (std::same_as<Value, bool>) {
            return literal(value ? "true" : "false");
        } else if constexpr (std::integral<Value>) {
            return literal(std::to_string(value));
        } else {
            return quoted(value);
        }
    }

    template <class Value>
    Json &member(std::string_view name, const Value &value)
    {
        return key(name).value(value);
    }

    const std::string &text() const { return m_text; }

  private:
    void separate();
    Json &literal(std::string_view text);
    Json &quoted(std::string_view text);

    std::string m_text;
    std::string m_open; // the closing brackets that are due
};

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
