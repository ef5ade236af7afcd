#include "messages.h"

#include "bytes.h"
#include "message_format.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#define ZV_SOURCE_PATH "libzvCtrlD/src/messages"

using namespace zv;

namespace {

int32_t gMessageDebugEnabled = 0;

constexpr size_t USUAL_ELEMENTS = 8; // no message of this link has more
constexpr uint16_t DUMP_ROW = 16;

const char *type_name(uint8_t type)
{
    switch (type) {
    case TLV_CMD:
        return "CMD";
    case TLV_CMDARG:
        return "CMDARG";
    case TLV_DST:
        return "DST";
    case TLV_SRC:
        return "SRC";
    case TLV_RSPARG:
        return "RSPARG";
    case TLV_ASOURCE:
        return "ASOURCE";
    case TLV_VOID:
        return "VOID";
    case TLV_RSP:
        return "RSP";
    case TLV_END:
        return "EE";
    default:
        return "UNKNOWN";
    }
}

template <class Number>
MemStream &write_number(MemStream &stream, Number number)
{
    stream.writeArray(reinterpret_cast<const uint8_t *>(&number), sizeof number);
    return stream;
}

template <class Number>
MemStream &read_number(MemStream &stream, Number &number)
{
    stream.readArray(reinterpret_cast<uint8_t *>(&number), sizeof number);
    return stream;
}

} // namespace

void enableMessageDebugging(int32_t enable)
{
    gMessageDebugEnabled = enable;
}

void dumpArray(const uint8_t *data, uint16_t length)
{
    if (gMessageDebugEnabled == 0) {
        return;
    }
    if (data == nullptr) {
        puts("None");
        return;
    }
    for (uint16_t i = 0; i < length; ++i) {
        printf("0x%02x ", data[i]);
        if (i % DUMP_ROW == DUMP_ROW - 1) {
            putchar('\n');
        }
    }
    putchar('\n');
}

MemStream::MemStream(uint8_t *buffer, uint16_t length)
{
    attach(buffer, length);
}

MemStream::~MemStream() = default;

void MemStream::attach(uint8_t *buffer, uint16_t length)
{
    m_source = buffer;
    m_sourceLen = length;
    reset();
}

void MemStream::writeArray(const uint8_t *data, uint16_t len)
{
    ZV_ASSERT_TRACE((m_index + len) <= m_sourceLen);
    if (len != 0) {
        memcpy(m_source + m_index, data, len);
        m_index = static_cast<uint16_t>(m_index + len);
    }
}

void MemStream::readArray(uint8_t *data, uint16_t len)
{
    ZV_ASSERT_TRACE(m_index + len <= m_sourceLen);
    if (len != 0) {
        memcpy(data, m_source + m_index, len);
        m_index = static_cast<uint16_t>(m_index + len);
    }
}

uint8_t *MemStream::getBuffer() const
{
    return m_source;
}

uint16_t MemStream::getLength() const
{
    return m_index;
}

void MemStream::reset()
{
    m_index = 0;
    m_failed = false;
}

void MemStream::dump() const
{
    dumpArray(m_source, m_index);
}

void MemStream::dumpAll() const
{
    dumpArray(m_source, m_sourceLen);
}

bool MemStream::failed() const
{
    return m_failed;
}

// Whether a peer's next `len` bytes are there; the stream has failed when they are not.
bool MemStream::expect(uint16_t len)
{
    m_failed = m_failed || m_index + len > m_sourceLen;
    return !m_failed;
}

MemStream &MemStream::operator<<(uint8_t number)
{
    return write_number(*this, number);
}

MemStream &MemStream::operator<<(uint16_t number)
{
    return write_number(*this, number);
}

MemStream &MemStream::operator<<(uint32_t number)
{
    return write_number(*this, number);
}

MemStream &MemStream::operator<<(int32_t number)
{
    return write_number(*this, number);
}

MemStream &MemStream::operator>>(uint8_t &number)
{
    return read_number(*this, number);
}

MemStream &MemStream::operator>>(uint16_t &number)
{
    return read_number(*this, number);
}

MemStream &MemStream::operator>>(uint32_t &number)
{
    return read_number(*this, number);
}

MemStream &MemStream::operator>>(int32_t &number)
{
    return read_number(*this, number);
}

MsgElement::MsgElement(uint8_t type, uint16_t length, const uint8_t *data, bool isStatic) : MsgElement(type, isStatic)
{
    MsgElement::setData(data, length);
}

MsgElement::~MsgElement()
{
    delete[] m_data;
}

uint16_t MsgElement::getSize() const
{
    return static_cast<uint16_t>(TLV_HEADER_SIZE + m_length);
}

uint8_t MsgElement::getType() const
{
    return m_type;
}

void MsgElement::setData(const uint8_t *data, uint16_t length)
{
    if (data == nullptr || length == 0) {
        replace(nullptr, 0);
        return;
    }
    if (length == m_length) {
        memmove(m_data, data, length); // the caller may hand back what getData gave
        return;
    }
    auto *copy = new uint8_t[length];
    memcpy(copy, data, length);
    replace(copy, length);
}

void MsgElement::replace(uint8_t *data, uint16_t length)
{
    delete[] m_data;
    m_data = data;
    m_length = length;
}

