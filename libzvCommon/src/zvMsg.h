/*
 * zvMsg.h - one request, with or without an answer, through mailboxes that are open for that exchange alone
 *
 * The caller builds the message's body with zvmsg_build, anew for each send; the sends here add the addresses and the
 * end. `from` is the sender's reply mailbox and `to` the destination, both written into the message; both are not
 * empty. `via` is the mailbox that carries the message, such as a relay's; null means `to`. `direction` selects the row
 * of the message trace (zvHex.h), 0 for none.
 *
 * ```c
 * const uint8_t argument[] = {0, 7, 12, 0, 0};
 * zvIoBuf_t iobuf;
 * iobuf.size = sizeof iobuf.buf;
 * zvmsg_build(&iobuf, "YY", argument, sizeof argument, 4);
 * if (zvmsg_send_timedreceive(&iobuf, "/to_web", "/to_camera", "/to_zvnet", 0) >= 0) {
 *     uint8_t *answer = NULL;
 *     uint16_t length = 0;
 *     zvmsg_response(&iobuf, &answer, &length);
 * }
 * ```
 *
 * Besides the argument a message takes 26 bytes and the two names, and must fit in iobuf->size; a message that does not
 * is the caller's fault (assertion). Threads do not disturb each other with buffers and reply mailboxes of their own.
 */
#ifndef ZVCTRL_ZVMSG_H
#define ZVCTRL_ZVMSG_H

#include "zvTlv.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Posts the message and waits for nothing. Returns 0, also where a full mailbox lost the message, or -1 when the
 * mailbox cannot be opened.
 */
ZV_API int32_t zvmsg_send(zvIoBuf_t *iobuf, const char *from, const char *to, const char *via, int32_t direction);

/*
 * Posts the message and waits for the answer, which replaces it in `iobuf`. The reply mailbox exists for the time of
 * the exchange alone; requests with the same one run one after the other.
 *
 * Returns the answer's length, or -1 when none came in `seconds`, when it is not a valid message, when iobuf->size is
 * below the ZVMSG_MAX of the reply mailbox, and when a mailbox cannot be opened. The result is also in iobuf->len. It
 * may exceed the message's own length; ignore the surplus bytes. The name of the reply mailbox is free again at the
 * return, unless somebody else held it.
 *
 * Blocks for up to `seconds`, after up to 1.5 seconds for the reply mailbox. A late answer to an earlier request from
 * the same reply mailbox is taken for the answer: compare its TLV_CMDARG where that matters.
 */
ZV_API int32_t zvmsg_send_timedreceive_w_time(zvIoBuf_t *iobuf, const char *from, const char *to, const char *via,
                                              int32_t direction, int32_t seconds);

/* The same with 10 seconds. */
ZV_API int32_t zvmsg_send_timedreceive(zvIoBuf_t *iobuf, const char *from, const char *to, const char *via,
                                       int32_t direction);

#ifdef __cplusplus
}
#endif

#endif
