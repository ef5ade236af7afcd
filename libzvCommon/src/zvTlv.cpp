#include "zvTlv.h"

#include "bytes.h"
#include "io_buffer.h"
#include "message_format.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#define ZV_SOURCE_PATH "libzvCommon/src/zvTlv"

using namespace zv;

namespace {

constexpr uint32_t COMMAND_SIZE = 2;
constexpr int32_t MIN_LENGTH = 18; // what the first test takes; a message with all it needs is longer
constexpr uint32_t LENGTH_FIELD_MAX = INT16_MAX;

// An element's header is read and written as one number: 0, length of the value, tag.
uint32_t value_length(const uint8_t *element)
{
    return be32(element) >> 8 & UINT16_MAX;
}

uint8_t tag_of(const uint8_t *element)
{
    return static_cast<uint8_t>(be32(element));
}

uint32_t element_length(const uint8_t *element)
{
    return TLV_HEADER_SIZE + value_length(element);
}

// Whether an element that begins after `offset` bytes of the element area has all of its header there.
bool has_header(uint32_t offset, uint32_t area)
{
    return offset + TLV_HEADER_SIZE <= area;
}

// What a message must have, as bits that gather the kinds of its elements.
enum Kind : uint8_t { HAS_CMD = 1, HAS_CMDARG = 2, HAS_DST = 4, HAS_SRC = 8, HAS_RSPARG = 16 };

constexpr auto KINDS = [] {
    std::array<uint8_t, 256> kinds = {};
    kinds[TLV_CMD] = HAS_CMD;
    kinds[TLV_CMDARG] = HAS_CMDARG;
    kinds[TLV_DST] = HAS_DST;
    kinds[TLV_SRC] = HAS_SRC;
    kinds[TLV_RSPARG] = HAS_RSPARG;
    return kinds;
}();

// One pass over the elements, each inside the area or the last to be looked at.
struct Elements {
    uint32_t length = 0;          // their sum; over the area where the last one does not end with the message
    uint8_t kinds = 0;            // bits of Kind
    const uint8_t *end = nullptr; // the first TLV_END

    Elements(const uint8_t *msg, uint32_t area)
    {
        while (has_header(length, area)) {
            const uint8_t *element = msg + TLV_HEADER_SIZE + length;
            kinds |= KINDS[tag_of(element)];
            if (tag_of(element) == TLV_END && end == nullptr) {
                end = element;
            }
            length += element_length(element);
        }
        if (length < area) {
            length += TLV_HEADER_SIZE;
        }
    }

    bool lacks(Kind kind) const { return (kinds & kind) == 0; }
};

// The first element with `tag`, if its value ends inside the message.
uint8_t *find_whole(const uint8_t *msg, uint8_t tag)
{
    uint8_t *element = tlv_find(msg, tag);
    if (element == nullptr || static_cast<uint32_t>(element - msg) + element_length(element) > be16(msg)) {
        return nullptr;
    }
    return element;
}

// A value as text for the log, from its character `skip` on: a malformed message need not end it with a zero byte.
struct ValueText {
    char text[ZVMSG_MAX + 1] = {};

