// The camera as a script: the requests it expects, in order, each with its answer. It runs inside the library's wait,
// on real queues; a request out of order, an unexpected one and a leftover fail the test.
#pragma once

#include "queues.h"
#include "zvc_commands.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace test {

// A TLV message: category and elements, each a tag and its value.
struct Element {
    uint8_t tag;
    Bytes value;
};
Bytes tlv_message(uint8_t category, const std::vector<Element> &elements);
Bytes element_of(const Bytes &message, uint8_t tag); // the first element's value, empty without one
Bytes text(const char *characters);

// Bytes as a failure shows them: "C4 01".
std::string hexadecimal(const Bytes &bytes);

// The answer to a remote API call, the value of TLV_RSPARG: acknowledge, error and payload, all in order.
Bytes good(const Bytes &payload = {});
Bytes refused(uint8_t acknowledge = 1);
Bytes firmware_error(uint8_t error);

class CameraDouble {
  public:
    CameraDouble();
    ~CameraDouble(); // fails the test when expected requests are left over
    CameraDouble(const CameraDouble &) = delete;
    CameraDouble &operator=(const CameraDouble &) = delete;

    // A context set up on the double's queues.
    zvc_msg_q_context_t *context() { return &m_context; }

    // The next request: group, action and payload bytes, then the TLV_RSPARG value that answers it.
    void expect(uint8_t group, uint8_t action, const Bytes &payload, const Bytes &answer = good());
    // The next request is not answered.
    void expect_silence(uint8_t group, uint8_t action, const Bytes &payload = {});
    // The next request is answered with these whole messages, whatever they are.
    void expect_raw(uint8_t group, uint8_t action, const Bytes &payload, const std::vector<Bytes> &messages);

    // The whole messages that the camera got, oldest first.
    const std::vector<Bytes> &received() const { return m_received; }

    const Queue &relay() const { return m_relay; }
    const Queue &reply() const { return m_reply; }

  private:
    struct Step {
        Bytes request; // the TLV_CMDARG value
        std::vector<Bytes> answers;
    };

    void serve();

    std::string leftovers() const; // a line for each expected request that did not come

    Queue m_relay;
    Queue m_reply;
    zvc_msg_q_context_t m_context = {};
    std::deque<Step> m_script;
    std::vector<Bytes> m_received;
};

} // namespace test
