// What a request is replied to with: an answer, work that ends with one, or the stream of events.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>
#include <zvservice/result.h>

namespace zvweb {

inline constexpr char JSON_TYPE[] = "application/json";
inline constexpr char EVENTS_TYPE[] = "text/event-stream";

struct Answer {
    unsigned status = 200;
    const char *content_type = JSON_TYPE;
    std::string head; // the body's beginning, this answer's own

    // The rest of the body, in pieces that many answers share, and what keeps them alive. Long ones are sent from where
    // they are.
    std::vector<std::string_view> shared;
    std::shared_ptr<const void> owner;

    // Names live for ever.
    std::vector<std::pair<const char *, std::string>> headers;

    // May be kept by the client, and asked for again by its entity tag. Nothing else may.
    bool cacheable = false;

    // Names what is answered by its tag, in quotes and "W/" before them where the same tag may go with other bytes. A
    // client that has it already gets 304 and no body.
    void set_tag(std::string tag, std::optional<std::string_view> if_none_match);
};

Answer json_answer(std::string text);
Answer without_body(unsigned status);

// RFC 9457. `detail` is a sentence without a stop, `members` what the problem has besides: `"why":[...]`, or nothing.
Answer problem(unsigned status, std::string_view detail, std::string_view members = {});

// What a call came to that is not done.
Answer problem(const zvservice::Result &result);

// It would pass by itself.
Answer unavailable(std::string_view detail);
Answer no_state_yet();

Answer body_too_large();

// The given one, and the connection ends with it.
Answer last(Answer answer);

// A strong tag that other bytes do not have.
std::string content_tag(std::string_view content);

// Waits for the camera, for so long, in a thread of its own.
using Work = std::function<Answer(std::chrono::milliseconds patience)>;

// From the whole state on, or from after a revision, whose epoch and number the client names.
struct Stream {
    std::optional<std::string> last_event;
};

using Reply = std::variant<Answer, Work, Stream>;

} // namespace zvweb
