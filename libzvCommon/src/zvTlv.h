/*
 * zvTlv.h - the message format of the camera's services
 *
 * A message is a 4-byte header and elements, with no gaps and all lengths big-endian:
 *
 *     header    length of the whole message (2), 0 (1), category (1)
 *     element   0 (1), length of the value (2), tag (1), value
 *
 * An odd category is a response, an even one a command. The functions build, search, check and edit a message in the
 * caller's buffer; they allocate nothing, keep no state, and may be called from any thread, one thread per buffer. A
 * `msg` always points at the first byte of a message, whose buffer holds at least as many bytes as its length field
 * says.
 */
#ifndef ZVCTRL_ZVTLV_H
#define ZVCTRL_ZVTLV_H

#include "zvDbg.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The longest message that is sent or taken, in bytes. */
#define ZVMSG_MAX 1500

/* Element tags. */
enum {
    TLV_CMD = 0x41,     /* two-character command code */
    TLV_CMDARG = 0x42,  /* the command's argument bytes; in every message, command or response */
    TLV_DST = 0x43,     /* name of the destination mailbox, no terminator */
    TLV_SRC = 0x44,     /* name of the source mailbox, no terminator; the answer goes there */
    TLV_RSPARG = 0x45,  /* response argument bytes */
    TLV_ASOURCE = 0x57, /* one byte: who issued the command */
    TLV_VOID = 0x58,    /* blanked by sntlv_void; readers skip it */
    TLV_RSP = 0xEC,     /* return code of a daemon response */
    TLV_END = 0xEE,     /* last element of a message, no value */
};

/* A message buffer, owned by the caller, who sets `size` before the first zvmsg_build: with 0 nothing fits in it. */
typedef struct {
    uint32_t size;          /* capacity of buf that is used, at most ZVMSG_MAX: normally sizeof buf */
    int32_t len;            /* length of the message so far; after a receive the received length, or negative */
    uint8_t buf[ZVMSG_MAX]; /* the message */
} zvIoBuf_t;

/* Writes the header of an empty message, 4 bytes; `size` is not examined. Returns 4. */
ZV_API int32_t sntlv_msg_init(uint8_t *msg, uint32_t size, uint8_t category);

/* The length field, read as a signed 16-bit number. */
ZV_API int32_t sntlv_msg_len(const uint8_t *msg);

/*
 * Appends one element, `len` + 4 bytes, to a message in a buffer of `size` bytes. Returns the bytes added, or 0 when
 * the element does not fit or the message would pass the 32767 bytes of its length field; the message is then
 * unchanged. TLV_SRC and TLV_DST must not be empty (assertion).
 */
ZV_API int32_t sntlv_add_bin(uint8_t *msg, uint32_t size, uint8_t tag, uint32_t len, const uint8_t *value);

/*
 * The same for a number: its first `len` bytes in memory order, 0 to 4; a larger `len` adds nothing and returns 0. With
 * `len` 0 it appends an empty element such as TLV_END.
 */
ZV_API int32_t sntlv_add_dat(uint8_t *msg, uint32_t size, uint8_t tag, uint32_t len, uint32_t value);

/*
 * The first element with `tag`, or null. The result points at the element's first byte: its value's length is 1
 * byte after it, the value 4 bytes. In a message that tlv_validate refuses the value may run past the message's end.
 */
ZV_API uint8_t *tlv_find(const uint8_t *msg, uint8_t tag);

/*
 * Copies the value of the first element with `tag` into `dest`, without a terminator, and returns its length. Returns 0
 * when there is no such element, its length is not smaller than `destsize`, or it runs past the message's end.
 */
ZV_API int32_t sntlv_find(uint8_t *dest, int32_t destsize, uint8_t tag, const uint8_t *msg);

/*
 * Checks a message. Returns 0 when it is valid; -1 for wrong lengths or ends, -2 for a category above 0xEF, -3 for a
 * missing element. Each finding is logged at ERROR. A response without TLV_RSPARG is logged and valid. At most
 * ZVMSG_MAX bytes are read.
 */
ZV_API int32_t tlv_validate(const uint8_t *msg);

/*
 * Blanks the first element with `tag`: its tag becomes TLV_VOID, its value zero. There must be one, and it must end
 * inside the message (assertion): a message from a peer is for tlv_validate first.
 */
ZV_API void sntlv_void(uint8_t *msg, uint8_t tag);

/*
 * Takes the last element off a message, normally TLV_END, so that more can be added: lowers the length field by the
 * size of the first element with `tag`, and moves no bytes; `size` is not examined. As for sntlv_void there must be one
 * (assertion). Returns the negative of the bytes taken off.
 */
ZV_API int32_t sntlv_remove(uint8_t *msg, uint32_t size, uint8_t tag);

/*
 * Writes the low `count` bytes of `value` into `dest`, most significant first. Returns `count`, or 0 when `count` is
 * not 1 to 4 or does not fit in `size`.
 */
ZV_API int32_t snLoclItoI(char *dest, uint32_t size, uint32_t count, uint32_t value);

/* Copies `len` bytes into `dest`. Returns `len`, or 0 when `len` is 0 or above `size`. */
ZV_API int32_t snLoclbin(uint8_t *dest, uint32_t size, uint32_t len, const uint8_t *src);

/*
 * Starts a message in `iobuf`: header, TLV_CMD with the first 2 bytes of `cmd`, TLV_CMDARG with `arglen` bytes of
 * `arg`. What the buffer held is gone; iobuf->size must be set, and iobuf->len follows. Returns the bytes added by the
 * last element, 0 when it did not fit.
 *
 * A send (zvMsg.h, zvc_commands.h) adds the addresses and the end to this message, and an answer replaces it: build it
 * anew before each send. One that is sent twice, or was built with a size of 0, ends the process (assertion).
 */
ZV_API int32_t zvmsg_build(zvIoBuf_t *iobuf, const char *cmd, const uint8_t *arg, uint32_t arglen, uint32_t category);

/*
 * Finds TLV_RSPARG in a message: `*arg` then points at its value inside `iobuf` and `*len` holds its length. Without
 * one, and with one that runs past the message's end, both are left as they were. The message's length field is trusted
 * up to ZVMSG_MAX: compare it with iobuf->len first where the message came from a peer.
 */
ZV_API void zvmsg_response(zvIoBuf_t *iobuf, uint8_t **arg, uint16_t *len);

#ifdef __cplusplus
}
#endif

#endif
