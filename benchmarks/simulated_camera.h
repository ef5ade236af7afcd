// The simulated camera as a process, for what is measured with a whole camera.
#pragma once

#include "process.h"

#include <string>
#include <sys/types.h>

namespace bench {

// Runs as long as the object lives; its system information is in a folder of its own, which every program finds that
// is started meanwhile. This process is bound to the first processor from then on.
class SimulatedCamera {
  public:
    explicit SimulatedCamera(Cores cores);
    ~SimulatedCamera();
    SimulatedCamera(const SimulatedCamera &) = delete;
    SimulatedCamera &operator=(const SimulatedCamera &) = delete;

    bool is_ready() const { return m_is_ready; }

  private:
    std::string m_folder;
    pid_t m_process = -1;
    int m_output = -1;
    bool m_is_ready = false;
};

} // namespace bench
