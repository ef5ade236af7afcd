#include "text.h"

#include <algorithm>
#include <charconv>

namespace zvprogram {

std::string lower_case(std::string_view text)
{
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

std::string_view trim(std::string_view text)
{
    constexpr std::string_view BLANKS = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text.substr(0, text.find_last_not_of(BLANKS) + 1);
}

bool read_number(std::string_view text, unsigned &number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

} // namespace zvprogram
