/*
 * zvMbox.h - mailboxes: named message queues with this system's sizes, modes and retries
 *
 * A mailbox is a POSIX message queue of ZVMSG_MAX-byte messages with mode 0664, less the umask, in blocking mode. All
 * messages have priority 0. Nothing is locked and nothing is global: a zvMbox_t belongs to one thread at a time.
 *
 * Results are 0 or -1 unless said otherwise. On -1, errno holds the reason and the log names what failed (except for
 * zvMbox_close). EMFILE is also what the kernel answers when the user's queues together are larger than RLIMIT_MSGQUEUE
 * (ulimit -q).
 */
#ifndef ZVCTRL_ZVMBOX_H
#define ZVCTRL_ZVMBOX_H

#include "zvTlv.h"

#ifdef __cplusplus
extern "C" {
#endif

#define ZVMSG_MAX_COUNT_SM 2  /* depth of a reply mailbox */
#define ZVMSG_MAX_COUNT_TX 40 /* depth noted for a mailbox that is written to */

/* An open mailbox. */
typedef struct {
    mqd_t mqd;           /* -1 after a failed open and after a close */
    struct mq_attr attr; /* the queue's depth and message size; refreshed at each send */
    const char *name;    /* the caller's text, which outlives the record */
} zvMbox_t;

/* Fills in `name` and the attributes: `maxmsg` messages of ZVMSG_MAX bytes. Leaves mqd alone, and opens nothing. */
ZV_API void zvMbox_init(const char *name, int32_t maxmsg, zvMbox_t *mbox);

/*
 * Opens a mailbox for reading, creating it where it does not exist; an existing one keeps its own sizes. Five attempts,
 * each failed one followed by 10 ms.
 */
ZV_API int32_t zvMbox_rxopen_ext(const char *name, int32_t maxmsg, int32_t msgsize, zvMbox_t *mbox);
ZV_API int32_t zvMbox_rxopen(const char *name, int32_t maxmsg, zvMbox_t *mbox);

/*
 * Opens a mailbox for reading that must not exist yet, which makes it a lock on its name: the caller unlinks it when it
 * is done, and only after a success. Six attempts with growing pauses between them, 1.5 seconds in all.
 */
ZV_API int32_t zvMbox_rxopen_shared_ext(const char *name, int32_t maxmsg, int32_t msgsize, zvMbox_t *mbox);
ZV_API int32_t zvMbox_rxopen_shared(const char *name, int32_t maxmsg, zvMbox_t *mbox);

/* Opens an existing mailbox for writing, in one attempt. */
ZV_API int32_t zvMbox_txopen(const char *name, zvMbox_t *mbox);

/*
 * Closes the mailbox, which stays in existence, and sets mqd to -1. A second close fails with EBADF and closes nothing
 * that got the number since.
 */
ZV_API int32_t zvMbox_close(zvMbox_t *mbox);

/* Removes the name. Processes that have it open can use it until they close it. */
ZV_API int32_t zvMbox_unlink(const char *name);

/* Brings a mailbox into existence and leaves it closed. Always 0: a failure shows in the log alone. */
ZV_API int32_t zvMbox_create_ext(const char *name, int32_t maxmsg, int32_t msgsize);
ZV_API int32_t zvMbox_create(const char *name, int32_t maxmsg);

/*
 * Posts one message of at most ZVMSG_MAX bytes (assertion). A full mailbox loses the message: that is logged, and the
 * result is 0. Does not block, unless another sender fills the mailbox in this very moment. A failed mq_send is -1 with
 * its errno and is not logged.
 */
ZV_API int32_t zvMbox_send(const uint8_t *buf, int32_t len, zvMbox_t *mbox);

/*
 * Takes the next message into `buf` of `size` bytes, and blocks until there is one. Returns its length. Returns -1,
 * with a line in the log, when `size` is below the mailbox's message size (the message stays), when the mailbox is not
 * open, and when a signal came, so a signal can interrupt a blocked caller.
 */
ZV_API int32_t snzvMbox_receive(uint8_t *buf, int32_t size, zvMbox_t *mbox);

/*
 * The same, waiting at most `seconds` as msg_available does, which a signal does not end: then -1 with ETIMEDOUT, after
 * a warning.
 */
ZV_API int32_t snzvMbox_timedreceive_w_time(uint8_t *buf, int32_t size, zvMbox_t *mbox, int32_t seconds);

/* The same with 10 seconds. */
ZV_API int32_t snzvMbox_timedreceive(uint8_t *buf, int32_t size, zvMbox_t *mbox);

#ifdef __cplusplus
}
#endif

#endif
