// What is asked of the camera by messages: each is read, carried out, and answered.
#pragma once

#include "connection.h"
#include "topics.h"
#include "wake.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>
#include <zvservice/camera.h>

namespace zvmqtt {

// What is said of a request, in the numbers of HTTP. A call to the camera has more of them, which its Result knows.
enum Status : int {
    STATUS_OK = 200,
    STATUS_ACCEPTED = 202,
    STATUS_NO_CONTENT = 204,
    STATUS_BAD_REQUEST = 400,
    STATUS_NOT_FOUND = 404,
    STATUS_GONE = 410,
    STATUS_TOO_LARGE = 413,
    STATUS_UNPROCESSABLE = 422,
    STATUS_TOO_MANY = 429,
    STATUS_FAILED = 500,
    STATUS_UNAVAILABLE = 503,
};

// What a request came to.
struct Answer {
    int status = 0;
    std::string detail;
    std::string why; // the rules against it, as JSON; empty for none
    int code = 0;    // the camera's own, 0 for none

    bool ok() const { return status < STATUS_BAD_REQUEST; }

    // {"request":"set/3","ok":true,"status":200}
    std::string json(const std::string &request) const;
};

// Who asked, and is to be answered.
struct Request {
    std::string name; // "set/3", "command/capture/start"
    std::string response_topic;
    std::string correlation;
    std::chrono::steady_clock::time_point arrival = std::chrono::steady_clock::now();
};

struct Answered {
    Request request;
    Answer answer;
};

// An order to a camera, which waits for it no longer than this.
using Work = std::function<Answer(std::chrono::milliseconds patience)>;

// One thread carries the orders out, one after the other in order of arrival. Any thread may call.
class Orders {
  public:
    static constexpr size_t WAITING_MAX = 32;

    // Camera and wake outlive it. The wake wakes for answered().
    Orders(zvservice::Camera &camera, const Wake &wake);

    // Waits for the order that is being carried out.
    ~Orders();

    // Reads the message to `request`, the topic below the camera's, and has it carried out later. An answer where it is
    // over at once; the request's name is then complete, too.
    std::optional<Answer> take(Request &request, const Incoming &message);

    // What was carried out since the last call.
    std::vector<Answered> answered();

    // From now on every order is answered at once, those that wait included, and nothing is sent any more.
    void end();

    bool idle();

  private:
    struct Order {
        Request request;
        Work work;
    };
    void run();

    zvservice::Camera &m_camera;
    const Wake &m_wake;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Order> m_waiting;
    std::vector<Answered> m_answered;
    bool m_working = false;
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace zvmqtt
