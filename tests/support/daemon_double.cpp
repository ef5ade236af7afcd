#include "daemon_double.h"

#include "bytes.h"
#include "interpose.h"
#include "zvcontrol_if.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace test {

namespace {

// A command as a failure shows it: "command 30 parameter 8B 00 00 00 03 00 00 00".
std::string command_text(const Bytes &command, const Bytes &param)
{
    const std::string number = command.size() == 4 ? std::to_string(zv::le32(command.data())) : hexadecimal(command);
    return "command " + number + (param.empty() ? " without parameter" : " parameter " + hexadecimal(param));
}

} // namespace

Bytes little_endian(uint32_t number)
{
    Bytes bytes(4);
    zv::put_le32(bytes.data(), number);
    return bytes;
}

Bytes daemon_answer(int32_t code, const std::optional<Bytes> &payload)
{
    std::vector<Element> elements = {{TLV_RSP, little_endian(static_cast<uint32_t>(code))}};
    if (payload) {
        elements.push_back({TLV_RSPARG, *payload});
    }
    elements.push_back({TLV_END, {}});
    return tlv_message(CAT_ZVCTRL_RSP, elements);
}

DaemonDouble::DaemonDouble()
{
    start();
    on_wait([this] { serve(); });
}

DaemonDouble::~DaemonDouble()
{
    serve();
    on_wait(nullptr);
    if (!m_script.empty()) {
        ADD_FAILURE() << "expected commands did not come:" << leftovers();
    }
}

void DaemonDouble::start()
{
    m_queue.emplace("/to_zvCtlD", 10, DAEMON_MSG_MAX);
}

void DaemonDouble::expect(uint32_t command, const Bytes &param, const Bytes &answer)
{
    m_script.push_back({command, param, [answer](const Bytes &) { return answer; }});
}

void DaemonDouble::expect_resync(const std::function<Bytes(uint32_t)> &answer)
{
    m_script.push_back({ZVCONTROL_RESYNC_MESSAGE_QUEUE, {}, [answer](const Bytes &key) {
                            EXPECT_EQ(4U, key.size());
                            return key.size() == 4 ? answer(zv::le32(key.data())) : Bytes{};
                        }});
}

const std::vector<Bytes> &DaemonDouble::received()
{
    serve();
    return m_received;
}

void DaemonDouble::send(const char *queue_name, const Bytes &message)
{
    const mqd_t queue = mq_open(queue_name, O_WRONLY | O_NONBLOCK);
    EXPECT_EQ(0, mq_send(queue, reinterpret_cast<const char *>(message.data()), message.size(), 0)) << queue_name;
    mq_close(queue);
}

std::string DaemonDouble::step_text(const Step &step)
{
    return step.param ? command_text(little_endian(step.command), *step.param)
                      : "command " + std::to_string(step.command) + " with any parameter";
}

std::string DaemonDouble::leftovers() const
{
    std::string lines;
    for (const Step &step : m_script) {
        lines += "\n" + step_text(step);
    }
    return lines;
}

void DaemonDouble::serve()
{
    if (!m_queue || m_hangs) {
        return;
    }
    for (Bytes message = m_queue->receive(); !message.empty(); message = m_queue->receive()) {
        m_received.push_back(message);
        const Bytes command = element_of(message, TLV_CMD);
        const Bytes param = element_of(message, TLV_CMDARG);
        if (m_script.empty()) {
            ADD_FAILURE() << "received " << command_text(command, param) << ", and expected no command";
            continue;
        }
        const Step step = m_script.front();
        m_script.pop_front();
        if (command != little_endian(step.command) || (step.param && *step.param != param)) {
            ADD_FAILURE() << "expected " << step_text(step) << "\nreceived " << command_text(command, param);
        }
        const Bytes name = element_of(message, TLV_SRC); // with its terminator
        if (const Bytes answer = step.answer(param); !answer.empty()) {
            send(reinterpret_cast<const char *>(name.data()), answer);
        }
    }
}

} // namespace test
