#include "host.h"

#include <text.h>

namespace zvweb {

HostAndPort split_host(std::string_view text)
{
    const size_t bracket = text.find(']');
    const size_t colon = text.find(':', bracket != std::string_view::npos ? bracket : 0);
    return {zvprogram::lower_case(text.substr(0, colon)),
            colon != std::string_view::npos ? std::string(text.substr(colon + 1)) : std::string()};
}

} // namespace zvweb
