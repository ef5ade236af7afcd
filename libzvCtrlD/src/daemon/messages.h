/*
 * messages.h - the messages of the control daemon
 *
 * A message has the byte shape and the tags of zvTlv.h, a 4-byte header and elements with big-endian lengths, but may
 * be longer: up to 65535 bytes, and DAEMON_MSG_MAX (zvcontrol_if.h) on the daemon's queues. Here it is an object: a Msg
 * owns a list of MsgElements, writes itself to a MemStream and reads itself from one. Numbers inside an element's data
 * are in the machine's own byte order.
 *
 * Nothing here blocks. An object belongs to one thread at a time. What copies data may throw std::bad_alloc.
 */
#ifndef ZVCTRL_MESSAGES_H
#define ZVCTRL_MESSAGES_H

#include "zvTlv.h"

/* Categories of a message. */
enum {
    CAT_ZVCTRL_CMD = 20,
    CAT_ZVCTRL_RSP = 21,
};

#ifdef __cplusplus
extern "C" {
#endif

/* Turns the dumps of messages, streams and bytes on (not 0) or off (0, as at start). They go to standard output. */
ZV_API void enableMessageDebugging(int32_t enable);

/* Prints bytes in rows of 16, or "None" for null; nothing while the dumps are off. */
ZV_API void dumpArray(const uint8_t *data, uint16_t length);

#ifdef __cplusplus
}

#include <memory>
#include <vector>

class Msg;
class MsgElement;

/*
 * A cursor with bounds over a caller's buffer, which must outlive it. It never allocates. Writing or reading past the
 * buffer's end is this program's own fault and an assertion; only whole elements and messages, which come from a peer,
 * may be read from bytes that turn out too short.
 */
class ZV_API MemStream {
  public:
    MemStream() = default; /* no buffer */
    MemStream(uint8_t *buffer, uint16_t length);
    virtual ~MemStream();

    /* Prints the whole buffer. */
    virtual void dumpAll() const;

    /* Points the stream at a buffer, with the cursor at its first byte. */
    void attach(uint8_t *buffer, uint16_t length);

    /* Copy `len` bytes in or out at the cursor, and advance it. */
    void writeArray(const uint8_t *data, uint16_t len);
    void readArray(uint8_t *data, uint16_t len);

    uint8_t *getBuffer() const;
    /* Where the cursor is: the bytes written or read so far. */
    uint16_t getLength() const;
    /* Sets the cursor back to the first byte. */
    void reset();
    /* Prints the bytes before the cursor. */
    void dump() const;

    /* Whether an element or a message read since the last attach or reset was cut off by the buffer's end. */
    bool failed() const;

    /* Raw copies of a number in the machine's byte order. */
    MemStream &operator<<(uint8_t number);
    MemStream &operator<<(uint16_t number);
    MemStream &operator<<(uint32_t number);
    MemStream &operator<<(int32_t number);
    MemStream &operator>>(uint8_t &number);
    MemStream &operator>>(uint16_t &number);
    MemStream &operator>>(uint32_t &number);
    MemStream &operator>>(int32_t &number);

  private:
    friend ZV_API MemStream &operator>>(MemStream &stream, MsgElement &element);
    friend ZV_API MemStream &operator>>(MemStream &stream, Msg &msg);

    bool expect(uint16_t len);

    uint16_t m_index = 0;
    uint8_t *m_source = nullptr;
    uint16_t m_sourceLen = 0;
    bool m_failed = false;
};

/*
 * One element: a type, which is a tag of zvTlv.h, and a copy of its data. A static element outlives the messages that
 * it is added to; they leave it alone, so that it can be filled anew for the next one.
 */
class ZV_API MsgElement {
  public:
    constexpr MsgElement() = default; /* of type TLV_VOID */
    constexpr explicit MsgElement(uint8_t type, bool isStatic = false) : m_type(type), m_static(isStatic) {}
    MsgElement(uint8_t type, uint16_t length, const uint8_t *data, bool isStatic = false);
    virtual ~MsgElement();
    MsgElement(const MsgElement &) = delete;
    MsgElement &operator=(const MsgElement &) = delete;

    /* The element's bytes on the wire: 4 and the data, modulo 65536. */
    virtual uint16_t getSize() const;
    virtual uint8_t getType() const;
    /* Replaces the data by a copy; a null `data` counts as empty. Data of the present length goes into the present
     * array. */
    virtual void setData(const uint8_t *data, uint16_t length);
    /* The element's own bytes, until the next setData; null when there are none. */
    virtual uint8_t *getData() const;
    virtual uint16_t getDataLength() const;
    /* The data as a number in the machine's byte order. It must be exactly as wide (assertion). */
    virtual void getDataAs(uint8_t &data) const;
    virtual void getDataAs(uint16_t &data) const;
    virtual void getDataAs(uint32_t &data) const;
    /* Prints type, length and data. */
    virtual void dump() const;
    bool isStatic() const;

  private:
    friend ZV_API MemStream &operator>>(MemStream &stream, MsgElement &element);

    void replace(uint8_t *data, uint16_t length);

    uint8_t m_type = TLV_VOID;
    bool m_static = false;
    uint16_t m_length = 0;
    uint8_t *m_data = nullptr;
};

/* A message: its category, and its elements in the order of adding. */
class ZV_API Msg {
  public:
    explicit Msg(uint8_t category);
    virtual ~Msg();
    Msg(const Msg &) = delete;
    Msg &operator=(const Msg &) = delete;

    /* Empties the list. Deletes the elements that are not static. */
    virtual void clear();
    /* The message's bytes on the wire, modulo 65536. */
    virtual uint16_t getSize() const;
    virtual uint8_t getCategory() const;
    /* The first element of that type, owned by the message, or null. */
    virtual MsgElement *findElement(uint8_t type) const;
    /* Prints the message, under a heading unless `label` is null. */
    virtual void dump(const char *label = nullptr) const;

    /* Adds an element at the end. One that is not static was made with new, and now belongs to the message. */
    void addElement(MsgElement *element);
    /* Adds a new element with a copy of the data. */
    void addElement(uint8_t type, uint16_t length, const uint8_t *data);

  private:
    friend ZV_API MemStream &operator<<(MemStream &stream, const Msg &msg);
    friend ZV_API MemStream &operator>>(MemStream &stream, Msg &msg);

    void adopt(std::unique_ptr<MsgElement> element);

    std::vector<MsgElement *> m_elements;
    uint8_t m_category;
};

/* A message to the daemon. */
class ZV_API CommandMsg : public Msg {
  public:
    CommandMsg();
    ~CommandMsg() override;
};

/* Writes at the cursor. An element that does not fit is an assertion. */
ZV_API MemStream &operator<<(MemStream &stream, const MsgElement &element);

/* Writes from the buffer's first byte on. A message that does not fit is an assertion. */
ZV_API MemStream &operator<<(MemStream &stream, const Msg &msg);

/* Reads one element at the cursor. When it is cut off the stream has failed, and the element is as it was. */
ZV_API MemStream &operator>>(MemStream &stream, MsgElement &element);

/*
 * Reads a message from the buffer's first byte on, in place of what `msg` held. It ends with the element that reaches
 * its size field; what comes after that is left alone. When the bytes stop short of that end the stream has failed,
 * and `msg` is empty.
 */
ZV_API MemStream &operator>>(MemStream &stream, Msg &msg);

#endif

#endif
