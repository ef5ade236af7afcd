// What clients get of one revision: made by the first who asks, shared by all.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <zvservice/snapshot.h>

namespace zvweb {

class Rendering {
  public:
    // Of a state that is there. `before` is the last one, or null: what the rules see alike is worked out once.
    Rendering(const zvservice::Snapshot &snapshot, const Rendering *before);

    const zvservice::State &state() const { return *m_state; }
    uint64_t revision() const { return m_revision; }

    // "status":{...} and "settings":{...}, without braces around them.
    const std::string &status() const { return m_status; }
    const std::string &settings() const { return m_settings; }

    // The settings' object of what is available, {"3":{...},...}. The rules are worked out by the first call.
    const std::string &available() const;

  private:
    std::shared_ptr<const zvservice::State> m_state;
    uint64_t m_revision;
    std::string m_status;
    std::string m_settings;
    struct Offer {
        std::once_flag made;
        std::string text;
    };
    std::shared_ptr<Offer> m_offer;
};

// Keeps the last one. Any thread.
class Renderings {
  public:
    // Null before the first state.
    std::shared_ptr<const Rendering> of(const zvservice::Snapshot &snapshot);

    // The catalogue's document.
    std::shared_ptr<const std::string> catalogue(uint32_t model);

  private:
    std::mutex m_mutex;
    std::shared_ptr<const Rendering> m_last;
    uint32_t m_model = 0; // of the catalogue
    std::shared_ptr<const std::string> m_catalogue;
};

// Both documents' members before the first state.
inline constexpr char EMPTY_DOCUMENTS[] = R"("status":{},"settings":{})";

// `"revision":17,"epoch":"...","age_ms":120,"link":"up",` of a moment, the members before the documents.
std::string state_head(const zvservice::Snapshot &snapshot);

// {"revision":17,"settings":{...}}
std::string available_document(const Rendering &rendering);

} // namespace zvweb
