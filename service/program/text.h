// What several files do with texts.
#pragma once

#include <string>
#include <string_view>

namespace zvprogram {

std::string lower_case(std::string_view text);             // of ASCII letters
std::string_view trim(std::string_view text);              // of blanks and line feeds at both ends
bool read_number(std::string_view text, unsigned &number); // digits alone

} // namespace zvprogram
