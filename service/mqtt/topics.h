// The topics of one camera.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zvmqtt {

class Topics {
  public:
    Topics(const std::string &prefix, std::string id);

    const std::string &id() const { return m_id; }

    // PREFIX/ID, which all of them lie below.
    const std::string &base() const { return m_base; }

    std::string availability() const { return below("availability"); }
    std::string link() const { return below("link"); }
    std::string camera() const { return below("camera"); }
    std::string status() const { return below("status"); }
    std::string settings() const { return below("settings"); }
    std::string available() const { return below("available"); }
    std::string change() const { return below("change"); }
    std::string response() const { return below("response"); }
    std::string command() const { return below("command"); }

    // Of a setting by its number or name, whose slash is a level of its own.
    std::string set(std::string_view setting) const { return below("set/" + std::string(setting)); }

    // Of all settings, to subscribe to.
    std::string set_filter() const { return below("set/#"); }

    // "set/3", "set/video/fps" or "command", or "set" without a setting; nothing for a topic that takes no requests.
    std::optional<std::string> request_of(std::string_view topic) const;

  private:
    std::string below(const std::string &name) const { return m_base + "/" + name; }

    std::string m_id;
    std::string m_base;
};

// The payloads of availability().
inline constexpr char ONLINE[] = "online";
inline constexpr char OFFLINE[] = "offline";

// A text as a word that everything takes: letters, digits and "-" stay, "_" is doubled, every other byte becomes "_"
// and two hex digits. No two texts have the same.
std::string plain(std::string_view text);

// What is wrong with an id or a prefix, in words; empty where it makes a topic that can be published to.
std::string topic_fault(std::string_view text);

} // namespace zvmqtt
