#include "event_stream.h"

#include <memory>
#include <sys/socket.h>

namespace zvweb {

namespace {

// What is copied at once to a client.
constexpr size_t BLOCK_SIZE = 8192;

class Client : public EventLog::Reader {
  public:
    Client(EventLog &log, MHD_Connection *connection) : m_log(log), m_connection(connection) {}
    ~Client() override { m_log.leave(*this); }
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    static ssize_t read(void *client, uint64_t, char *buffer, size_t size)
    {
        auto *self = static_cast<Client *>(client);
        const ptrdiff_t count = self->m_log.read(*self, buffer, size);
        if (count == EventLog::ENDED) {
            return MHD_CONTENT_READER_END_OF_STREAM;
        }
        return count == EventLog::CUT_OFF ? MHD_CONTENT_READER_END_WITH_ERROR : count;
    }

    static void leave(void *client) { delete static_cast<Client *>(client); }

  private:
    void sleep() override { MHD_suspend_connection(m_connection); }
    void wake() override { MHD_resume_connection(m_connection); }

    // It is in the middle of a write that makes no headway, which this ends.
    void cut_off() override
    {
        const auto *info = MHD_get_connection_info(m_connection, MHD_CONNECTION_INFO_CONNECTION_FD);
        shutdown(info->connect_fd, SHUT_RDWR);
    }

    EventLog &m_log;
    MHD_Connection *m_connection;
};

} // namespace

MHD_Response *make_event_stream(Events &events, MHD_Connection *connection, const Stream &stream)
{
    auto client = std::make_unique<Client>(events.log(), connection);
    events.join(*client, stream);
    MHD_Response *response =
        MHD_create_response_from_callback(MHD_SIZE_UNKNOWN, BLOCK_SIZE, Client::read, client.get(), Client::leave);
    if (response != nullptr) {
        client.release(); // NOLINT(bugprone-unused-return-value): the response's now
        MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, EVENTS_TYPE);
    }
    return response;
}

} // namespace zvweb
