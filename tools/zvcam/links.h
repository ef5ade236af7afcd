// The two links to the camera. Each opens its queues when it is made and closes them when it goes; a signal that ends
// the process takes the process's own queues along.
#pragma once

#include <cstdint>
#include <mqueue.h>
#include <string>
#include <zvctrl/camera_status.h>
#include <zvctrl/zvc_commands.h>

namespace zvcam {

// Wait for the camera's side to come up, as the library does, instead of giving up at once.
void wait_for_peers(bool wait);

// From now on the signals that commonly end a process remove its queues first.
void remove_queues_at_signals();

// SIGINT and SIGTERM are the ordinary end of what runs now: exit code 0.
void expect_interruption();

// The control daemon.
class DaemonLink {
  public:
    DaemonLink();
    ~DaemonLink();
    DaemonLink(const DaemonLink &) = delete;
    DaemonLink &operator=(const DaemonLink &) = delete;

    // The camera's whole state as it is now; no answer ends the command.
    all_status_settings_t poll();

    // The same, but without an answer the last known state with the busy flag set, and false.
    bool poll(all_status_settings_t &record);

  private:
    all_status_settings_t m_last = {}; // known state
};

// The firmware, which the relay leads to.
class CameraLink {
  public:
    CameraLink();
    ~CameraLink();
    CameraLink(const CameraLink &) = delete;
    CameraLink &operator=(const CameraLink &) = delete;

    // The context for one call of the library, without the code of the call before. After a call whose answer did not
    // come, the queues are made anew first: that answer may still come, and the relay may have been started anew.
    operator zvc_msg_q_context_t *();

    // The refusal byte or the firmware's error of the last call; 0 when there was none.
    uint8_t code() const { return m_context.rtos_error_code; }

    // Ends the command when `result`, of a call on this link, is not 0.
    void check(int32_t result, const char *doing) const;

  private:
    void open();
    void close();

    zvc_msg_q_context_t m_context = {};
};

// The camera's model number, which selects the tables of settings and options; 0 when nobody knows it. Read when it is
// first asked for, and so not before a link is open: the camera may just be coming up.
uint32_t camera_model();

} // namespace zvcam