uint8_t *MsgElement::getData() const
{
    return m_data;
}

uint16_t MsgElement::getDataLength() const
{
    return m_length;
}

void MsgElement::getDataAs(uint8_t &data) const
{
    ZV_ASSERT_TRACE(getData() != NULL);
    ZV_ASSERT_TRACE(getDataLength() == sizeof(data));
    MemStream(getData(), getDataLength()) >> data;
}

void MsgElement::getDataAs(uint16_t &data) const
{
    ZV_ASSERT_TRACE(getData() != NULL);
    ZV_ASSERT_TRACE(getDataLength() == sizeof(data));
    MemStream(getData(), getDataLength()) >> data;
}

void MsgElement::getDataAs(uint32_t &data) const
{
    ZV_ASSERT_TRACE(getData() != NULL);
    ZV_ASSERT_TRACE(getDataLength() == sizeof(data));
    MemStream(getData(), getDataLength()) >> data;
}

void MsgElement::dump() const
{
    if (gMessageDebugEnabled != 0) {
        printf("Message Element->Category:%s length:%d\n", type_name(m_type), m_length);
        dumpArray(m_data, m_length);
    }
}

bool MsgElement::isStatic() const
{
    return m_static;
}

Msg::Msg(uint8_t category) : m_category(category) {}

Msg::~Msg()
{
    Msg::clear();
}

void Msg::clear()
{
    for (const MsgElement *element : m_elements) {
        if (!element->isStatic()) {
            delete element;
        }
    }
    m_elements.clear();
}

uint16_t Msg::getSize() const
{
    uint16_t size = TLV_HEADER_SIZE;
    for (const MsgElement *element : m_elements) {
        size = static_cast<uint16_t>(size + element->getSize());
    }
    return size;
}

uint8_t Msg::getCategory() const
{
    return m_category;
}

MsgElement *Msg::findElement(uint8_t type) const
{
    const auto found = std::find_if(m_elements.begin(), m_elements.end(),
                                    [type](const MsgElement *element) { return element->getType() == type; });
    return found != m_elements.end() ? *found : nullptr;
}

void Msg::dump(const char *label) const
{
    if (gMessageDebugEnabled == 0) {
        return;
    }
    if (label != nullptr) {
        printf("-------- %s ---------\n", label);
    }
    printf("Category: %d   Length:%d \n", m_category, getSize());
    for (const MsgElement *element : m_elements) {
        element->dump();
    }
}

void Msg::addElement(MsgElement *element)
{
    if (m_elements.empty()) {
        m_elements.reserve(USUAL_ELEMENTS);
    }
    m_elements.push_back(element);
}

void Msg::addElement(uint8_t type, uint16_t length, const uint8_t *data)
{
    adopt(std::make_unique<MsgElement>(type, length, data));
}

void Msg::adopt(std::unique_ptr<MsgElement> element)
{
    addElement(element.get());
    static_cast<void>(element.release()); // the list's, now that it is there
}

CommandMsg::CommandMsg() : Msg(CAT_ZVCTRL_CMD) {}

CommandMsg::~CommandMsg() = default;

MemStream &operator<<(MemStream &stream, const MsgElement &element)
{
    uint8_t header[TLV_HEADER_SIZE] = {};
    put_be16(header + ELEMENT_LENGTH, element.getDataLength());
    header[ELEMENT_TAG] = element.getType();
    stream.writeArray(header, sizeof header);
    stream.writeArray(element.getData(), element.getDataLength());
    return stream;
}

MemStream &operator<<(MemStream &stream, const Msg &msg)
{
    msg.dump();
    stream.reset();
    uint8_t header[TLV_HEADER_SIZE] = {};
    put_be16(header + MESSAGE_LENGTH, msg.getSize());
    header[MESSAGE_CATEGORY] = msg.getCategory();
    stream.writeArray(header, sizeof header);
    for (const MsgElement *element : msg.m_elements) {
        stream << *element;
    }
    return stream;
}

MemStream &operator>>(MemStream &stream, MsgElement &element)
{
    if (!stream.expect(TLV_HEADER_SIZE)) {
        return stream;
    }
    uint8_t header[TLV_HEADER_SIZE];
    stream.readArray(header, sizeof header);
    const uint16_t length = be16(header + ELEMENT_LENGTH);
    if (!stream.expect(length)) {
        return stream;
    }
    element.m_type = header[ELEMENT_TAG];
    element.setData(stream.getBuffer() + stream.getLength(), length);
    stream.m_index = static_cast<uint16_t>(stream.m_index + length);
    return stream;
}

MemStream &operator>>(MemStream &stream, Msg &msg)
{
    stream.reset();
    msg.clear();
    if (!stream.expect(TLV_HEADER_SIZE)) {
        return stream;
    }
    uint8_t header[TLV_HEADER_SIZE];
    stream.readArray(header, sizeof header);
    const uint16_t size = be16(header + MESSAGE_LENGTH);
    msg.m_category = header[MESSAGE_CATEGORY];
    while (stream.getLength() < size) { // the cursor is what the message measures so far
        auto element = std::make_unique<MsgElement>();
        stream >> *element;
        if (stream.failed()) {
            msg.clear();
            break;
        }
        msg.adopt(std::move(element));
    }
    return stream;
}
