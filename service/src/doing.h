// What is tried, in the words of Result::cannot(), where several pieces try the same.
#pragma once

namespace zvservice {

inline constexpr char READ_STATE[] = "read the camera's state";
inline constexpr char CHANGE_SETTING[] = "change the setting";

} // namespace zvservice
