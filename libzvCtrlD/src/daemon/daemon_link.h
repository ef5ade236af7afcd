// The link to the control daemon: its queues, and the commands that go out through them. Internal to the library.
#pragma once

#include "camera_records.h"
#include "log_at.h"
#include "messages.h"
#include "timed_wait.h"

#include <cstdint>
#include <mqueue.h>
#include <sys/types.h>

namespace zv {

// The process has one link, which belongs to one thread at a time. Its steps, keys, caller's id and snapshot outlive a
// close.
struct DaemonLink {
    mqd_t responses = -1;                // the response queue; closed while the caller reads one of its own
    mqd_t daemon = -1;                   // the daemon's queue, opened so that a full one does not block
    pid_t opener = 0;                    // the process that made the response queue, and removes it
    char *response_queue_name = nullptr; // not null: the link is open
    uint8_t *buffer = nullptr;           // the command, then its answer: DAEMON_MSG_MAX bytes
    bool waits = false;                  // the library waits for the answers itself
    bool in_step = true;                 // the next answer belongs to the next command
    uint32_t last_key = 0xBABABA;        // of the resynchronisations
    uint8_t caller_id = 0;

    // The elements of a command, filled anew for each.
    MsgElement source{TLV_SRC, true};
    MsgElement command{TLV_CMD, true};
    MsgElement argument{TLV_CMDARG, true};
    MsgElement issuer{TLV_ASOURCE, true};
    MsgElement end{TLV_END, true};

    uint8_t snapshot[sizeof(all_status_settings_t)] = {}; // the last one, in that record's layout
};

// Never destroyed, because an exit handler may still send.
extern DaemonLink &daemon_link;

// A command's parameter. Null bytes leave it out, whatever their number.
struct Parameter {
    const uint8_t *bytes;
    uint16_t length;
};

// Waits for the daemon's queue, and makes the response queue where `queue_name`, the caller's own, is null. Returns
// ZV_OK, or ZV_ERR or ZV_ERR_OUTOFMEM with a line in the log; the link may then be open in part, and is to be closed.
int32_t open_daemon_link(const char *queue_name, const SourceLocation &where);

// Closes what is open of the link.
void close_daemon_link();

// Whether a command with this parameter fits in a message.
bool command_fits(const Parameter &parameter);

// Opens the daemon's queue anew where it was removed, as by a daemon that restarts: an open queue outlives its name,
// and nobody reads it any more. Returns false, with a line in the log, while the name means no queue.
bool find_daemon_again(const SourceLocation &where);

// Writes a command into the link's buffer, which its answer will overwrite, and posts it, waiting for room in the
// daemon's queue within the limit. Returns ZV_OK, or with a line in the log ZV_ERR_NO_RESPONSE when there was no room
// in time, ZV_ERR or ZV_ERR_OUTOFMEM.
int32_t post_command(uint32_t command, const Parameter &parameter, TimeLimit &limit, const SourceLocation &where);

} // namespace zv
