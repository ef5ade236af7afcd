// A service on the core, in C++17. Prints what docs/linking.md says of each outcome: its exit code, its status of HTTP.
#include <cstdio>
#include <zvservice/camera.h>
#include <zvservice/catalogue.h>

namespace {

using zvservice::Outcome;

constexpr struct {
    Outcome outcome;
    const char *name;
} OUTCOMES[] = {
    {Outcome::DONE, "DONE"},
    {Outcome::FAILED, "FAILED"},
    {Outcome::SWITCHED_OFF, "SWITCHED_OFF"},
    {Outcome::NO_ANSWER, "NO_ANSWER"},
    {Outcome::NOT_THERE, "NOT_THERE"},
    {Outcome::REFUSED, "REFUSED"},
    {Outcome::FIRMWARE_ERROR, "FIRMWARE_ERROR"},
    {Outcome::FORBIDDEN, "FORBIDDEN"},
    {Outcome::NOT_OFFERED, "NOT_OFFERED"},
    {Outcome::NO_SUCH_SETTING, "NO_SUCH_SETTING"},
    {Outcome::NO_SUCH_OPTION, "NO_SUCH_OPTION"},
    {Outcome::SYSTEM_LIMIT, "SYSTEM_LIMIT"},
};

} // namespace

int main()
{
    uint32_t setting = 0;
    if (!zvservice::Catalogue(62).find_setting("video/fps", setting).done() || setting != 3) {
        return 1;
    }
    for (const auto &row : OUTCOMES) {
        const zvservice::Result result(row.outcome, "");
        std::printf("%s %d %d\n", row.name, result.exit_code(), result.http_status());
    }
    return 0;
}
