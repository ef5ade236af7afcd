// What the requests' handlers work with.
#pragma once

#include "counters.h"
#include "events.h"
#include "rendering.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <zvservice/camera.h>

namespace zvweb {

struct Service {
    zvservice::Camera camera;
    Renderings renderings;
    Events events{camera, renderings};
    Counters counters;
    size_t clients = 0; // connections now

    // Of the present state, null before the first.
    std::shared_ptr<const Rendering> rendering() { return renderings.of(*camera.snapshot()); }
};

} // namespace zvweb
