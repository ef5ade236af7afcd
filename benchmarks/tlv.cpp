// Building and checking one message of six elements, the library's way and written by hand for this message alone.
#include "bytes.h"
#include "measure.h"
#include "queue_names.h"
#include "zvTlv.h"

#include <cstring>
#include <string_view>

using namespace std::string_view_literals;

namespace {

// What goes into a message; the argument and the names change from message to message.
struct Content {
    std::string_view argument;
    std::string_view source;
    std::string_view destination;
};

constexpr Content contents[] = {
    {"\0\1\7\0\0"sv, "/to_web"sv, zv::CAMERA_QUEUE},    {"\0\2\x61\0\1\5"sv, "/to_bluetooth"sv, zv::CAMERA_QUEUE},
    {"\0\3\x17\0\0"sv, "/to_x"sv, zv::RELAY_QUEUE},     {"\0\11\1\0\4abcd"sv, "/to_updater"sv, zv::CAMERA_QUEUE},
    {"\0\7\2\0\1\1"sv, "/to_voice"sv, zv::RELAY_QUEUE},
};

const uint8_t *bytes(std::string_view text)
{
    return reinterpret_cast<const uint8_t *>(text.data());
}

void library_add(zvIoBuf_t &message, uint8_t tag, std::string_view value)
{
    message.len += sntlv_add_bin(message.buf, message.size, tag, static_cast<uint32_t>(value.size()), bytes(value));
}

bool library(zvIoBuf_t &message, const Content &content)
{
    message.len = sntlv_msg_init(message.buf, message.size, zv::CATEGORY_CAMERA);
    library_add(message, TLV_CMD, zv::REMOTE_API_COMMAND);
    library_add(message, TLV_CMDARG, content.argument);
    library_add(message, TLV_ASOURCE, "\1");
    library_add(message, TLV_SRC, content.source);
    library_add(message, TLV_DST, content.destination);
    library_add(message, TLV_END, "");
    return tlv_validate(message.buf) == 0;
}

uint8_t *put(uint8_t *next, uint8_t tag, std::string_view value)
{
    next[0] = 0;
    zv::put_be16(next + 1, static_cast<uint16_t>(value.size()));
    next[3] = tag;
    memcpy(next + 4, value.data(), value.size());
    return next + 4 + value.size();
}

bool build_by_hand(zvIoBuf_t &message, const Content &content)
{
    const size_t size =
        4 + 6 + 4 + content.argument.size() + 5 + 4 + content.source.size() + 4 + content.destination.size() + 4;
    if (size > message.size || content.source.empty() || content.destination.empty()) {
        return false;
    }
    zv::put_be16(message.buf, static_cast<uint16_t>(size));
    message.buf[2] = 0;
    message.buf[3] = zv::CATEGORY_CAMERA;
    uint8_t *next = message.buf + 4;
    next = put(next, TLV_CMD, zv::REMOTE_API_COMMAND);
    next = put(next, TLV_CMDARG, content.argument);
    next = put(next, TLV_ASOURCE, "\1");
    next = put(next, TLV_SRC, content.source);
    next = put(next, TLV_DST, content.destination);
    put(next, TLV_END, "");
    message.len = static_cast<int32_t>(size);
    return true;
}

// The elements in the order of this message, none after the end.
bool check_by_hand(const zvIoBuf_t &message)
{
    const uint32_t length = zv::be16(message.buf);
    if (length < 18 || length > ZVMSG_MAX || message.buf[3] > 0xEF) {
        return false;
    }
    uint32_t offset = 4;
    for (const uint8_t tag : {TLV_CMD, TLV_CMDARG, TLV_ASOURCE, TLV_SRC, TLV_DST, TLV_END}) {
        if (offset + 4 > length || message.buf[offset + 3] != tag) {
            return false;
        }
        offset += 4U + zv::be16(message.buf + offset + 1);
    }
    return offset == length;
}

bool by_hand(zvIoBuf_t &message, const Content &content)
{
    return build_by_hand(message, content) && check_by_hand(message);
}

template <class Build>
void build_and_check(benchmark::State &state, Build build)
{
    zvIoBuf_t message = {};
    message.size = sizeof message.buf;
    size_t i = 0;
    bench::measure(state, [&] {
        i = i + 1 < std::size(contents) ? i + 1 : 0;
        if (!build(message, contents[i])) {
            state.SkipWithError("an invalid message");
        }
        benchmark::DoNotOptimize(message.buf);
        benchmark::ClobberMemory();
    });
}

BENCHMARK_CAPTURE(build_and_check, library, library)->Name("tlv_message/library");
BENCHMARK_CAPTURE(build_and_check, by_hand, by_hand)->Name("tlv_message/by_hand");

} // namespace
