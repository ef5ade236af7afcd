#include "simulator.h"

#include "identity.h"

#include <algorithm>

namespace zv::sim {

namespace {

constexpr Link LINKS[] = {Link::DAEMON, Link::RELAY};
constexpr const char *QUEUE_NAMES[] = {"/to_zvCtlD", "/to_zvnet"};
constexpr uint32_t RESYNC_MESSAGE_QUEUE = 102;
constexpr uint64_t MILLISECOND = 1000;

} // namespace

Simulator::Simulator(uint8_t model, uint32_t seed)
    : m_camera(model, seed), m_daemon(m_camera), m_firmware(m_camera), m_noise(seed)
{
}

std::string Simulator::open()
{
    for (const Link link : LINKS) {
        if (std::string wrong = queue(link).open(QUEUE_NAMES[static_cast<size_t>(link)], message_max(link));
            !wrong.empty()) {
            return wrong;
        }
    }
    return store_identity(m_camera.state().model());
}

Peer &Simulator::peer(Link link)
{
    if (link == Link::DAEMON) {
        return m_daemon;
    }
    return m_firmware;
}

bool Simulator::reads(Link link) const
{
    return m_outages[static_cast<size_t>(link)].until <= m_now;
}

void Simulator::serve()
{
    for (const Link link : LINKS) {
        while (reads(link)) {
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
    const std::optional<Request> request = peer(link).parse(message);
    if (!request) {
        return;
    }
    const Effects effects = m_faults.meet(*request);
    if (effects.dead_ms > 0 || effects.full_ms > 0) {
        const bool forgets = effects.dead_ms > 0;
        m_outages[static_cast<size_t>(link)] = {m_now + MILLISECOND * (forgets ? effects.dead_ms : effects.full_ms),
                                                forgets};
        if (!forgets) {
            queue(link).fill();
        }
        return;
    }

    Answer answer;
    if (effects.switched_off) {
        answer.switched_off = true;
    } else if (effects.refusal) {
        answer.code = *effects.refusal;
    } else if (effects.error && link == Link::DAEMON) {
        answer.code = *effects.error;
    } else if (effects.error) {
        answer.error = static_cast<uint8_t>(*effects.error);
    } else {
        answer = peer(link).answer(*request);
    }
    if (effects.wrong_key && link == Link::DAEMON && request->command == RESYNC_MESSAGE_QUEUE &&
        !answer.payload.empty()) {
        ++answer.payload.front();
    }
    if (effects.drop) {
        return;
    }
    Bytes reply = peer(link).message(*request, answer);
    distort(effects, reply);
    const uint64_t due = std::max(m_now + MILLISECOND * effects.delay_ms, last_due(link));
    for (uint32_t copy = 0; copy < effects.copies; ++copy) {
        if (due > m_now) {
            m_late.insert({due, {link, request->source, reply}});
        } else {
            send(link, request->source, reply);
        }
    }
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

void Simulator::distort(const Effects &effects, Bytes &message)
{
    for (uint32_t i = 0; i < effects.corrupt_bytes; ++i) {
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
    while (!m_late.empty() && m_late.begin()->first <= m_now) {
        const Late late = m_late.begin()->second;
        m_late.erase(m_late.begin());
        send(late.link, late.queue, late.message);
    }
    end_outages();
}

void Simulator::end_outages()
{
    for (const Link link : LINKS) {
        Outage &outage = m_outages[static_cast<size_t>(link)];
        if (outage.until != 0 && outage.until <= m_now) {
            if (outage.forgets) {
                while (const auto message = queue(link).receive()) {
                    record(link, true, *message);
                }
            }
            outage = {};
        }
    }
}

std::optional<uint64_t> Simulator::next_due() const
{
    uint64_t next = m_late.empty() ? UINT64_MAX : m_late.begin()->first;
    for (const Outage &outage : m_outages) {
        next = outage.until > m_now ? std::min(next, outage.until) : next;
    }
    if (next == UINT64_MAX) {
        return std::nullopt;
    }
    return next > m_now ? next - m_now : 0;
}

} // namespace zv::sim
