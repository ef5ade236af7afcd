// A member of one of the library's documents as JSON. Internal to the service core.
#pragma once

#include "json.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zvservice {

// `text` is the member's as the document has it. A number is written as it is. In a text, a network's name, the library
// escapes nothing, whatever bytes somebody called it.
inline void write_member(Json &json, uint32_t id, std::string_view text)
{
    json.key(std::to_string(id));
    if (text.starts_with('"')) {
        json.value(text.substr(1, text.size() - 2));
    } else {
        json.raw(text);
    }
}

} // namespace zvservice