    ValueText(const uint8_t *msg, uint8_t tag, uint32_t skip)
    {
        const uint8_t *element = tlv_find(msg, tag);
        if (const uint32_t length = value_length(element); length > skip) {
            memcpy(text, element + TLV_HEADER_SIZE + skip, std::min<size_t>(length - skip, ZVMSG_MAX));
        }
    }
};

ValueText command_text(const uint8_t *msg)
{
    return {msg, TLV_CMD, 0};
}

// What else than a command every message needs.
struct Need {
    Kind kind;
    const char *finding;
};
constexpr Need NEEDS[] = {
    {HAS_DST, "TLV_ERROR: :%s MSG needs a DST\n"},
    {HAS_SRC, "TLV_ERROR: :%s MSG needs a SRC\n"},
};

// The steps of tlv_validate, with its results. Each assumes that the one before found nothing.
int32_t check_length(int32_t length)
{
    if (length < MIN_LENGTH) {
        ZV_LOG(ZV_LOG_ERROR, "TLV_ERROR: MSG len is too short (%d < %d)\n", length, MIN_LENGTH);
        return -1;
    }
    if (length > ZVMSG_MAX) {
        ZV_LOG(ZV_LOG_ERROR, "TLV_ERROR: MSG len is too long (%d > 1500)\n", length);
        return -1;
    }
    return 0;
}

int32_t check_elements(const uint8_t *msg, int32_t length, const Elements &elements)
{
    const uint32_t area = static_cast<uint32_t>(length) - TLV_HEADER_SIZE;
    if (elements.length != area) {
        ZV_LOG(ZV_LOG_ERROR, "TLV_ERROR: MSG length (%d) does not match internal length (%d0.\n",
               static_cast<int>(elements.length), static_cast<int>(area));
        return -1;
    }
    const uint8_t *last = msg + length - 1;
    if (*last != TLV_END) {
        ZV_LOG(ZV_LOG_ERROR, "TLV_ERROR: MSG is missing ending TLV: 0xEE\n");
        return -1;
    }
    if (elements.lacks(HAS_CMD)) {
        ZV_LOG(ZV_LOG_ERROR, "TLV_ERROR: MSG needs a CMD\n");
        return -3;
    }
    for (const Need &need : NEEDS) {
        if (elements.lacks(need.kind)) {
            ZV_LOG(ZV_LOG_ERROR, need.finding, command_text(msg).text);
            return -3;
        }
    }
    if (elements.end == nullptr || elements.end + ELEMENT_TAG != last) {
        ZV_LOG(ZV_LOG_ERROR, "TLV_ERROR: :%s MSG has too many ending TLV: 0xEE\n", command_text(msg).text);
        return -1;
    }
    return 0;
}

int32_t check_category(const uint8_t *msg, const Elements &elements)
{
    const uint8_t category = msg[MESSAGE_CATEGORY];
    if (category > CATEGORY_MAX) {
        ZV_LOG(ZV_LOG_ERROR, "TLV_ERROR: :%s MSG needs a known CATagory. CAT=0x%02x\n", command_text(msg).text,
               category);
        return -2;
    }
    const bool response = category % 2 == 1;
    if (elements.lacks(HAS_CMDARG)) {
        if (response) {
            ZV_LOG(ZV_LOG_ERROR, "TLV_ERROR: MSG :%s RSP needs a CMDARG\n", command_text(msg).text);
        } else {
            ZV_LOG(ZV_LOG_ERROR, "TLV_ERROR: MSG :%s CMD needs a CMDARG\n", command_text(msg).text);
        }
        return -3;
    }
    if (response && elements.lacks(HAS_RSPARG)) {
        ZV_LOG(ZV_LOG_ERROR, "TLV_WARNING: MSG :%s RSP needs a RSPARG fr%s %s\n", command_text(msg).text,
               ValueText(msg, TLV_SRC, 3).text, ValueText(msg, TLV_DST, 0).text);
    }
    return 0;
}

} // namespace

int32_t sntlv_msg_init(uint8_t *msg, uint32_t size, uint8_t category)
{
    (void)size;
    put_be16(msg, TLV_HEADER_SIZE);
    msg[2] = 0;
    msg[MESSAGE_CATEGORY] = category;
    return TLV_HEADER_SIZE;
}

int32_t sntlv_msg_len(const uint8_t *msg)
{
    return static_cast<int16_t>(be16(msg));
}

int32_t sntlv_add_bin(uint8_t *msg, uint32_t size, uint8_t tag, uint32_t len, const uint8_t *value)
{
    // The parameters' names of the format's first days: the assertions print them.
    const uint8_t atype = tag;
    const uint32_t alen = len;
    const uint32_t end = be16(msg);
    const uint64_t new_end = uint64_t{end} + TLV_HEADER_SIZE + len;
    if (new_end > size || new_end > LENGTH_FIELD_MAX) {
        return 0;
    }
    if (len == 0) {
        ZV_ASSERT((atype != TLV_SRC) || (alen > 0));
        ZV_ASSERT((atype != TLV_DST) || (alen > 0));
    }

    uint8_t *element = msg + end;
    put_be32(element, len << 8 | tag);
    if (len > 0) {
        memcpy(element + TLV_HEADER_SIZE, value, len);
    }
    put_be16(msg, static_cast<uint16_t>(new_end));
    return static_cast<int32_t>(TLV_HEADER_SIZE + len);
}

int32_t sntlv_add_dat(uint8_t *msg, uint32_t size, uint8_t tag, uint32_t len, uint32_t value)
{
    uint8_t bytes[sizeof value];
    if (len > sizeof bytes) {
        return 0;
    }
    memcpy(bytes, &value, sizeof bytes);
    return sntlv_add_bin(msg, size, tag, len, bytes);
}

