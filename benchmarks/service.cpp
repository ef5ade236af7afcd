// A service that polls the camera. Prints the nanoseconds of one poll, the median of many, and the mean of all clients
// where there are several.
//
//     zvbench_service poll CLIENTS         an exchange and both documents
//     zvbench_service changes CLIENTS      an exchange, what has changed, and both documents
//     zvbench_service documents CLIENTS    both documents of the same record
//
// Each client is a process with a link of its own.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>
#include <zvctrl/camera_settings.h>
#include <zvctrl/zvc_state.h>
#include <zvctrl/zvcontrol_if.h>

namespace {

constexpr size_t FIRST_POLLS = 50; // not counted
constexpr size_t POLLS = 1000;

class Service {
  public:
    Service() { camera_status_init_bossCache(zvc_state_get_model_number(), m_cache); }

    bool receive()
    {
        m_previous = m_record;
        uint16_t length = 0;
        return zvcontrol_send_command_param_response_ex(ZVCONTROL_GET_ALL_SETTINGS_STATUS, nullptr, 0, m_record.bytes,
                                                        sizeof m_record.bytes, &length) == ZV_OK &&
               length == sizeof m_record.bytes;
    }

    void write_changes()
    {
        const uint32_t model = zvc_state_get_model_number();
        const appc_system_all_status status = this->status();
        camera_status_serialize_status_changes_to_json(m_stream, &status, nullptr, model, m_cache);
        camera_status_serialize_settings_changes_to_json(m_stream, &m_record, &m_previous, model);
    }

    void write_documents()
    {
        const uint32_t model = zvc_state_get_model_number();
        const appc_system_all_status status = this->status();
        appc_setup_all_settings settings;
        memcpy(settings.bytes, m_record.bytes + ALL_SETTINGS_OFFSET, sizeof settings.bytes);
        m_stream.seekp(0);
        camera_status_serialize_status_to_json(m_stream, &status, model);
        camera_settings_serialize_to_json(m_stream, &settings, &status, nullptr, model);
    }

  private:
    appc_system_all_status status() const
    {
        appc_system_all_status status;
        memcpy(status.bytes, m_record.bytes + ALL_STATUS_OFFSET, sizeof status.bytes);
        return status;
    }

    all_status_settings_t m_record = {};
    all_status_settings_t m_previous = {};
    std::vector<std::string> m_cache;
    std::stringstream m_stream;
};

// Nanoseconds of one poll; 0 when one fails.
double time_of_poll(std::string_view what)
{
    Service service;
    std::vector<double> times;
    if (zvcontrol_interface_open() != ZV_OK || !service.receive() || !service.receive()) {
        return 0;
    }
    for (size_t i = 0; i < FIRST_POLLS + POLLS; ++i) {
        const auto start = std::chrono::steady_clock::now();
        if (what != "documents" && !service.receive()) {
            return 0;
        }
        if (what == "changes") {
            service.write_changes();
        }
        service.write_documents();
        if (i >= FIRST_POLLS) {
            times.push_back(std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count());
        }
    }
    zvcontrol_interface_close();
    std::ranges::nth_element(times, times.begin() + POLLS / 2);
    return times[POLLS / 2];
}

} // namespace

int main(int argc, char **argv)
{
    const long clients = argc == 3 ? strtol(argv[2], nullptr, 10) : 0;
    int ends[2];
    if (clients < 1 || pipe(ends) != 0) {
        fprintf(stderr, "usage: zvbench_service poll|changes|documents CLIENTS\n");
        return 2;
    }
    for (long i = 0; i < clients; ++i) {
        if (fork() == 0) {
            const double time = time_of_poll(argv[1]);
            _exit(write(ends[1], &time, sizeof time) == sizeof time ? 0 : 1);
        }
    }
    close(ends[1]);
    double sum = 0;
    double time = 0;
    long served = 0;
    while (read(ends[0], &time, sizeof time) == sizeof time) {
        sum += time;
        served += time > 0 ? 1 : 0;
    }
    while (wait(nullptr) > 0) {
    }
    printf("%.1f\n", served == clients ? sum / static_cast<double>(clients) : 0);
    return served == clients ? 0 : 1;
}
