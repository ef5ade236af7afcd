// The simulated camera as a whole: both peers over their queues, with faults and a trace. It has one thread and never
// waits; its owner calls serve() when a queue has messages, and advance() as time goes by.
#pragma once

#include "camera.h"
#include "faults.h"
#include "message.h"
#include "queue.h"
#include "replay.h"
#include "request.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <mqueue.h>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace zv::sim {

class Simulator {
  public:
    Simulator(uint8_t model, uint32_t seed);

    // Creates the peers' queues and stores the camera's identity. Returns an empty text, or what went wrong.
    std::string open();

    // From now on each message is written to `trace` as a line; it outlives the simulator. Null: nothing is written.
    void set_trace(std::ostream *trace) { m_trace = trace; }

    Camera &camera() { return m_camera; }

    // From now on, or once now: a rule that parse_fault() read, once the queues are there.
    void add_fault(const FaultRule &rule);
    // Takes all rules away, and thaws what is frozen. Other outages run their course.
    void clear_faults();

    // Requests that it knows are answered from it, all others by the camera.
    Replay &replay() { return m_replay; }
    mqd_t descriptor(Link link) const { return m_queues[static_cast<size_t>(link)].descriptor(); }

    // False while a fault keeps the queue from being read.
    bool reads(Link link) const;

    // Answers what waits in the queues.
    void serve();

    // Lets time pass, in microseconds.
    void advance(uint64_t microseconds);

    // Microseconds until the next late answer or end of an outage or freeze; nullopt if none.
    std::optional<uint64_t> next_due() const;

  private:
    // An answer that is sent later.
    struct Late {
        Link link;
        std::string queue;
        Bytes message;
    };
    // An answer that waits for other requests.
    struct Held {
        Link link;
        std::string queue;
        Reply reply;
        uint32_t requests; // that have yet to come
    };
    enum class OutageKind : uint8_t { NONE, DEAD, FULL, RESTART };
    struct Outage {
        OutageKind kind = OutageKind::NONE;
        uint64_t until = 0;
    };

    std::string open_queue(Link link);
    void take(Link link, const Bytes &message);
    uint64_t last_due(Link link) const;
    void dispatch(Link link, const std::string &queue, const Reply &reply);
    void release(Link link);
    std::vector<Reply> replies(const Request &request, const Effects &effects);
    Answer answer(const Request &request, const Effects &effects);
    Answer carry_out(const Request &request);
    Answer ask_peer(const Request &request);
    void distort(const Effects &effects, Bytes &message);
    void send(Link link, const std::string &queue, const Bytes &message);
    void carry_out_order(Link link, const Effects &effects);
    bool frozen(Link link) const { return m_thaw_at[static_cast<size_t>(link)] > m_now; }
    void thaw(Link link);
    void send_late();
    bool begin_outage(Link link, const Effects &effects);
    void begin_restart(Link link, uint64_t length);
    void forget(Link link);
    bool end_outage(Link link);
    void record(Link link, bool from_client, const Bytes &message);
    void end_outages();
    Queue &queue(Link link) { return m_queues[static_cast<size_t>(link)]; }

    Camera m_camera;
    Faults m_faults;
    Replay m_replay;
    std::mt19937 m_noise; // apart from the state's, so that faults do not change what the camera does
    std::array<Queue, LINK_COUNT> m_queues;
    std::array<Outage, LINK_COUNT> m_outages;
    std::array<uint64_t, LINK_COUNT> m_thaw_at = {}; // a peer is frozen before
    std::multimap<uint64_t, Late> m_late;            // by the time at which they are sent
    std::vector<Held> m_held;                        // in the order of their requests
    uint64_t m_now = 0;                              // microseconds
    std::ostream *m_trace = nullptr;
};

} // namespace zv::sim
