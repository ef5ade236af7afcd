// A name is written once, as an enumerator; its text, for logs, tools and tables that speak in names, comes from the
// compiler.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

namespace zv {

// The enumerator's name without its scope; empty for a value that is no enumerator. g++ and clang write the template's
// argument into the function's own name: "... [with auto VALUE = zv::FLAT_MODE_VIDEO; ...]", "... = (zv::FlatMode)5]".
template <auto VALUE>
consteval std::string_view enumerator_name()
{
    constexpr std::string_view KEY = "VALUE = ";
    std::string_view text = __PRETTY_FUNCTION__;
    text.remove_prefix(text.find(KEY) + KEY.size());
    text = text.substr(0, text.find_first_of(";]"));
    if (text.front() == '(') {
        return {};
    }
    const size_t scope = text.rfind(':');
    return scope == text.npos ? text : text.substr(scope + 1);
}

// The names of the values 0 to COUNT - 1.
template <class Enum, size_t COUNT>
consteval std::array<std::string_view, COUNT> enumerator_names()
{
    return []<size_t... I>(std::index_sequence<I...>)
    {
        return std::array<std::string_view, COUNT>{enumerator_name<static_cast<Enum>(I)>()...};
    }
    (std::make_index_sequence<COUNT>());
}

} // namespace zv
