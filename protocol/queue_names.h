// The message queues of both links, and the categories of what goes through the relay.
#pragma once

#include <cstdint>

namespace zv {

inline constexpr char DAEMON_QUEUE[] = "/to_zvCtlD";
inline constexpr char RELAY_QUEUE[] = "/to_zvnet";

// The firmware's mailbox, which the relay serves: a name in messages, not a queue that anybody here opens.
inline constexpr char CAMERA_QUEUE[] = "/to_camera";

// A client's response queue on the daemon link: this and its process id.
inline constexpr char RESPONSE_QUEUE_PREFIX[] = "/to_ZVCU";
inline constexpr long RESPONSE_QUEUE_DEPTH = 5;

// A client's reply queue on the camera link: this, its process id, a dot, and a count within the process.
inline constexpr char REPLY_QUEUE_PREFIX[] = "/to_zvsvc";
inline constexpr long REPLY_QUEUE_DEPTH = 5;

inline constexpr uint8_t CATEGORY_DORSAK = 2; // commands to the relay itself
inline constexpr uint8_t CATEGORY_CAMERA = 4; // commands to the camera
inline constexpr char REMOTE_API_COMMAND[] = "YY";

} // namespace zv
