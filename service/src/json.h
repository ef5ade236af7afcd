// JSON, as programs over the service core write it.
#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <zvctrl/zvDbg.h>

namespace zvservice {

// One value, written from left to right. Commas come by themselves; brackets and keys are the caller's to match. One
// thread at a time; std::bad_alloc passes.
class ZV_API Json {
  public:
    Json &open(char bracket); // '{' or '['
    Json &close();            // the bracket that was opened last
    Json &key(std::string_view name);

    // A number, true or false, or a text. A byte that is not UTF-8 becomes U+FFFD.
    template <class Value>
    Json &value(const Value &value)
    {
        if constexpr (std::is_same_v<Value, bool>) {
            return literal(value ? "true" : "false");
        } else if constexpr (std::is_integral_v<Value>) {
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

    // A value that is JSON already.
    Json &raw(std::string_view json) { return literal(json); }

    const std::string &text() const { return m_text; }

  private:
    void separate();
    Json &literal(std::string_view text);
    Json &quoted(std::string_view text);

    std::string m_text;
    std::string m_open; // the closing brackets that are due
};

} // namespace zvservice
