#include "mqtt_rows.h"

#include "load_rows.h"
#include "process.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

using namespace bench;

// As the program prints its figures: those of the bridges, those of the peers, and the further ones of the bridges.
const std::vector<std::string> WORKS = {"mqtt_change", "mqtt_change_99_percent", "mqtt_change_processor",
                                        "mqtt_offers", "mqtt_offers_99_percent", "mqtt_offers_processor",
                                        "mqtt_order"};
enum OfBridges : size_t { IDLE, DIRTY, RESIDENT };

constexpr int CAMERAS[] = {1, 10, 50};

std::string command_of(int cameras)
{
    return ZVBENCH_MQTT " " + std::to_string(cameras);
}

bool can_run(int cameras)
{
    return cameras == 1 || may_give_users(static_cast<size_t>(cameras));
}

size_t place_of(OfBridges figure)
{
    return 2 * WORKS.size() + figure;
}

Runs &runs()
{
    static Runs all(numbers_printed_by);
    return all;
}

const bool registered = [] {
    for (const int cameras : CAMERAS) {
        if (!can_run(cameras)) {
            continue;
        }
        const std::string number = '/' + std::to_string(cameras);
        size_t place = 0;
        for (const char *worker : {"/library", "/bare_clients"}) {
            for (const std::string &work : WORKS) {
                runs().add(std::string(work).append(worker).append(number), command_of(cameras), place++);
            }
        }
        runs().add("mqtt_idle_second/library" + number, command_of(cameras), place_of(IDLE));
    }
    return true;
}();

} // namespace

void bench::print_mqtt()
{
    if (runs().empty()) {
        return;
    }
    printf("\n");
    print_stripped("zvmqtt, stripped", ZVBENCH_STRIPPED_ZVMQTT);
    for (const int cameras : CAMERAS) {
        const double dirty = runs().median(command_of(cameras), place_of(DIRTY)) / 1024;
        const double resident = runs().median(command_of(cameras), place_of(RESIDENT)) / 1024;
        if (resident != 0) {
            printf("memory of each of %-14d %6.1f KiB private, %.1f KiB resident\n", cameras, dirty, resident);
        } else if (!can_run(cameras)) {
            printf("%d cameras are left out: each takes a user id of its own, which only root can give it\n", cameras);
        }
    }
}