uint8_t *tlv_find(const uint8_t *msg, uint8_t tag)
{
    const int32_t signed_area = sntlv_msg_len(msg) - TLV_HEADER_SIZE;
    if (signed_area <= 0) {
        return nullptr;
    }
    const auto area = static_cast<uint32_t>(signed_area);
    const uint8_t *elements = msg + TLV_HEADER_SIZE;
    uint32_t offset = 0;
    while (has_header(offset, area)) {
        const uint8_t *element = elements + offset;
        if (tag_of(element) == tag) {
            return const_cast<uint8_t *>(element); // as strchr: the result is as constant as the caller's own pointer
        }
        offset += element_length(element);
    }
    return nullptr;
}

int32_t sntlv_find(uint8_t *dest, int32_t destsize, uint8_t tag, const uint8_t *msg)
{
    const uint8_t *element = find_whole(msg, tag);
    if (element == nullptr) {
        return 0;
    }
    const auto length = static_cast<int32_t>(value_length(element));
    if (length >= destsize) {
        return 0;
    }
    memcpy(dest, element + TLV_HEADER_SIZE, static_cast<size_t>(length));
    return length;
}

int32_t tlv_validate(const uint8_t *msg)
{
    const int32_t length = sntlv_msg_len(msg);
    if (const int32_t result = check_length(length); result != 0) {
        return result;
    }
    const Elements elements(msg, static_cast<uint32_t>(length) - TLV_HEADER_SIZE);
    if (const int32_t result = check_elements(msg, length, elements); result != 0) {
        return result;
    }
    return check_category(msg, elements);
}

void sntlv_void(uint8_t *msg, uint8_t tag)
{
    uint8_t *tlv = find_whole(msg, tag);
    ZV_ASSERT(tlv != NULL);
    tlv[ELEMENT_TAG] = TLV_VOID;
    memset(tlv + TLV_HEADER_SIZE, 0, value_length(tlv));
}

int32_t sntlv_remove(uint8_t *msg, uint32_t size, uint8_t tag)
{
    (void)size;
    const uint8_t *tlvend = find_whole(msg, tag);
    ZV_ASSERT(tlvend != NULL);
    const auto taken = static_cast<int32_t>(element_length(tlvend));
    put_be16(msg, static_cast<uint16_t>(sntlv_msg_len(msg) - taken));
    return -taken;
}

int32_t snLoclItoI(char *dest, uint32_t size, uint32_t count, uint32_t value)
{
    if (count < 1 || count > sizeof value || count > size) {
        return 0;
    }
    for (uint32_t i = 0; i < count; ++i) {
        dest[i] = static_cast<char>(value >> 8 * (count - 1 - i));
    }
    return static_cast<int32_t>(count);
}

int32_t snLoclbin(uint8_t *dest, uint32_t size, uint32_t len, const uint8_t *src)
{
    if (len == 0 || len > size) {
        return 0;
    }
    memcpy(dest, src, len);
    return static_cast<int32_t>(len);
}

int32_t zvmsg_build(zvIoBuf_t *iobuf, const char *cmd, const uint8_t *arg, uint32_t arglen, uint32_t category)
{
    uint8_t *msg = iobuf->buf;
    const uint32_t size = capacity(*iobuf);
    uint8_t code[COMMAND_SIZE] = {};
    memcpy(code, cmd, strnlen(cmd, sizeof code));
    iobuf->len = sntlv_msg_init(msg, size, static_cast<uint8_t>(category));
    iobuf->len += sntlv_add_bin(msg, size, TLV_CMD, sizeof code, code);
    const int32_t added = sntlv_add_bin(msg, size, TLV_CMDARG, arglen, arg);
    iobuf->len += added;
    return added;
}

void zvmsg_response(zvIoBuf_t *iobuf, uint8_t **arg, uint16_t *len)
{
    if (sntlv_msg_len(iobuf->buf) > static_cast<int32_t>(sizeof iobuf->buf)) {
        return;
    }
    if (uint8_t *element = find_whole(iobuf->buf, TLV_RSPARG); element != nullptr) {
        *arg = element + TLV_HEADER_SIZE;
        *len = static_cast<uint16_t>(value_length(element));
    }
}
