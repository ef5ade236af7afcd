#include "assets.h"

#include <algorithm>
#include <iterator>

// Laid into the program by assets.S.
// clang-format off
extern "C" const char
    zvweb_page[], zvweb_page_end[],
    zvweb_style[], zvweb_style_end[],
    zvweb_icon[], zvweb_icon_end[],
    zvweb_openapi[], zvweb_openapi_end[],
    zvweb_script_known[], zvweb_script_known_end[],
    zvweb_script_now[], zvweb_script_now_end[],
    zvweb_script_server[], zvweb_script_server_end[],
    zvweb_script_settings[], zvweb_script_settings_end[],
    zvweb_script_view[], zvweb_script_view_end[],
    zvweb_script_words[], zvweb_script_words_end[],
    zvweb_script_zvweb[], zvweb_script_zvweb_end[];
// clang-format on

namespace zvweb {

namespace {

constexpr char PAGE[] = "/";

// What the page may do: load its own files and speak to its own server, in no frame of another one.
constexpr char POLICY[] = "default-src 'self'; base-uri 'none'; form-action 'self'; frame-ancestors 'none'";

constexpr char SCRIPT_TYPE[] = "text/javascript; charset=utf-8";

struct Asset {
    std::string_view path;
    const char *type;
    const char *begin;
    const char *end;
};

const Asset ASSETS[] = {
    {PAGE, "text/html; charset=utf-8", zvweb_page, zvweb_page_end},
    {"/zvweb.css", "text/css; charset=utf-8", zvweb_style, zvweb_style_end},
    {"/known.js", SCRIPT_TYPE, zvweb_script_known, zvweb_script_known_end},
    {"/now.js", SCRIPT_TYPE, zvweb_script_now, zvweb_script_now_end},
    {"/server.js", SCRIPT_TYPE, zvweb_script_server, zvweb_script_server_end},
    {"/settings.js", SCRIPT_TYPE, zvweb_script_settings, zvweb_script_settings_end},
    {"/view.js", SCRIPT_TYPE, zvweb_script_view, zvweb_script_view_end},
    {"/words.js", SCRIPT_TYPE, zvweb_script_words, zvweb_script_words_end},
    {"/zvweb.js", SCRIPT_TYPE, zvweb_script_zvweb, zvweb_script_zvweb_end},
    {"/icon.svg", "image/svg+xml", zvweb_icon, zvweb_icon_end},
    {"/openapi.json", JSON_TYPE, zvweb_openapi, zvweb_openapi_end},
};

} // namespace

Answer asset(const Request &request)
{
    const auto found = std::ranges::find(ASSETS, request.path(), &Asset::path);
    const std::string_view text(found->begin, static_cast<size_t>(found->end - found->begin));
    Answer answer;
    answer.content_type = found->type;
    answer.shared = {text};
    if (found->path == PAGE) {
        answer.headers.emplace_back("Content-Security-Policy", POLICY);
    } else {
        answer.cacheable = true;
        answer.set_tag(content_tag(text), request.header(MHD_HTTP_HEADER_IF_NONE_MATCH));
    }
    return answer;
}

} // namespace zvweb
