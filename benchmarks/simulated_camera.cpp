#include "simulated_camera.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <unistd.h>

namespace bench {

namespace {

constexpr useconds_t FILES_REST = 200000; // the stand-in keeps no value of a file that was written a moment ago

} // namespace

SimulatedCamera::SimulatedCamera(Cores cores)
{
    char folder[] = "/tmp/zvbench.XXXXXX";
    if (mkdtemp(folder) == nullptr) {
        return;
    }
    m_folder = folder;
    setenv("ZVCSI_DIR", folder, 1);
    run_as_client();
    try {
        m_program.emplace(cores, [] { execl(ZVBENCH_ZVSIM, ZVBENCH_ZVSIM, nullptr); });
    } catch (const std::runtime_error &) {
        return;
    }
    usleep(FILES_REST);
}

SimulatedCamera::~SimulatedCamera()
{
    m_program.reset();
    std::filesystem::remove_all(m_folder);
}

} // namespace bench
