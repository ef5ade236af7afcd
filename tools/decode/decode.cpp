#include "decode.h"

#include "bytes.h"
#include "message_format.h"
#include "names.h"
#include "queue_names.h"
#include "remote_commands.h"

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

// One message while it is taken apart.
class Message {
  public:
    Message(std::span<const uint8_t> bytes, Link link)
    {
        m_decoded.bytes = bytes;
        m_decoded.link = link;
    }

    DecodedMessage decode();

  private:
    bool daemon() const { return m_decoded.link == Link::DAEMON; }
    bool response() const { return m_decoded.response; }
    bool remote_api() const;
    const DecodedElement *find(uint8_t tag) const;

    void read_elements();
    void check_ends();
    void check_contents();
    void require(uint8_t tag);
    void require_size(uint8_t tag, size_t size);

    std::string meaning(const DecodedElement &element);
    std::string command(const DecodedElement &element);
    std::string argument(const DecodedElement &element);
    std::string answer(const DecodedElement &element);
    std::string remote_request(const DecodedElement &element);
    std::string remote_answer(const DecodedElement &element);

    void fault(const std::string &what) { m_decoded.faults.push_back(what); }

    DecodedMessage m_decoded;
};

std::string or_unknown(std::string_view name)
{
    return std::string(name.empty() ? "?" : name);
}

// Quoted, with a full stop for what cannot be printed.
std::string quoted(std::span<const uint8_t> bytes)
{
    std::string result = "\"";
    for (const uint8_t byte : bytes) {
        result += byte >= 0x20 && byte <= 0x7E ? static_cast<char>(byte) : '.';
    }
    return result + "\"";
}

void print_bytes(std::ostream &out, std::span<const uint8_t> bytes, size_t indent)
{
    for (size_t row = 0; row < bytes.size(); row += ROW) {
        std::string line(indent, ' ');
        for (size_t i = row; i < std::min(row + ROW, bytes.size()); ++i) {
            line += text(i == row ? "%02X" : " %02X", bytes[i]);
        }
        out << line << '\n';
    }
}

bool Message::remote_api() const
{
    const DecodedElement *cmd = find(TLV_CMD);
    constexpr std::string_view CODE = REMOTE_API_COMMAND;
    return cmd != nullptr && std::equal(cmd->value.begin(), cmd->value.end(), CODE.begin(), CODE.end());
}

const DecodedElement *Message::find(uint8_t tag) const
{
    const auto found = std::find_if(m_decoded.elements.begin(), m_decoded.elements.end(),
                                    [tag](const DecodedElement &element) { return element.tag == tag; });
    return found != m_decoded.elements.end() ? &*found : nullptr;
}

void Message::read_elements()
{
    const std::span<const uint8_t> bytes = m_decoded.bytes;
    size_t offset = TLV_HEADER_SIZE;
    while (offset < bytes.size()) {
        if (bytes.size() - offset < TLV_HEADER_SIZE) {
            fault(text("the message ends at %zu, inside the head of the element at %zu", bytes.size(), offset));
            return;
        }
        const size_t size = be16(bytes.data() + offset + ELEMENT_LENGTH);
        const uint8_t tag = bytes[offset + ELEMENT_TAG];
        const size_t left = bytes.size() - offset - TLV_HEADER_SIZE;
        if (size > left) {
            fault(text("the element at %zu has length %zu, and %zu bytes are left", offset, size, left));
        }
        m_decoded.elements.push_back({offset, tag, bytes.subspan(offset + TLV_HEADER_SIZE, std::min(size, left)), {}});
        if (tag_name(tag).empty()) {
            fault(text("the element at %zu has the unknown tag 0x%02X", offset, tag));
        }
        offset += TLV_HEADER_SIZE + std::min(size, left);
    }
}

