#include "rendering.h"

#include <zvservice/documents.h>

namespace zvweb {

using zvservice::Snapshot;

Rendering::Rendering(const Snapshot &snapshot, const Rendering *before)
    : m_state(snapshot.state), m_revision(snapshot.revision),
      m_status("\"status\":" + zvservice::status_json(*snapshot.state)),
      m_settings("\"settings\":" + zvservice::settings_json(*snapshot.state))
{
    const bool as_before = before != nullptr && before->m_state->model() == m_state->model() &&
                           zvservice::same_offers(before->m_state->values(), m_state->values(), m_state->model());
    m_offer = as_before ? before->m_offer : std::make_shared<Offer>();
}

const std::string &Rendering::available() const
{
    std::call_once(m_offer->made, [this] { m_offer->text = zvservice::available_json(*m_state); });
    return m_offer->text;
}

std::shared_ptr<const Rendering> Renderings::of(const Snapshot &snapshot)
{
    if (snapshot.state == nullptr) {
        return nullptr;
    }
    const std::lock_guard lock(m_mutex);
    if (m_last == nullptr || m_last->revision() != snapshot.revision) {
        m_last = std::make_shared<const Rendering>(snapshot, m_last.get());
    }
    return m_last;
}

std::shared_ptr<const std::string> Renderings::catalogue(uint32_t model)
{
    const std::lock_guard lock(m_mutex);
    if (m_catalogue == nullptr || m_model != model) {
        m_model = model;
        m_catalogue = std::make_shared<const std::string>(zvservice::catalogue_json(model));
    }
    return m_catalogue;
}

std::string state_head(const Snapshot &snapshot)
{
    return "\"revision\":" + std::to_string(snapshot.revision) + ",\"epoch\":\"" + *snapshot.epoch +
           "\",\"age_ms\":" + std::to_string(snapshot.age().count()) + ",\"link\":\"" +
           zvservice::link_state_name(snapshot.link) + "\",";
}

std::string available_document(const Rendering &rendering)
{
    return "{\"revision\":" + std::to_string(rendering.revision()) + ",\"settings\":" + rendering.available() + "}";
}

} // namespace zvweb
