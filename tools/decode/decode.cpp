#include "decode.h"

#include "bytes.h"
#include "message_format.h"
#include "names.h"
#include "queue_names.h"
#include "remote_commands.h"
#include "trace.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>
#include <zvctrl/camera_records.h>
#include <zvctrl/messages.h>
#include <zvctrl/zvDbg.h>
#include <zvctrl/zvTlv.h>
#include <zvctrl/zvcontrol_if.h>

namespace zv {

namespace {

constexpr size_t ROW = 16; // bytes printed in a line

std::string text(const char *format, ...) __attribute__((format(printf, 1, 2)));

std::string text(const char *format, ...)
{
    char buffer[512];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    return buffer;
}

struct Element {
    size_t offset;
    uint8_t tag;
    const uint8_t *value;
    size_t size;
};

// One message while it is taken apart.
class Message {
  public:
    Message(const uint8_t *bytes, size_t size, Link link) : m_bytes(bytes), m_size(size), m_link(link) {}

    int print(std::ostream &out);

  private:
    bool daemon() const { return m_link == Link::DAEMON; }
    bool response() const { return daemon() ? m_category == CAT_ZVCTRL_RSP : m_category % 2 == 1; }
    bool remote_api() const;
    const Element *find(uint8_t tag) const;

    void read_elements();
    void check_ends();
    void check_contents();
    void require(uint8_t tag);
    void require_size(uint8_t tag, size_t size);

    std::string meaning(const Element &element);
    std::string command(const Element &element);
    std::string argument(const Element &element);
    std::string answer(const Element &element);
    std::string remote_request(const Element &element);
    std::string remote_answer(const Element &element);

    void fault(const std::string &what) { m_faults.push_back(what); }

