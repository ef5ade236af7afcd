#include "request.h"

#include <cstring>
#include <text.h>

namespace zvweb {

Request::Request(MHD_Connection *connection, std::string_view method, std::string_view path)
    : m_connection(connection), m_is_head(method == MHD_HTTP_METHOD_HEAD),
      m_method(m_is_head ? MHD_HTTP_METHOD_GET : method), m_path(path)
{
}

std::optional<std::string_view> Request::header(const char *name) const
{
    return value(MHD_HEADER_KIND, name);
}

std::optional<std::string_view> Request::cookie(const char *name) const
{
    return value(MHD_COOKIE_KIND, name);
}

int Request::headers(std::string_view name) const
{
    struct Search {
        std::string name;
        int count;
    } search = {zvprogram::lower_case(name), 0};
    MHD_get_connection_values(
        m_connection, MHD_HEADER_KIND,
        [](void *given, MHD_ValueKind, const char *key, const char *) {
            auto *wanted = static_cast<Search *>(given);
            wanted->count += zvprogram::lower_case(key) == wanted->name ? 1 : 0;
            return MHD_YES;
        },
        &search);
    return search.count;
}

void Request::add_to_body(std::string_view part)
{
    m_body_size += part.size();
    m_body.append(part.substr(0, BODY_MAX - m_body.size()));
}

std::optional<std::string_view> Request::value(MHD_ValueKind kind, const char *name) const
{
    const char *text = nullptr;
    size_t size = 0; // a zero byte does not end it
    if (MHD_lookup_connection_value_n(m_connection, kind, name, strlen(name), &text, &size) == MHD_NO ||
        text == nullptr) {
        return std::nullopt;
    }
    return std::string_view(text, size);
}

} // namespace zvweb
