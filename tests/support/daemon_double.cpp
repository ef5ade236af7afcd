#include "daemon_double.h"

#include "bytes.h"
#include "interpose.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace test {

namespace {

constexpr uint32_t RESYNC = 102;

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
    return tlv_message(21, elements);
}

DaemonDouble::DaemonDouble() : m_queue("/to_zvCtlD", 10, 10000)
{
    on_wait([this] { serve(); });
}

DaemonDouble::~DaemonDouble()
{
    serve();
    on_wait(nullptr);
    EXPECT_TRUE(m_script.empty()) << m_script.size() << " expected commands did not come";
}

void DaemonDouble::expect(uint32_t command, const Bytes &param, const Bytes &answer)
{
    m_script.push_back({command, [param, answer](const Bytes &actual) {
                            EXPECT_EQ(param, actual);
                            return answer;
                        }});
}

void DaemonDouble::expect_resync(const std::function<Bytes(uint32_t)> &answer)
{
    m_script.push_back({RESYNC, [answer](const Bytes &key) {
                            EXPECT_EQ(4U, key.size());
                            return answer(zv::le32(key.data()));
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

void DaemonDouble::serve()
{
    for (Bytes message = m_queue.receive(); !message.empty(); message = m_queue.receive()) {
        m_received.push_back(message);
        const Bytes command = element_of(message, TLV_CMD);
        if (m_script.empty()) {
            ADD_FAILURE() << "unexpected command " << testing::PrintToString(command);
            continue;
        }
        const Step step = m_script.front();
        m_script.pop_front();
        EXPECT_EQ(little_endian(step.command), command);
        const Bytes name = element_of(message, TLV_SRC); // with its terminator
        if (const Bytes answer = step.answer(element_of(message, TLV_CMDARG)); !answer.empty()) {
            send(reinterpret_cast<const char *>(name.data()), answer);
        }
    }
}

} // namespace test
