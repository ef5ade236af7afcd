#include "simulator.h"

#include "daemon_peer.h"
#include "field.h"
#include "firmware_peer.h"
#include "flat_modes.h"
#include "foreign.h"
#include "identity.h"
#include "offered_options.h"
#include "queue_names.h"
#include "trace.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include <zvctrl/camera_records.h>
#include <zvctrl/zvcontrol_if.h>

namespace zv::sim {

namespace {

constexpr Link LINKS[] = {Link::DAEMON, Link::RELAY};
constexpr const char *QUEUE_NAMES[] = {DAEMON_QUEUE, RELAY_QUEUE}; // by Link
constexpr uint64_t MILLISECOND = 1000;
constexpr uint64_t NEVER = UINT64_MAX;
constexpr uint64_t REOPENING = 100 * MILLISECOND; // until the next attempt to make a queue anew
constexpr int BURST = 16; // more than a queue holds, so that busy clients do not keep the owner from other work

// The flat mode and the user interface, by which the filter rules go more than by anything else.
using Mode = std::pair<FlatMode, uint8_t>;

Mode present_mode(const Camera &camera)
{
    return {camera.mode().flat_mode, camera.state().byte(settings(SETTINGS_SETUP_CAMERA_UX_MODE))};
}

} // namespace

Simulator::Simulator(uint8_t model, uint32_t seed) : m_camera(model, seed), m_noise(seed) {}

std::string Simulator::open()
{
    for (const Link link : LINKS) {
        if (std::string wrong = open_queue(link); !wrong.empty()) {
            return wrong;
        }
    }
    return store_identity(m_camera.state().model());
}

std::string Simulator::open_queue(Link link)
{
    return queue(link).open(QUEUE_NAMES[static_cast<size_t>(link)], message_max(link));
}

bool Simulator::reads(Link link) const
{
    return m_outages[static_cast<size_t>(link)].kind == OutageKind::NONE && !frozen(link);
}

void Simulator::add_fault(const FaultRule &rule)
{
    if (!begins_at_once(rule)) {
        m_faults.add(rule);
        return;
    }
    for (const Link link : LINKS) {
        carry_out_order(link, effects_of(rule, link));
    }
}

void Simulator::clear_faults()
{
    m_faults.clear();
    for (const Link link : LINKS) {
        thaw(link);
    }
}

void Simulator::carry_out_order(Link link, const Effects &effects)
{
    if (effects.restart_ms) {
        begin_restart(link, MILLISECOND * *effects.restart_ms);
    }
    if (effects.freeze_ms) {
        m_thaw_at[static_cast<size_t>(link)] =
            *effects.freeze_ms == 0 ? NEVER : m_now + MILLISECOND * *effects.freeze_ms;
    }
    if (effects.thaw) {
        thaw(link);
    }
    if (effects.switched_on) {
        m_faults.switch_on(link);
    }
}

void Simulator::thaw(Link link)
{
    m_thaw_at[static_cast<size_t>(link)] = 0;
    send_late();
    end_outages();
}

void Simulator::serve()
{
    for (const Link link : LINKS) {
        for (int left = BURST; left > 0 && reads(link); --left) {
            const std::optional<Bytes> message = queue(link).receive();
            if (!message) {
                break;
            }
            take(link, *message);
        }
    }
}

void Simulator::take(Link link, const Bytes &message)
{
    record(link, true, message);
    const std::optional<Request> request = parse_request(link, message);
    if (!request) {
        return;
    }
    const Effects effects = m_faults.meet(*request);
    if (begin_outage(link, effects)) {
        return;
    }
    release(link);
    if (effects.foreign) {
        const Request other = foreign_request(*request);
        dispatch(link, request->source, {0, build_answer(other, ask_peer(other))});
    }
    for (const Reply &reply : replies(*request, effects)) {
        if (effects.hold_requests > 0) {
            m_held.push_back({link, request->source, reply, effects.hold_requests});
        } else {
            dispatch(link, request->source, reply);
        }
    }
}

// Sends the answer now, or when it is due.
void Simulator::dispatch(Link link, const std::string &queue, const Reply &reply)
{
    const uint64_t due = std::max(m_now + reply.delay, last_due(link));
    if (due > m_now) {
        m_late.insert({due, {link, queue, reply.message}});
    } else {
        send(link, queue, reply.message);
    }
}

// Lets go of the answers that waited for the request that has come now.
void Simulator::release(Link link)
{
    for (Held &held : m_held) {
        if (held.link == link && --held.requests == 0) {
            dispatch(link, held.queue, held.reply);
        }
    }
    std::erase_if(m_held, [](const Held &held) { return held.requests == 0; });
}

// The daemon answers in order: nothing overtakes an answer of its that is late.
uint64_t Simulator::last_due(Link link) const
{
    uint64_t last = 0;
    for (const auto &[due, late] : m_late) {
        if (link == Link::DAEMON && late.link == link) {
            last = due;
        }
    }
    return last;
}

// The messages that go to the client, with all that befalls them.
std::vector<Reply> Simulator::replies(const Request &request, const Effects &effects)
{
    std::vector<Reply> all;
    if (const std::vector<Reply> *recorded = m_replay.find(request)) {
        all = *recorded;
    } else {
        all.push_back({0, build_answer(request, answer(request, effects))});
    }
    if (effects.drop) {
        return {};
    }
    std::vector<Reply> sent;
    for (Reply &reply : all) {
        reply.delay += MILLISECOND * effects.delay_ms;
        distort(effects, reply.message);
        sent.insert(sent.end(), effects.copies, reply);
    }
    return sent;
}

Answer Simulator::answer(const Request &request, const Effects &effects)
{
    const bool daemon = request.link == Link::DAEMON;
    Answer answer;
    if (effects.switched_off) {
        answer.switched_off = true;
        return answer;
    }
    if (effects.refusal) {
        return refused(*effects.refusal);
    }
    if (effects.error) {
        if (daemon) {
            return refused(*effects.error);
        }
        answer.error = static_cast<uint8_t>(*effects.error);
        return answer;
    }
    answer = carry_out(request);
    if (effects.wrong_key && daemon && request.command == ZVCONTROL_RESYNC_MESSAGE_QUEUE && !answer.payload.empty()) {
        ++answer.payload.front();
    }
    return answer;
}

Answer Simulator::carry_out(const Request &request)
{
    const Mode before = present_mode(m_camera);
    Answer answer = ask_peer(request);
    if (present_mode(m_camera) != before) {
        take_offered_options(m_camera);
    }
    return answer;
}

Answer Simulator::ask_peer(const Request &request)
{
    return request.link == Link::DAEMON ? answer_as_daemon(m_camera, request) : answer_as_firmware(m_camera, request);
}

void Simulator::distort(const Effects &effects, Bytes &message)
{
    for (uint32_t i = 0; i < effects.corrupt_bytes && !message.empty(); ++i) {
        message[m_noise() % message.size()] = static_cast<uint8_t>(m_noise());
    }
    if (effects.cut_to) {
        message.resize(
            std::min<size_t>(message.size(), *effects.cut_to == CUT_TO_HALF ? message.size() / 2 : *effects.cut_to));
    }
}

void Simulator::send(Link link, const std::string &queue, const Bytes &message)
{
    post(queue, message);
    record(link, false, message);
}

void Simulator::record(Link link, bool from_client, const Bytes &message)
{
    if (m_trace == nullptr) {
        return;
    }
    const TraceDirection direction =
        link == Link::DAEMON ? (from_client ? TraceDirection::CLIENT_TO_DAEMON : TraceDirection::DAEMON_TO_CLIENT)
                             : (from_client ? TraceDirection::CLIENT_TO_CAMERA : TraceDirection::CAMERA_TO_CLIENT);
    write_trace(*m_trace, {m_now, direction, message});
}

void Simulator::advance(uint64_t microseconds)
{
    m_now += microseconds;
    m_camera.advance(microseconds);
    send_late();
    end_outages();
}

// The answers that are due, but for those of a frozen peer.
void Simulator::send_late()
{
    for (auto next = m_late.begin(); next != m_late.end() && next->first <= m_now;) {
        const Late &late = next->second;
        if (frozen(late.link)) {
            ++next;
            continue;
        }
        send(late.link, late.queue, late.message);
        next = m_late.erase(next);
    }
}

// True when one has begun: the request is lost.
bool Simulator::begin_outage(Link link, const Effects &effects)
{
    Outage &outage = m_outages[static_cast<size_t>(link)];
    if (effects.restart_ms) {
        for (const Link other : LINKS) {
            if (other == link || effects.both_links) {
                begin_restart(other, MILLISECOND * *effects.restart_ms);
            }
        }
    } else if (effects.dead_ms > 0) {
        outage = {OutageKind::DEAD, m_now + MILLISECOND * effects.dead_ms};
    } else if (effects.full_ms > 0) {
        outage = {OutageKind::FULL, m_now + MILLISECOND * effects.full_ms};
        queue(link).fill();
    }
    return !reads(link) || effects.restart_ms;
}

// The peer ends in good order: its queue goes, and with it what waits there and what the peer had yet to send. The one
// that comes back is not frozen.
void Simulator::begin_restart(Link link, uint64_t length)
{
    forget(link);
    queue(link).close();
    std::erase_if(m_late, [=](const auto &late) { return late.second.link == link; });
    std::erase_if(m_held, [=](const Held &held) { return held.link == link; });
    m_outages[static_cast<size_t>(link)] = {OutageKind::RESTART, m_now + length};
    m_thaw_at[static_cast<size_t>(link)] = 0;
    end_outages();
}

// What waits in the queue is in the trace, and answered by nobody.
void Simulator::forget(Link link)
{
    while (const auto message = queue(link).receive()) {
        record(link, true, *message);
    }
}

// Those that are over; a frozen peer does not notice the end of its own before it is thawed.
void Simulator::end_outages()
{
    for (const Link link : LINKS) {
        Outage &outage = m_outages[static_cast<size_t>(link)];
        if (outage.kind != OutageKind::NONE && outage.until <= m_now && !frozen(link)) {
            outage = end_outage(link) ? Outage() : Outage{outage.kind, m_now + REOPENING};
        }
    }
}

// False when the queue cannot be made anew now.
bool Simulator::end_outage(Link link)
{
    switch (m_outages[static_cast<size_t>(link)].kind) {
    case OutageKind::DEAD:
        forget(link);
        return true;
    case OutageKind::RESTART:
        return open_queue(link).empty();
    default:
        return true;
    }
}

std::optional<uint64_t> Simulator::next_due() const
{
    uint64_t next = NEVER;
    for (const auto &[due, late] : m_late) {
        next = frozen(late.link) ? next : std::min(next, due);
    }
    for (const Link link : LINKS) {
        const Outage &outage = m_outages[static_cast<size_t>(link)];
        for (const uint64_t due : {frozen(link) ? 0 : outage.until, m_thaw_at[static_cast<size_t>(link)]}) {
            next = due > m_now ? std::min(next, due) : next;
        }
    }
    if (next == NEVER) {
        return std::nullopt;
    }
    return next > m_now ? next - m_now : 0;
}

} // namespace zv::sim
