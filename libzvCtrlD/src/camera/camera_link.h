// Where the messages of the camera link go. Internal to the library.
#pragma once

#include <cstdint>

namespace zv {

constexpr int32_t CATEGORY_DORSAK = 2; // commands to the relay itself
constexpr int32_t CATEGORY_CAMERA = 4;

constexpr char CAMERA_QUEUE[] = "/to_camera";
constexpr char RELAY_QUEUE[] = "/to_zvnet";

} // namespace zv
