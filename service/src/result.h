// What a call came to: one type for all that can go wrong between a program and its camera, with a sentence for people,
// an exit code for scripts and a status for HTTP.
#pragma once

#include "availability.h"

#include <cstdint>
#include <string>
#include <vector>
#include <zvctrl/zvDbg.h>

namespace zvservice {

enum class Outcome : uint8_t {
    DONE,
    FAILED,          // in a way that only the sentence tells
    SWITCHED_OFF,    // the camera says so; nothing was done
    NO_ANSWER,       // in time; what was sent may be carried out all the same
    NOT_THERE,       // no queue of the daemon or the relay; nothing was sent
    REFUSED,         // by the camera, whose acknowledge byte or return code is code()
    FIRMWARE_ERROR,  // of the number code(), which is signed
    FORBIDDEN,       // by the filter rules, which reasons() holds; nothing was sent
    NOT_OFFERED,     // what was asked for is nothing that the camera offers now
    NO_SUCH_SETTING, // nothing was sent
    NO_SUCH_OPTION,  // nothing was sent
    SYSTEM_LIMIT,    // the sentence names it, with its value and the remedy
};

// The end of a NO_ANSWER's sentence where nothing can be carried out any more.
inline constexpr char NOTHING_SENT[] = "nothing was sent";

// How a program ends, for its help: an outcome is one of these.
enum ExitCode : uint8_t {
    EXIT_DONE = 0,
    EXIT_FAILED = 1,
    EXIT_WRONG_USAGE = 2,
    EXIT_NOT_THERE = 3,
    EXIT_NO_ANSWER = 4,
    EXIT_REFUSED = 5,
    EXIT_FORBIDDEN = 6,
    EXIT_SYSTEM_LIMIT = 7,
};

// Values that anybody may copy and keep; each belongs to one thread at a time.
class ZV_API Result {
  public:
    // Done.
    Result() = default;

    // `sentence` is whole: what could not be done, and why. No capital at its beginning and no stop at its end.
    Result(Outcome outcome, std::string sentence, int32_t code = 0);

    // Forbidden, by these rules.
    Result(std::string sentence, std::vector<Removal> reasons);

    // What a function of the library came to: its result, and the context's rtos_error_code after it. `doing` says what
    // was tried, such as "start the capture". A switched-off camera that gives 0 is not seen here; CameraLink sees it.
    static Result of_call(int32_t result, const char *doing, uint8_t camera_code = 0);

    // What could not be done, as `doing` above, and why: "cannot start the capture: the camera is switched off".
    static Result cannot(Outcome outcome, const char *doing, const std::string &why, int32_t code = 0);

    // The camera is switched off, and so could not do it.
    static Result switched_off(const char *doing);

    Outcome outcome() const { return m_outcome; }
    bool done() const { return m_outcome == Outcome::DONE; }

    // The camera's own number: the acknowledge byte or the daemon's return code of a refusal, or the firmware's error.
    int32_t code() const { return m_code; }

    // The rules that forbid it, in ascending order.
    const std::vector<Removal> &reasons() const { return m_reasons; }

    // "cannot start the capture: the camera is switched off"; empty for what is done.
    const std::string &sentence() const { return m_sentence; }

    ExitCode exit_code() const;
    int http_status() const; // 200 for what is done

  private:
    Outcome m_outcome = Outcome::DONE;
    int32_t m_code = 0;
    std::string m_sentence;
    std::vector<Removal> m_reasons;
};

} // namespace zvservice
