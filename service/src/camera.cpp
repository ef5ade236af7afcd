#include "camera.h"

#include "calls.h"
#include "catalogue.h"
#include "deadline.h"
#include "doing.h"
#include "forks.h"
#include "permission.h"
#include "poller.h"
#include "publication.h"
#include "service_thread.h"
#include "subscription_queue.h"

#include <condition_variable>
#include <mutex>
#include <utility>
#include <zvctrl/zvc_commands_zvx.h>
#include <zvctrl/zvc_storage.h>

namespace zvservice {

namespace {

using std::chrono::milliseconds;

// Of the second that the end may take; the rest is for what the threads leave behind.
constexpr milliseconds END_PATIENCE(900);

// Between two looks whether the camera tells a new option.
constexpr milliseconds BETWEEN_LOOKS(50);

Result no_camera_in_a_child(const char *doing)
{
    return Result::cannot(Outcome::NOT_THERE, doing, "a forked process has not got its parent's camera");
}

// Whether there is a state to decide by.
Result has_state(const Snapshot &present)
{
    if (present.state != nullptr) {
        return {};
    }
    return present.switched_off
               ? Result::switched_off(CHANGE_SETTING)
               : Result::cannot(Outcome::NOT_THERE, CHANGE_SETTING, "the camera has not told its state yet");
}

// Why the option is not to be sent; DONE when nothing is against it.
Result judge(const Snapshot &present, uint32_t setting, uint32_t option, bool force)
{
    if (Result known = has_state(present); !known.done()) {
        return known;
    }
    Result permitted = permission(*present.state, setting, option);
    return force && permitted.outcome() == Outcome::FORBIDDEN ? Result() : permitted;
}

// The numbers of what a person names.
Result find(const Snapshot &present, const std::string &setting, const std::string &option, uint32_t &number,
            uint32_t &id)
{
    if (Result known = has_state(present); !known.done()) {
        return known;
    }
    const Catalogue catalogue(present.state->model());
    if (Result found = catalogue.find_setting(setting, number); !found.done()) {
        return found;
    }
    return catalogue.find_option(number, option, present.state->option(number), id);
}

} // namespace

// What the object and its threads share. Each thread holds it: one that a peer keeps from ending in time goes on with
// it when the object is gone.
class Camera::Engine {
  public:
    explicit Engine(const CameraOptions &options) : m_poller(options, m_publication) {}

    void start(const std::shared_ptr<Engine> &self);
    void end();

    bool in_child() const { return m_generation != fork_generation(); }

    std::shared_ptr<const Snapshot> snapshot() const { return m_publication.snapshot(); }
    std::shared_ptr<Subscription::Queue> subscribe();
    Statistics statistics();
    Result refresh(Deadline deadline);
    Result call(const char *doing, Calls::Work work, Deadline deadline);
    Written set(uint32_t setting, uint32_t option, const SetOptions &options);

  private:
    class Visit;

    // Waits until the camera tells the option, and says what changed since `before`.
    void confirm(const State &before, uint32_t setting, uint32_t option, Deadline deadline, Written &written);

    const uint32_t m_generation = fork_generation();
    Publication m_publication;
    Poller m_poller;
    Calls m_calls;
    ServiceThread m_poller_thread;
    ServiceThread m_calls_thread;

    // Calls that wait inside, which the end lets out first.
    std::mutex m_visits_mutex;
    std::condition_variable m_left;
    unsigned m_visits = 0;
};

class Camera::Engine::Visit {
  public:
    explicit Visit(Engine &engine) : m_engine(engine)
    {
        const std::lock_guard lock(engine.m_visits_mutex);
        ++engine.m_visits;
    }
    ~Visit()
    {
        const std::lock_guard lock(m_engine.m_visits_mutex);
        --m_engine.m_visits;
        m_engine.m_left.notify_all();
    }
    Visit(const Visit &) = delete;
    Visit &operator=(const Visit &) = delete;

