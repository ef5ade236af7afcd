#include "routes.h"

#include <microhttpd.h>

namespace zvweb {

namespace {

constexpr char GET[] = MHD_HTTP_METHOD_GET;
constexpr char PUT[] = MHD_HTTP_METHOD_PUT;
constexpr char POST[] = MHD_HTTP_METHOD_POST;

constexpr Route ROUTES[] = {
    {"/", GET, read_page, true},
    {"/zvweb.css", GET, read_page, true},
    {"/known.js", GET, read_page, true},
    {"/now.js", GET, read_page, true},
    {"/server.js", GET, read_page, true},
    {"/settings.js", GET, read_page, true},
    {"/view.js", GET, read_page, true},
    {"/words.js", GET, read_page, true},
    {"/zvweb.js", GET, read_page, true},
    {"/icon.svg", GET, read_page, true},
    {"/openapi.json", GET, read_page},
    {"/metrics", GET, read_metrics},
    {"/api/v1/camera", GET, read_camera},
    {"/api/v1/state", GET, read_state},
    {"/api/v1/status", GET, read_status},
    {"/api/v1/settings", GET, read_settings},
    {"/api/v1/settings/*", GET, read_setting},
    {"/api/v1/settings/*", PUT, set_setting},
    {"/api/v1/catalogue", GET, read_catalogue},
    {"/api/v1/available", GET, read_available},
    {"/api/v1/capture/start", POST, start_capture},
    {"/api/v1/capture/stop", POST, stop_capture},
    {"/api/v1/media/delete-last", POST, delete_last},
    {"/api/v1/media/delete-all", POST, delete_all},
    {"/api/v1/media/tag", POST, tag_media},
    {"/api/v1/events", GET, read_events},
};

bool matches(const Route &route, std::string_view path, std::string_view &parameter)
{
    if (route.path.back() != '*') {
        parameter = {};
        return path == route.path;
    }
    const std::string_view fixed = route.path.substr(0, route.path.size() - 1);
    parameter = path.substr(std::min(fixed.size(), path.size()));
    return path.substr(0, fixed.size()) == fixed;
}

} // namespace

Match find_route(std::string_view method, std::string_view path)
{
    Match match;
    for (const Route &route : ROUTES) {
        std::string_view parameter;
        if (!matches(route, path, parameter)) {
            continue;
        }
        if (method == route.method) {
            match.route = &route;
            match.parameter = parameter;
        }
        match.allowed.append(match.allowed.empty() ? "" : ", ")
            .append(route.method == GET ? "GET, HEAD" : route.method);
    }
    return match;
}

} // namespace zvweb
