// Bytes of the record that no reader of the library knows: the simulated firmware keeps values of its own there.
#pragma once

#include "field.h"

#include <zvctrl/camera_records.h>

namespace zv::sim {

inline constexpr Field AUDIO_VELLIX_ON = settings(17);
inline constexpr Field REMOTE_ROTATION = settings(35);
inline constexpr Field BUTTON_FIRST = settings(38);
inline constexpr Field BUTTON_SECOND = settings(39);
inline constexpr Field SHORTCUT_SLOT = settings(40); // written last
inline constexpr Field VIDEO_ISO_MODE = settings(57);
inline constexpr Field STREAM_GOP_SIZE = settings(199);
inline constexpr Field STREAM_IDR_INTERVAL = settings(200);
inline constexpr Field LENS_MODE = status(257);
inline constexpr Field LENS = status(258);

// The broadcast's two records lie in the camera's: its settings, 20 bytes, and its status, 12 bytes.
inline constexpr Field BROADCAST_SETTINGS = settings(SETTINGS_BROADCAST_RESOLUTION, 20);
inline constexpr Field BROADCAST_RECORD_FOV = settings(175);
inline constexpr Field BROADCAST_DEFAULT_SUB_MODE = settings(176);
inline constexpr Field BROADCAST_GOP_SIZE = settings(178, 4);
inline constexpr Field BROADCAST_IDR_INTERVAL = settings(182, 4);
inline constexpr Field BROADCAST_BIT_RATE = settings(186, 4);
inline constexpr Field BROADCAST_STATUS = status(STATUS_BROADCAST_BROADCAST_PROGRESS_COUNTER, 12);
inline constexpr Field BROADCAST_ENABLE = status(75);
inline constexpr Field BROADCAST_ACTIVE = status(76);

} // namespace zv::sim
