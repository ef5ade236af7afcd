// The load: connections to a server on loopback, all of them one thread's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

class Sockets {
  public:
    // Throws std::runtime_error when one does not come about.
    Sockets(uint16_t port, size_t count);
    ~Sockets();
    Sockets(const Sockets &) = delete;
    Sockets &operator=(const Sockets &) = delete;

    size_t count() const { return m_descriptors.size(); }

    // A request, which is small enough to leave at once.
    void send(size_t socket, std::string_view text) const;

    // Waits until something has come, and hands over what each socket got. Throws std::runtime_error when a server
    // closes one, or says nothing to any for seconds.
    using Take = std::function<void(size_t socket, std::string_view bytes)>;
    void receive(const Take &take);

  private:
    int m_epoll;
    std::vector<int> m_descriptors;
    std::vector<char> m_buffer;
};

// Whether `text` is an answer to its end, headers and body. Throws std::runtime_error for one that is not 200.
bool is_whole_answer(std::string_view text);

// The events of a stream's answer, whatever they are cut into on their way.
class EventStream {
  public:
    void take(std::string_view bytes);

    // The next event that has this text in it, as a whole; empty while it is not there. Those before it are forgotten.
    std::string next(std::string_view text);

  private:
    std::string m_line; // of the headers, or of a chunk's size
    bool m_in_headers = true;
    size_t m_chunk = 0; // what of it is to come
    std::string m_events;
};

} // namespace bench