void Message::check_ends()
{
    const auto ends = std::count_if(m_decoded.elements.begin(), m_decoded.elements.end(),
                                    [](const DecodedElement &element) { return element.tag == TLV_END; });
    if (ends == 0 || m_decoded.elements.back().tag != TLV_END) {
        fault("END is not the last element");
    }
    if (ends > 1) {
        fault("there is more than one END");
    }
    if (const DecodedElement *end = find(TLV_END); end != nullptr && end->value.size() != 0) {
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
    if (const DecodedElement *element = find(tag); element != nullptr && element->value.size() != size) {
        fault(text("%s has length %zu, not %zu", or_unknown(tag_name(tag)).c_str(), element->value.size(), size));
    }
}

void Message::check_contents()
{
    check_ends();
    if (daemon()) {
        if (m_decoded.category != CAT_ZVCTRL_CMD && m_decoded.category != CAT_ZVCTRL_RSP) {
            fault(text("the daemon's categories are 20 and 21, not %d", m_decoded.category));
        }
        require(response() ? TLV_RSP : TLV_CMD);
        if (!response()) {
            require(TLV_SRC);
        }
        require_size(TLV_CMD, 4);
        require_size(TLV_RSP, 4);
        return;
    }
    if (m_decoded.category > CATEGORY_MAX) {
        fault(text("category 0x%02X is above 0x%02X", m_decoded.category, CATEGORY_MAX));
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

std::string Message::command(const DecodedElement &element)
{
    if (!daemon()) {
        return quoted(element.value) + (remote_api() ? " remote API" : "");
    }
    if (element.value.size() != 4) {
        return "";
    }
    const uint32_t number = le32(element.value.data());
    const std::string name = daemon_command_name(number);
    return text("%u ", number) + (name.empty() ? "unknown command" : name);
}

std::string Message::argument(const DecodedElement &element)
{
    if (!daemon()) {
        return remote_api() && !response() ? remote_request(element) : "";
    }
    const DecodedElement *cmd = find(TLV_CMD);
    const uint32_t number = cmd != nullptr && cmd->value.size() == 4 ? le32(cmd->value.data()) : 0;
    if (number == ZVCONTROL_SET_SETTING_ID && element.value.size() == 8) {
        const uint32_t id = le32(element.value.data());
        return text("setting %u %s, value %u", id, or_unknown(setting_name(id)).c_str(),
                    le32(element.value.data() + 4));
    }
    return number == ZVCONTROL_RESYNC_MESSAGE_QUEUE && element.value.size() == 4
               ? text("key %u", le32(element.value.data()))
               : "";
}

std::string Message::answer(const DecodedElement &element)
{
    if (!daemon()) {
        return remote_api() ? remote_answer(element) : "";
    }
    switch (element.value.size()) {
    case sizeof(uint32_t):
        return text("number %u", le32(element.value.data()));
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

std::string Message::remote_request(const DecodedElement &element)
{
    if (element.value.size() < REMOTE_API_HEADER_SIZE) {
        fault(text("the remote API request has length %zu, less than its head of 5", element.value.size()));
        return "";
    }
    const uint8_t group = element.value[REMOTE_REQUEST_GROUP];
    const uint8_t action = element.value[REMOTE_REQUEST_ACTION];
    const size_t announced = be16(element.value.data() + REMOTE_REQUEST_SIZE);
    const size_t payload = element.value.size() - REMOTE_API_HEADER_SIZE;
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

std::string Message::remote_answer(const DecodedElement &element)
{
    if (element.value.size() == 1 && element.value[REMOTE_ANSWER_ACK] == ZVN_NACK_OFF) {
        return "the camera is switched off";
    }
    if (element.value.size() < REMOTE_ANSWER_PAYLOAD) {
        fault(text("the remote API answer has length %zu, less than its head of 7", element.value.size()));
        return "";
    }
    const size_t announced = be16(element.value.data() + REMOTE_ANSWER_SIZE);
    const size_t payload = element.value.size() - REMOTE_ANSWER_PAYLOAD;
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

std::string Message::meaning(const DecodedElement &element)
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
        const bool terminated = daemon() && element.value.size() > 0 && element.value[element.value.size() - 1] == 0;
        return quoted(element.value.first(element.value.size() - (terminated ? 1 : 0)));
    }
    case TLV_ASOURCE:
        return element.value.size() == 1 ? text("%d", element.value[0]) : "";
    case TLV_RSP: {
        if (element.value.size() != 4) {
            return "";
        }
        const auto code = static_cast<int32_t>(le32(element.value.data()));
        return text("%d %s", code, zvErrno2Str(code));
    }
    default:
        return "";
    }
}

DecodedMessage Message::decode()
{
    const std::span<const uint8_t> bytes = m_decoded.bytes;
    if (bytes.size() < TLV_HEADER_SIZE) {
        m_decoded.headless = true;
        fault("the message is shorter than its head of 4 bytes");
        return m_decoded;
    }
    m_decoded.category = bytes[MESSAGE_CATEGORY];
    m_decoded.response = daemon() ? m_decoded.category == CAT_ZVCTRL_RSP : m_decoded.category % 2 == 1;
    if (const size_t length = be16(bytes.data() + MESSAGE_LENGTH); length != bytes.size()) {
        fault(text("the length field says %zu, and there are %zu bytes", length, bytes.size()));
    }
    if (const size_t most = daemon() ? size_t{DAEMON_MSG_MAX} : size_t{ZVMSG_MAX}; bytes.size() > most) {
        fault(text("the message is longer than %zu bytes", most));
    }
    read_elements();
    check_contents();
    for (DecodedElement &element : m_decoded.elements) {
        element.meaning = meaning(element);
    }
    return m_decoded;
}

void print_element(std::ostream &out, const DecodedElement &element)
{
    std::string line =
        text("%6zu %-8s%5zu  ", element.offset, or_unknown(tag_name(element.tag)).c_str(), element.value.size());
    const size_t indent = line.size();
    line += element.meaning;
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
    print_bytes(out, element.value, indent);
}

void print_fault(std::ostream &out, const std::string &fault)
{
    out << "  ! " << fault << '\n';
}

void print_message(std::ostream &out, const DecodedMessage &message)
{
    if (message.headless) {
        out << text("message, %zu bytes\n", message.bytes.size());
        print_bytes(out, message.bytes, 4);
    } else {
        out << text("%s %s, %zu bytes, category %d\n", message.link == Link::DAEMON ? "daemon" : "camera",
                    message.response ? "response" : "command", message.bytes.size(), message.category);
    }
    for (const DecodedElement &element : message.elements) {
        print_element(out, element);
    }
    for (const std::string &fault : message.faults) {
        print_fault(out, fault);
    }
}

int fault_count(const DecodedMessage &message)
{
    return static_cast<int>(message.faults.size());
}

} // namespace

Link link_of(std::span<const uint8_t> bytes)
{
    const uint8_t category = bytes.size() >= TLV_HEADER_SIZE ? bytes[MESSAGE_CATEGORY] : 0;
    return category == CAT_ZVCTRL_CMD || category == CAT_ZVCTRL_RSP ? Link::DAEMON : Link::CAMERA;
}

DecodedMessage decode(std::span<const uint8_t> bytes, Link link)
{
    return Message(bytes, link).decode();
}

int decode_hex(std::string_view digits, const DecodeSink &sink)
{
    std::vector<uint8_t> bytes;
    if (!read_hex(digits, bytes)) {
        sink.fault(text("behind byte %zu come no two hexadecimal digits", bytes.size()));
        return 1;
    }
    const DecodedMessage message = decode(bytes, link_of(bytes));
    sink.message(message, nullptr);
    return fault_count(message);
}

int decode_trace(std::istream &in, const DecodeSink &sink)
{
    TraceReader reader(in);
    TraceMessage traced;
    int faults = 0;
    while (reader.next(traced)) {
        const bool daemon = traced.direction == TraceDirection::CLIENT_TO_DAEMON ||
                            traced.direction == TraceDirection::DAEMON_TO_CLIENT;
        const DecodedMessage message = decode(traced.bytes, daemon ? Link::DAEMON : Link::CAMERA);
        sink.message(message, &traced);
        faults += fault_count(message);
    }
    if (!reader.problem().empty()) {
        sink.fault(reader.problem());
        ++faults;
    }
    return faults;
}

DecodeSink text_sink(std::ostream &out)
{
    return {[&out](const DecodedMessage &message, const TraceMessage *traced) {
                if (traced != nullptr) {
                    out << text("%llu.%06llu ", static_cast<unsigned long long>(traced->microseconds / 1000000),
                                static_cast<unsigned long long>(traced->microseconds % 1000000))
                        << trace_direction_name(traced->direction) << "  ";
                }
                print_message(out, message);
            },
            [&out](const std::string &fault) { print_fault(out, fault); }};
}

} // namespace zv