    const uint8_t *m_bytes;
    size_t m_size;
    Link m_link;
    uint8_t m_category = 0;
    std::vector<Element> m_elements;
    std::vector<std::string> m_faults;
};

std::string or_unknown(std::string_view name)
{
    return std::string(name.empty() ? "?" : name);
}

// Quoted, with a full stop for what cannot be printed.
std::string quoted(const uint8_t *bytes, size_t size)
{
    std::string result = "\"";
    for (size_t i = 0; i < size; ++i) {
        result += bytes[i] >= 0x20 && bytes[i] <= 0x7E ? static_cast<char>(bytes[i]) : '.';
    }
    return result + "\"";
}

void print_bytes(std::ostream &out, const uint8_t *bytes, size_t size, size_t indent)
{
    for (size_t row = 0; row < size; row += ROW) {
        std::string line(indent, ' ');
        for (size_t i = row; i < std::min(row + ROW, size); ++i) {
            line += text(i == row ? "%02X" : " %02X", bytes[i]);
        }
        out << line << '\n';
    }
}

bool Message::remote_api() const
{
    const Element *cmd = find(TLV_CMD);
    constexpr std::string_view CODE = REMOTE_API_COMMAND;
    return cmd != nullptr && std::equal(cmd->value, cmd->value + cmd->size, CODE.begin(), CODE.end());
}

const Element *Message::find(uint8_t tag) const
{
    const auto found = std::find_if(m_elements.begin(), m_elements.end(),
                                    [tag](const Element &element) { return element.tag == tag; });
    return found != m_elements.end() ? &*found : nullptr;
}

void Message::read_elements()
{
    size_t offset = TLV_HEADER_SIZE;
    while (offset < m_size) {
        if (m_size - offset < TLV_HEADER_SIZE) {
            fault(text("the message ends at %zu, inside the head of the element at %zu", m_size, offset));
            return;
        }
        const size_t size = be16(m_bytes + offset + ELEMENT_LENGTH);
        const uint8_t tag = m_bytes[offset + ELEMENT_TAG];
        const size_t left = m_size - offset - TLV_HEADER_SIZE;
        if (size > left) {
            fault(text("the element at %zu has length %zu, and %zu bytes are left", offset, size, left));
        }
        m_elements.push_back({offset, tag, m_bytes + offset + TLV_HEADER_SIZE, std::min(size, left)});
        if (tag_name(tag).empty()) {
            fault(text("the element at %zu has the unknown tag 0x%02X", offset, tag));
        }
        offset += TLV_HEADER_SIZE + std::min(size, left);
    }
}

void Message::check_ends()
{
    const auto ends = std::count_if(m_elements.begin(), m_elements.end(),
                                    [](const Element &element) { return element.tag == TLV_END; });
    if (ends == 0 || m_elements.back().tag != TLV_END) {
        fault("END is not the last element");
    }
    if (ends > 1) {
        fault("there is more than one END");
    }
    if (const Element *end = find(TLV_END); end != nullptr && end->size != 0) {
        fault("END has a value");
    }
}

void Message::require(uint8_t tag)
{
    if (find(tag) == nullptr) {
        fault("there is no " + or_unknown(tag_name(tag)));
    }
}

void Message::require_size(uint8_t tag, size_t size)
{
    if (const Element *element = find(tag); element != nullptr && element->size != size) {
        fault(text("%s has length %zu, not %zu", or_unknown(tag_name(tag)).c_str(), element->size, size));
    }
}

void Message::check_contents()
{
    check_ends();
    if (daemon()) {
        if (m_category != CAT_ZVCTRL_CMD && m_category != CAT_ZVCTRL_RSP) {
            fault(text("the daemon's categories are 20 and 21, not %d", m_category));
        }
        require(response() ? TLV_RSP : TLV_CMD);
        if (!response()) {
            require(TLV_SRC);
        }
        require_size(TLV_CMD, 4);
        require_size(TLV_RSP, 4);
        return;
    }
    if (m_category > CATEGORY_MAX) {
        fault(text("category 0x%02X is above 0x%02X", m_category, CATEGORY_MAX));
    }
    for (const uint8_t tag : {TLV_CMD, TLV_CMDARG, TLV_SRC, TLV_DST}) {
        require(tag);
    }
    if (response()) {
        require(TLV_RSPARG);
    }
    require_size(TLV_CMD, 2);
    require_size(TLV_ASOURCE, 1);
}

std::string Message::command(const Element &element)
{
    if (!daemon()) {
        return quoted(element.value, element.size) + (remote_api() ? " remote API" : "");
    }
    if (element.size != 4) {
        return "";
    }
    const uint32_t number = le32(element.value);
    const std::string name = daemon_command_name(number);
    return text("%u ", number) + (name.empty() ? "unknown command" : name);
}

std::string Message::argument(const Element &element)
{
    if (!daemon()) {
        return remote_api() && !response() ? remote_request(element) : "";
    }
    const Element *cmd = find(TLV_CMD);
    const uint32_t number = cmd != nullptr && cmd->size == 4 ? le32(cmd->value) : 0;
    if (number == ZVCONTROL_SET_SETTING_ID && element.size == 8) {
        const uint32_t id = le32(element.value);
        return text("setting %u %s, value %u", id, or_unknown(setting_name(id)).c_str(), le32(element.value + 4));
    }
    return number == ZVCONTROL_RESYNC_MESSAGE_QUEUE && element.size == 4 ? text("key %u", le32(element.value)) : "";
}

std::string Message::answer(const Element &element)
{
    if (!daemon()) {
        return remote_api() ? remote_answer(element) : "";
    }
    switch (element.size) {
    case sizeof(uint32_t):
        return text("number %u", le32(element.value));
    case sizeof(appc_setup_all_settings):
        return "settings record";
    case sizeof(appc_system_all_status):
        return "status record";
    case sizeof(all_status_settings_t):
        return "status, settings and system settings records";
    default:
        return "";
    }
}

std::string Message::remote_request(const Element &element)
{
    if (element.size < REMOTE_API_HEADER_SIZE) {
        fault(text("the remote API request has length %zu, less than its head of 5", element.size));
        return "";
    }
    const uint8_t group = element.value[REMOTE_REQUEST_GROUP];
    const uint8_t action = element.value[REMOTE_REQUEST_ACTION];
    const size_t announced = be16(element.value + REMOTE_REQUEST_SIZE);
    const size_t payload = element.size - REMOTE_API_HEADER_SIZE;
    if (announced != payload) {
        fault(text("the remote API request says payload size %zu, and has %zu", announced, payload));
    }
    const std::string_view group_text = group_name(group);
    if (group_text.empty()) {
        fault(text("remote API group %d is unknown", group));
    }
    return text("group %d %s, action %d %s, payload size %zu", group, or_unknown(group_text).c_str(), action,
                or_unknown(action_name(group, action)).c_str(), payload);
}

std::string Message::remote_answer(const Element &element)
{
    if (element.size == 1 && element.value[REMOTE_ANSWER_ACK] == ZVN_NACK_OFF) {
        return "the camera is switched off";
    }
    if (element.size < REMOTE_ANSWER_PAYLOAD) {
        fault(text("the remote API answer has length %zu, less than its head of 7", element.size));
        return "";
    }
    const size_t announced = be16(element.value + REMOTE_ANSWER_SIZE);
    const size_t payload = element.size - REMOTE_ANSWER_PAYLOAD;
    if (announced > payload) {
        fault(text("the remote API answer says payload size %zu, and has %zu", announced, payload));
    }
    if (const uint8_t acknowledge = element.value[REMOTE_ANSWER_ACK]; acknowledge != 0) {
        return text("refused, acknowledge byte %d", acknowledge);
    }
    if (const uint8_t error = element.value[REMOTE_ANSWER_ERROR]; error != 0) {
        return text("firmware error %d", static_cast<int8_t>(error));
    }
    return text("good, payload size %zu", std::min(announced, payload));
}

std::string Message::meaning(const Element &element)
{
    switch (element.tag) {
    case TLV_CMD:
        return command(element);
    case TLV_CMDARG:
        return argument(element);
    case TLV_RSPARG:
        return answer(element);
    case TLV_SRC:
    case TLV_DST: {
        const bool terminated = daemon() && element.size > 0 && element.value[element.size - 1] == 0;
        return quoted(element.value, element.size - (terminated ? 1 : 0));
    }
    case TLV_ASOURCE:
        return element.size == 1 ? text("%d", element.value[0]) : "";
    case TLV_RSP: {
        if (element.size != 4) {
            return "";
        }
        const auto code = static_cast<int32_t>(le32(element.value));
        return text("%d %s", code, zvErrno2Str(code));
    }
    default:
        return "";
    }
}

int Message::print(std::ostream &out)
{
    if (m_size < TLV_HEADER_SIZE) {
        out << text("message, %zu bytes\n", m_size);
        print_bytes(out, m_bytes, m_size, 4);
        out << "  ! the message is shorter than its head of 4 bytes\n";
        return 1;
    }
    m_category = m_bytes[MESSAGE_CATEGORY];
    out << text("%s %s, %zu bytes, category %d\n", daemon() ? "daemon" : "camera", response() ? "response" : "command",
                m_size, m_category);
    if (const size_t length = be16(m_bytes + MESSAGE_LENGTH); length != m_size) {
        fault(text("the length field says %zu, and there are %zu bytes", length, m_size));
    }
    if (const size_t most = daemon() ? size_t{DAEMON_MSG_MAX} : size_t{ZVMSG_MAX}; m_size > most) {
        fault(text("the message is longer than %zu bytes", most));
    }
    read_elements();
    check_contents();
    for (const Element &element : m_elements) {
        std::string line =
            text("%6zu %-8s%5zu  ", element.offset, or_unknown(tag_name(element.tag)).c_str(), element.size);
        const size_t indent = line.size();
        line += meaning(element);
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
        print_bytes(out, element.value, element.size, indent);
    }
    for (const std::string &line : m_faults) {
        out << "  ! " << line << '\n';
    }
    return static_cast<int>(m_faults.size());
}

} // namespace

Link link_of(const uint8_t *bytes, size_t size)
{
    const uint8_t category = size >= TLV_HEADER_SIZE ? bytes[MESSAGE_CATEGORY] : 0;
    return category == CAT_ZVCTRL_CMD || category == CAT_ZVCTRL_RSP ? Link::DAEMON : Link::CAMERA;
}

int decode_message(const uint8_t *bytes, size_t size, Link link, std::ostream &out)
{
    return Message(bytes, size, link).print(out);
}

int decode_hex(std::string_view digits, std::ostream &out)
{
    std::vector<uint8_t> bytes;
    if (!read_hex(digits, bytes)) {
        out << "  ! behind byte " << bytes.size() << " come no two hexadecimal digits\n";
        return 1;
    }
    return decode_message(bytes.data(), bytes.size(), link_of(bytes.data(), bytes.size()), out);
}

int decode_trace(std::istream &in, std::ostream &out)
{
    TraceReader reader(in);
    TraceMessage message;
    int faults = 0;
    while (reader.next(message)) {
        const bool daemon = message.direction == TraceDirection::CLIENT_TO_DAEMON ||
                            message.direction == TraceDirection::DAEMON_TO_CLIENT;
        out << text("%llu.%06llu ", static_cast<unsigned long long>(message.microseconds / 1000000),
                    static_cast<unsigned long long>(message.microseconds % 1000000))
            << trace_direction_name(message.direction) << "  ";
        faults += decode_message(message.bytes.data(), message.bytes.size(), daemon ? Link::DAEMON : Link::CAMERA, out);
    }
    if (!reader.problem().empty()) {
        out << "  ! " << reader.problem() << '\n';
        ++faults;
    }
    return faults;
}

} // namespace zv
