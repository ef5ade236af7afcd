#include "camera_double.h"

#include "interpose.h"

#include <cstring>
#include <gtest/gtest.h>
#include <unistd.h>

namespace test {

namespace {

constexpr long DEPTH = 10;

std::string own_name(const char *name)
{
    return name + std::to_string(getpid());
}

Bytes request_of(uint8_t group, uint8_t action, const Bytes &payload)
{
    Bytes request = {0, group, action, static_cast<uint8_t>(payload.size() >> 8), static_cast<uint8_t>(payload.size())};
    request.insert(request.end(), payload.begin(), payload.end());
    return request;
}

Bytes response(uint8_t acknowledge, uint8_t error, const Bytes &payload)
{
    // Bytes 1 to 3 mean nothing to the library.
    Bytes bytes = {acknowledge, 0xA1, 0xA2, 0xA3, error};
    bytes.push_back(static_cast<uint8_t>(payload.size() >> 8));
    bytes.push_back(static_cast<uint8_t>(payload.size()));
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    return bytes;
}

// A TLV_CMDARG value as a failure shows it: "group 2 action 79 payload C4", or its bytes when it is no whole request.
std::string request_text(const Bytes &request)
{
    if (request.size() < REMOTE_API_HEADER_SIZE) {
        return "malformed request " + hexadecimal(request);
    }
    const Bytes payload(request.begin() + REMOTE_API_HEADER_SIZE, request.end());
    if (request != request_of(request[1], request[2], payload)) {
        return "malformed request " + hexadecimal(request);
    }
    return "group " + std::to_string(request[1]) + " action " + std::to_string(request[2]) +
           (payload.empty() ? " without payload" : " payload " + hexadecimal(payload));
}

std::string string_of(const Bytes &characters)
{
    return {characters.begin(), characters.end()};
}

} // namespace

Bytes text(const char *characters)
{
    return {characters, characters + strlen(characters)};
}

std::string hexadecimal(const Bytes &bytes)
{
    constexpr char DIGITS[] = "0123456789ABCDEF";
    std::string digits;
    for (const uint8_t byte : bytes) {
        digits += digits.empty() ? "" : " ";
        digits += DIGITS[byte >> 4];
        digits += DIGITS[byte & 15];
    }
    return digits;
}

Bytes tlv_message(uint8_t category, const std::vector<Element> &elements)
{
    Bytes message = {0, 0, 0, category};
    for (const Element &element : elements) {
        message.push_back(0);
        message.push_back(static_cast<uint8_t>(element.value.size() >> 8));
        message.push_back(static_cast<uint8_t>(element.value.size()));
        message.push_back(element.tag);
        message.insert(message.end(), element.value.begin(), element.value.end());
    }
    message[0] = static_cast<uint8_t>(message.size() >> 8);
    message[1] = static_cast<uint8_t>(message.size());
    return message;
}

Bytes element_of(const Bytes &message, uint8_t tag)
{
    const uint8_t *element = tlv_find(message.data(), tag);
    if (element == nullptr) {
        return {};
    }
    const auto length = static_cast<size_t>(element[1] << 8 | element[2]);
    return {element + 4, element + 4 + length};
}

Bytes good(const Bytes &payload)
{
    return response(0, 0, payload);
}
Bytes refused(uint8_t acknowledge)
{
    return response(acknowledge, 0, {});
}
Bytes firmware_error(uint8_t error)
{
    return response(0, error, {});
}

CameraDouble::CameraDouble()
    : m_relay(own_name("/t_relay"), DEPTH, ZVMSG_MAX), m_reply(own_name("/t_reply"), DEPTH, ZVMSG_MAX)
{
    m_context.mbox_name = m_reply.name();
    m_context.mq_tx = m_relay.descriptor();
    m_context.mq_rx = m_reply.descriptor();
    on_wait([this] { serve(); });
}

CameraDouble::~CameraDouble()
{
    serve();
    on_wait(nullptr);
    if (!m_script.empty()) {
        ADD_FAILURE() << "expected requests did not come:" << leftovers();
    }
}

void CameraDouble::expect(uint8_t group, uint8_t action, const Bytes &payload, const Bytes &answer)
{
    expect_raw(group, action, payload,
               {tlv_message(5, {{TLV_CMD, text("YY")},
                                {TLV_CMDARG, request_of(group, action, payload)},
                                {TLV_RSPARG, answer},
                                {TLV_SRC, text("/to_camera")},
                                {TLV_DST, text(m_reply.name())},
                                {TLV_END, {}}})});
}

void CameraDouble::expect_silence(uint8_t group, uint8_t action, const Bytes &payload)
{
    expect_raw(group, action, payload, {});
}

void CameraDouble::expect_raw(uint8_t group, uint8_t action, const Bytes &payload, const std::vector<Bytes> &messages)
{
    m_script.push_back({request_of(group, action, payload), messages});
}

std::string CameraDouble::leftovers() const
{
    std::string lines;
    for (const Step &step : m_script) {
        lines += "\n" + request_text(step.request);
    }
    return lines;
}

void CameraDouble::serve()
{
    for (Bytes message = m_relay.receive(); !message.empty(); message = m_relay.receive()) {
        m_received.push_back(message);
        EXPECT_EQ("YY", string_of(element_of(message, TLV_CMD)));
        EXPECT_EQ("/to_camera", string_of(element_of(message, TLV_DST)));
        EXPECT_EQ(m_reply.name(), string_of(element_of(message, TLV_SRC)));
        const Bytes request = element_of(message, TLV_CMDARG);
        if (m_script.empty()) {
            ADD_FAILURE() << "received " << request_text(request) << ", and expected no request";
            continue;
        }
        const Step step = m_script.front();
        m_script.pop_front();
        if (request != step.request) {
            ADD_FAILURE() << "expected " << request_text(step.request) << "\nreceived " << request_text(request);
        }
        for (const Bytes &answer : step.answers) {
            m_reply.send(answer);
        }
    }
}

} // namespace test
