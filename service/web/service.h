// What the requests' handlers work with.
#pragma once

#include "connections.h"
#include "events.h"
#include "rendering.h"

#include <request_counters.h>

#include <memory>
#include <string_view>
#include <zvservice/camera.h>

namespace zvweb {

struct Service {
    explicit Service(size_t max_clients) : connections(max_clients) {}

    Connections connections;
    zvservice::Camera camera;
    Renderings renderings;
    Events events{camera, renderings};
    zvprogram::RequestCounters counters;

    // Of the present state, null before the first.
    std::shared_ptr<const Rendering> rendering() { return renderings.of(*camera.snapshot()); }
};

} // namespace zvweb
