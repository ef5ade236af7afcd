// The simulated camera as a process, for what is measured with a whole camera.
#pragma once

#include "child.h"

#include <optional>
#include <string>

namespace bench {

// Runs as long as the object lives; its system information is in a folder of its own, which every program finds that
// is started meanwhile. This process is bound to the first processor from then on.
class SimulatedCamera {
  public:
    explicit SimulatedCamera(Cores cores);
    ~SimulatedCamera();
    SimulatedCamera(const SimulatedCamera &) = delete;
    SimulatedCamera &operator=(const SimulatedCamera &) = delete;

    bool is_ready() const { return m_program.has_value(); }

  private:
    std::string m_folder;
    std::optional<Child> m_program;
};

} // namespace bench
