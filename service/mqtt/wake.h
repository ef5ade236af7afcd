// A descriptor by which other threads wake one that waits on descriptors.
#pragma once

namespace zvmqtt {

class Wake {
  public:
    // Throws std::system_error where there is no descriptor left.
    Wake();
    ~Wake();
    Wake(const Wake &) = delete;
    Wake &operator=(const Wake &) = delete;

    void wake() const; // any thread
    void clear() const;
    int descriptor() const { return m_descriptor; }

  private:
    int m_descriptor;
};

} // namespace zvmqtt
