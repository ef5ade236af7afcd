#include "message.h"

#include "bytes.h"
#include "message_format.h"

#include <cstddef>

#include <zvctrl/zvTlv.h>
#include <zvctrl/zvcontrol_if.h>

namespace zv::sim {

const char *link_name(Link link)
{
    return link == Link::DAEMON ? "daemon" : "camera";
}

size_t message_max(Link link)
{
    return link == Link::DAEMON ? DAEMON_MSG_MAX : ZVMSG_MAX;
}

Bytes build_message(uint8_t category, std::initializer_list<Element> elements)
{
    size_t size = TLV_HEADER_SIZE + TLV_HEADER_SIZE; // its own and that of TLV_END
    for (const Element &element : elements) {
        size += TLV_HEADER_SIZE + element.value.size();
    }
    Bytes message(size);
    const auto capacity = static_cast<uint32_t>(size);
    sntlv_msg_init(message.data(), capacity, category);
    for (const Element &element : elements) {
        sntlv_add_bin(message.data(), capacity, element.tag, static_cast<uint32_t>(element.value.size()),
                      element.value.data());
    }
    sntlv_add_bin(message.data(), capacity, TLV_END, 0, nullptr);
    return message;
}

bool well_formed(View message)
{
    return message.size() >= TLV_HEADER_SIZE && sntlv_msg_len(message.data()) >= TLV_HEADER_SIZE &&
           static_cast<size_t>(sntlv_msg_len(message.data())) <= message.size();
}

std::optional<View> find_element(View message, uint8_t tag)
{
    const uint8_t *element = tlv_find(message.data(), tag);
    if (element == nullptr) {
        return std::nullopt;
    }
    const View rest = message.subspan(static_cast<size_t>(element - message.data()) + TLV_HEADER_SIZE);
    const size_t length = be16(element + ELEMENT_LENGTH);
    return length <= rest.size() ? std::optional(rest.first(length)) : std::nullopt;
}

View view_of(const std::string &text)
{
    return {reinterpret_cast<const uint8_t *>(text.data()), text.size()};
}

} // namespace zv::sim