  private:
    Engine &m_engine;
};

void Camera::Engine::start(const std::shared_ptr<Engine> &self)
{
    m_poller_thread.start([self] { self->m_poller.run(); });
    m_calls_thread.start([self] { self->m_calls.run(); });
}

void Camera::Engine::end()
{
    const Deadline deadline = deadline_after(END_PATIENCE);
    m_publication.end();
    m_poller.stop();
    m_calls.stop();
    {
        std::unique_lock lock(m_visits_mutex);
        m_left.wait_until(lock, deadline, [this] { return m_visits == 0; });
    }
    m_poller_thread.join_until(deadline);
    m_calls_thread.join_until(deadline);
}

std::shared_ptr<Subscription::Queue> Camera::Engine::subscribe()
{
    if (!in_child()) {
        return m_publication.subscribe();
    }
    auto queue = Subscription::Queue::make(snapshot());
    queue->end();
    return queue;
}

Statistics Camera::Engine::statistics()
{
    Statistics statistics;
    if (!in_child()) { // where a thread of the parent may hold a lock for ever
        m_poller.tell(statistics);
        m_calls.tell(statistics);
    }
    return statistics;
}

Result Camera::Engine::refresh(Deadline deadline)
{
    if (in_child()) {
        return no_camera_in_a_child(READ_STATE);
    }
    const Visit visit(*this);
    return m_poller.refresh(deadline);
}

Result Camera::Engine::call(const char *doing, Calls::Work work, Deadline deadline)
{
    if (in_child()) {
        return no_camera_in_a_child(doing);
    }
    const Visit visit(*this);
    return m_calls.call(doing, std::move(work), deadline);
}

Written Camera::Engine::set(uint32_t setting, uint32_t option, const SetOptions &options)
{
    const Deadline deadline = deadline_after(options.patience);
    Written written;
    if (in_child()) {
        written.result = no_camera_in_a_child(CHANGE_SETTING);
        return written;
    }
    const Visit visit(*this);
    written.result = judge(*snapshot(), setting, option, options.force);
    if (!written.result.done()) {
        return written;
    }
    // What other calls changed while this one waited for its turn is not its own, and the rules may have another say by
    // then. The call may end before the work does.
    const auto before = std::make_shared<std::shared_ptr<const State>>();
    written.result = call(
        CHANGE_SETTING,
        [this, before, setting, option, force = options.force](CameraLink &link, milliseconds left) {
            const std::shared_ptr<const Snapshot> present = snapshot();
            *before = present->state;
            Result permitted = judge(*present, setting, option, force);
            return permitted.done() ? link.set(*present->state, setting, option, left) : permitted;
        },
        deadline);
    if (written.result.done()) {
        confirm(**before, setting, option, std::min(deadline, deadline_after(options.confirmation)), written);
    }
    return written;
}

void Camera::Engine::confirm(const State &before, uint32_t setting, uint32_t option, Deadline deadline,
                             Written &written)
{
    do {
        if (!m_poller.refresh(deadline).done()) {
            continue;
        }
        const std::shared_ptr<const Snapshot> after = snapshot();
        written.shown = after->state->option(setting) == option;
        written.change = difference(&before, *after->state);
        written.change.revision = after->revision;
    } while (!written.shown && left_until(deadline) > BETWEEN_LOOKS && m_poller.pause(BETWEEN_LOOKS));
}

Camera::Camera(const CameraOptions &options)
{
    watch_forks();
    m_engine = std::make_shared<Engine>(options);
    try {
        m_engine->start(m_engine);
    } catch (...) {
        m_engine->end();
        throw;
    }
}

Camera::~Camera()
{
    end();
}

void Camera::end()
{
    if (!m_engine->in_child()) {
        m_engine->end();
    }
}

std::shared_ptr<const Snapshot> Camera::snapshot() const
{
    return m_engine->snapshot();
}

Subscription Camera::subscribe()
{
    return Subscription(m_engine->subscribe());
}

Statistics Camera::statistics() const
{
    return m_engine->statistics();
}

// The calls hold the engine by themselves: the object may end while they wait.

Result Camera::refresh(milliseconds patience)
{
    return std::shared_ptr<Engine>(m_engine)->refresh(deadline_after(patience));
}

Result Camera::call(const char *doing, CameraLink::Operation operation, milliseconds patience)
{
    const std::shared_ptr<Engine> engine = m_engine;
    return engine->call(
        doing,
        [doing = std::string(doing), operation = std::move(operation)](CameraLink &link, milliseconds left) {
            return link.call(doing.c_str(), operation, left);
        },
        deadline_after(patience));
}

Written Camera::set(uint32_t setting, uint32_t option, const SetOptions &options)
{
    return std::shared_ptr<Engine>(m_engine)->set(setting, option, options);
}

Written Camera::set(const std::string &setting, const std::string &option, const SetOptions &options)
{
    uint32_t number = 0;
    uint32_t id = 0;
    Written written;
    written.result = find(*snapshot(), setting, option, number, id);
    return written.result.done() ? set(number, id, options) : written;
}

Result Camera::start_capture(milliseconds patience)
{
    return call(
        "start the capture", [](zvc_msg_q_context_t *context) { return zvc_shutter(context, 1); }, patience);
}

Result Camera::stop_capture(milliseconds patience)
{
    return call(
        "stop the capture", [](zvc_msg_q_context_t *context) { return zvc_shutter(context, 0); }, patience);
}

Result Camera::delete_last(milliseconds patience)
{
    return call("delete the last file", zvc_storage_delete_last, patience);
}

Result Camera::delete_all(milliseconds patience)
{
    return call("delete all media", zvc_storage_delete_all, patience);
}

Result Camera::tag(const std::string &file, uint32_t offset_ms, bool remove, milliseconds patience)
{
    if (file.empty() || file.size() > STORAGE_NAME_MAX) {
        return {Outcome::FAILED,
                "a name has 1 to " + std::to_string(STORAGE_NAME_MAX) + " characters, such as 100ABCDE/CLIP0001.MP4"};
    }
    return call(
        "tag the file",
        [file, offset_ms, remove](zvc_msg_q_context_t *context) {
            return zvc_storage_tag_file(context, file.c_str(), static_cast<uint32_t>(file.size()), offset_ms,
                                        remove ? 0 : 1);
        },
        patience);
}

} // namespace zvservice
