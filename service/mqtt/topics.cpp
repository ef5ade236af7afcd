#include "topics.h"

#include <cctype>
#include <cstdio>
#include <mosquitto.h>
#include <utility>

namespace zvmqtt {

Topics::Topics(const std::string &prefix, std::string id) : m_id(std::move(id)), m_base(prefix + "/" + m_id) {}

std::optional<std::string> Topics::request_of(std::string_view topic) const
{
    if (topic.substr(0, m_base.size()) != m_base || topic.substr(m_base.size(), 1) != "/") {
        return std::nullopt;
    }
    const std::string_view request = topic.substr(m_base.size() + 1);
    const bool is_set = request == "set" || request.starts_with("set/"); // the filter has both
    return is_set || request == "command" ? std::optional<std::string>(request) : std::nullopt;
}

std::string plain(std::string_view text)
{
    std::string word;
    for (const char c : text) {
        if (isascii(c) != 0 && (isalnum(c) != 0 || c == '-')) {
            word += c;
        } else if (c == '_') {
            word += "__";
        } else {
            char code[4];
            snprintf(code, sizeof code, "_%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
            word += code;
        }
    }
    return word;
}

std::string topic_fault(std::string_view text)
{
    constexpr size_t SIZE_MAX_OF_A_PART = 1024; // what stands below it has room in a topic's 65,535 bytes
    if (text.empty() || text.front() == '/' || text.back() == '/' || text.find("//") != std::string_view::npos) {
        return "has an empty level";
    }
    if (text.find_first_of("+#") != std::string_view::npos) {
        return "has + or # in it";
    }
    if (text.front() == '$') {
        return "begins with $, as the broker's own topics do";
    }
    if (text.size() > SIZE_MAX_OF_A_PART) {
        return "is longer than 1024 bytes";
    }
    if (mosquitto_validate_utf8(text.data(), static_cast<int>(text.size())) != MOSQ_ERR_SUCCESS) {
        return "is no valid text"; // control characters among it
    }
    return "";
}

} // namespace zvmqtt
