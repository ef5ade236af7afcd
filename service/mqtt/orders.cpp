#include "orders.h"

#include "payload.h"

#include <algorithm>
#include <new>
#include <utility>
#include <variant>
#include <zvservice/json.h>

namespace zvmqtt {

using std::chrono::milliseconds;

namespace {

constexpr char COMMAND[] = "command";
constexpr std::string_view SET = "set/";

Answer ended()
{
    return {STATUS_UNAVAILABLE, "the bridge ends; nothing was sent", "", 0};
}

// What waited too long is not sent any more.
milliseconds patience_left(const Request &request)
{
    const auto waited = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - request.arrival);
    return std::max(zvservice::CALL_PATIENCE - waited, milliseconds(0));
}

Answer carry_out(const Work &work, const Request &request)
try {
    return work(patience_left(request));
} catch (const std::bad_alloc &) {
    return {STATUS_FAILED, "out of memory", "", 0};
}

} // namespace

std::string Answer::json(const std::string &request) const
{
    zvservice::Json text;
    text.open('{').member("request", request).member("ok", ok()).member("status", status);
    if (!ok()) {
        text.member("detail", detail);
    }
    if (!why.empty()) {
        text.key("why").raw(why);
    }
    if (code != 0) {
        text.member("code", code);
    }
    return text.close().text();
}

Orders::Orders(zvservice::Camera &camera, const Wake &wake)
    : m_camera(camera), m_wake(wake), m_thread([this] { run(); })
{
}

Orders::~Orders()
{
    end();
    m_thread.join();
}

std::optional<Answer> Orders::take(Request &request, const Incoming &message)
{
    if (message.retained) {
        return Answer{STATUS_GONE, "a retained order is never carried out", "", 0};
    }
    if (message.payload.size() > PAYLOAD_MAX) {
        return Answer{STATUS_TOO_LARGE, "a payload has up to " + std::to_string(PAYLOAD_MAX) + " bytes", "", 0};
    }
    auto read =
        request.name == COMMAND
            ? read_command(m_camera, message.payload, request.name)
            : read_set(m_camera, request.name.substr(std::min(SET.size(), request.name.size())), message.payload);
    if (auto *answer = std::get_if<Answer>(&read)) {
        return std::move(*answer);
    }
    const std::lock_guard lock(m_mutex);
    if (m_ending) {
        return ended();
    }
    if (m_waiting.size() == WAITING_MAX) {
        return Answer{STATUS_TOO_MANY, std::to_string(WAITING_MAX) + " requests wait already", "", 0};
    }
    m_waiting.push_back({std::move(request), std::get<Work>(std::move(read))});
    m_changed.notify_one();
    return std::nullopt;
}

std::vector<Answered> Orders::answered()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_answered, {});
}

void Orders::end()
{
    const std::lock_guard lock(m_mutex);
    m_ending = true;
    for (Order &order : m_waiting) {
        m_answered.push_back({std::move(order.request), ended()});
    }
    m_waiting.clear();
    m_changed.notify_one();
}

bool Orders::idle()
{
    const std::lock_guard lock(m_mutex);
    return !m_working && m_waiting.empty() && m_answered.empty();
}

void Orders::run()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_ending || !m_waiting.empty(); });
        if (m_waiting.empty()) {
            return;
        }
        Order order = std::move(m_waiting.front());
        m_waiting.pop_front();
        m_working = true;
        lock.unlock();
        Answer answer = carry_out(order.work, order.request);
        lock.lock();
        m_working = false;
        m_answered.push_back({std::move(order.request), std::move(answer)});
        m_wake.wake();
    }
}

} // namespace zvmqtt
