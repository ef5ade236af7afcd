#include "simulated_camera.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr useconds_t FILES_REST = 200000; // the stand-in keeps no value of a file that was written a moment ago

} // namespace

SimulatedCamera::SimulatedCamera(Cores cores)
{
    char folder[] = "/tmp/zvbench.XXXXXX";
    int ends[2];
    if (mkdtemp(folder) == nullptr || pipe(ends) != 0) {
        return;
    }
    m_folder = folder;
    setenv("ZVCSI_DIR", folder, 1);
    run_as_client();
    m_process = fork();
    if (m_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        run_as_peer(cores);
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        execl(ZVBENCH_ZVSIM, ZVBENCH_ZVSIM, nullptr);
        _exit(1);
    }
    close(ends[1]);
    m_output = ends[0];
    char line[256]; // it prints one when it is ready, and nothing before
    m_is_ready = read(m_output, line, sizeof line) > 0;
    usleep(FILES_REST);
}

SimulatedCamera::~SimulatedCamera()
{
    if (m_process > 0) {
        kill(m_process, SIGTERM);
        waitpid(m_process, nullptr, 0);
        close(m_output);
    }
    std::filesystem::remove_all(m_folder);
}

} // namespace bench
