#include "discovery.h"

#include <cctype>
#include <cstdint>
#include <map>
#include <utility>
#include <zvctrl/camera_setting_ids.h>
#include <zvservice/availability.h>
#include <zvservice/catalogue.h>
#include <zvservice/json.h>
#include <zvservice/links.h>

namespace zvmqtt {

using zvservice::Availability;
using zvservice::Catalogue;
using zvservice::Json;
using zvservice::State;

namespace {

// Templates are Jinja. No "{{{" or "}}}" may come about in them: the inner two would be taken for its brackets.

// Numbers of P/status. A kind is "device_class" there, and null where none fits.
struct SensorRow {
    uint32_t status;
    const char *name;
    const char *kind;
    const char *unit;
};
constexpr SensorRow SENSORS[] = {
    {70, "Battery", "battery", "%"},
    {54, "Free space", "data_size", "KiB"},
    {35, "Remaining video time", "duration", "s"},
    {34, "Remaining photos", nullptr, "photos"},
    {13, "Recording time", "duration", "s"},
};

// On where the condition holds.
struct BinarySensorRow {
    const char *object;
    const char *name;
    const char *kind;
    const char *condition;
};
constexpr BinarySensorRow BINARY_SENSORS[] = {
    {"status_10", "Recording", "running", "value_json['10']"},
    {"status_8", "Busy", nullptr, "value_json['8']"},
    {"status_6", "Hot", "heat", "value_json['6']"},
    // There is a battery, at its last bar (it has four while it is charged) and at its last fifth.
    {"low_battery", "Low battery", "battery", "value_json['1'] and value_json['2'] < 2 and value_json['70'] <= 20"},
};

struct ButtonRow {
    const char *object;
    const char *name;
    const char *order;
};
constexpr ButtonRow BUTTONS[] = {
    {"capture_start", "Shutter start", R"({"command":"capture/start"})"},
    {"capture_stop", "Shutter stop", R"({"command":"capture/stop"})"},
};

// The schedule's fields are those of camera_schedule.h.
constexpr char SCHEDULE_STATE[] = "{% set s = value_json['168'] %}"
                                  "{{ '%02d:%02d'|format(s // 256 % 32, s // 4 % 64) if s % 2 else 'off' }}";
constexpr char SCHEDULE_PATTERN[] = "^(off|([01]?[0-9]|2[0-3]):[0-5][0-9])$";
constexpr uint32_t SCHEDULE_SIZE_MIN = 3; // "off"
constexpr uint32_t SCHEDULE_SIZE_MAX = 5; // "07:30"

constexpr char ORDER[] = R"({"option":"{{ value }}"})";

// "Video fps" for "video/fps".
std::string plain_words(std::string name)
{
    for (char &c : name) {
        c = c == '/' || c == '_' ? ' ' : c;
    }
    name.front() = static_cast<char>(toupper(static_cast<unsigned char>(name.front())));
    return name;
}

// By number; with the number where several settings have the name.
std::map<uint32_t, std::string> names_of_settings(const Catalogue &catalogue)
{
    std::map<uint32_t, std::string> names;
    std::map<std::string, unsigned> bearers;
    for (const uint32_t setting : catalogue.settings()) {
        ++bearers[names[setting] = plain_words(catalogue.name(setting))];
    }
    for (auto &[setting, name] : names) {
        if (bearers[name] > 1) {
            name += " " + std::to_string(setting);
        }
    }
    return names;
}

// An option's key for its id, of those that are offered; None for others, which a list without them does not take. Keys
// are capitals, digits and underscores: in quotes they need no escapes.
std::string option_state(const std::vector<const option_t *> &offered, uint32_t setting)
{
    std::string text = "{{ {";
    for (const option_t *option : offered) {
        text += text.back() == '{' ? "" : ",";
        text += std::to_string(option->id) + ":'" + option->key + "'";
    }
    return text + "}.get(value_json['" + std::to_string(setting) + "']) }}";
}

// Puts the documents together.
class Entities {
  public:
    Entities(const std::string &prefix, const Topics &topics, const State &state);

    void add_setting(const Availability &availability, uint32_t setting, const std::string &name);
    void add_schedule(const std::string &name, bool offered);
    void add_sensor(const SensorRow &row);
    void add_binary_sensor(const BinarySensorRow &row);
    void add_link();
    void add_button(const ButtonRow &row);

    std::vector<Document> take() { return std::move(m_documents); }

  private:
    Json begin(const std::string &object, const std::string &name, bool offered = true) const;
    void end(const char *component, const std::string &object, Json &json);

    const std::string &m_prefix;
    const Topics &m_topics;
    const std::string m_node;
    std::string m_device; // and the origin: members that all have
    std::vector<Document> m_documents;
};

Entities::Entities(const std::string &prefix, const Topics &topics, const State &state)
    : m_prefix(prefix), m_topics(topics), m_node(plain(topics.id()))
{
    const zvservice::CameraIdentity identity = zvservice::camera_identity();
    const std::string &model = identity.model_name;
    Json json;
    json.key("device").open('{').key("identifiers").open('[').value("zv_" + m_node).close();
    json.member("name", (model.empty() ? "Camera" : model) + " " + topics.id());
    json.member("model", model.empty() ? std::to_string(state.model()) : model);
    if (!identity.serial_number.empty()) {
        json.member("serial_number", identity.serial_number);
    }
    if (!identity.firmware.empty()) {
        json.member("sw_version", identity.firmware);
    }
    json.close().key("origin").open('{').member("name", "zvmqtt").member("sw_version", ZVMQTT_VERSION).close();
    m_device = json.text();
}

// An entity is there while the bridge is. Where it is not offered, the link's topic says no as well, whatever it tells:
// a topic more or less is looked at anew at once, unlike another template for the same one.
Json Entities::begin(const std::string &object, const std::string &name, bool offered) const
{
    Json json;
    json.open('{').member("name", name).member("unique_id", "zv_" + m_node + "_" + object);
    json.member("availability_mode", "all").key("availability").open('[');
    json.open('{').member("topic", m_topics.availability()).close();
    if (!offered) {
        json.open('{').member("topic", m_topics.link()).member("value_template", OFFLINE).close();
    }
    json.close();
    return json;
}

void Entities::end(const char *component, const std::string &object, Json &json)
{
    m_documents.push_back(
        {m_prefix + "/" + component + "/" + m_node + "/" + object + "/config", json.raw(m_device).close().text()});
}

void Entities::add_setting(const Availability &availability, uint32_t setting, const std::string &name)
{
    const std::vector<const option_t *> offered = availability.options(setting);
    const std::string object = "setting_" + std::to_string(setting);
    Json json = begin(object, name, !offered.empty());
    json.member("entity_category", "config").key("options").open('[');
    for (const option_t *option : offered) {
        json.value(option->key);
    }
    json.close().member("command_topic", m_topics.set(std::to_string(setting)));
    json.member("command_template", ORDER).member("qos", 1);
    if (!offered.empty()) { // home automation need not read all settings for one that nobody sees
        json.member("state_topic", m_topics.settings()).member("value_template", option_state(offered, setting));
    }
    end("select", object, json);
}

void Entities::add_schedule(const std::string &name, bool offered)
{
    const std::string setting = std::to_string(SETTING_SCHEDULED_CAPTURE);
    const std::string object = "setting_" + setting + "_time";
    Json json = begin(object, name, offered);
    json.member("entity_category", "config").member("min", SCHEDULE_SIZE_MIN).member("max", SCHEDULE_SIZE_MAX);
    json.member("pattern", SCHEDULE_PATTERN).member("command_topic", m_topics.set(setting));
    json.member("command_template", ORDER).member("qos", 1);
    json.member("state_topic", m_topics.settings()).member("value_template", SCHEDULE_STATE);
    end("text", object, json);
}

void Entities::add_sensor(const SensorRow &row)
{
    const std::string status = std::to_string(row.status);
    const std::string object = "status_" + status;
    Json json = begin(object, row.name);
    if (row.kind != nullptr) {
        json.member("device_class", row.kind);
    }
    json.member("unit_of_measurement", row.unit).member("state_class", "measurement");
    json.member("state_topic", m_topics.status()).member("value_template", "{{ value_json['" + status + "'] }}");
    end("sensor", object, json);
}

void Entities::add_binary_sensor(const BinarySensorRow &row)
{
    Json json = begin(row.object, row.name);
    if (row.kind != nullptr) {
        json.member("device_class", row.kind);
    }
    json.member("state_topic", m_topics.status());
    json.member("value_template", "{{ 'ON' if " + std::string(row.condition) + " else 'OFF' }}");
    end("binary_sensor", row.object, json);
}

void Entities::add_link()
{
    Json json = begin("link", "Link");
    json.member("device_class", "connectivity").member("entity_category", "diagnostic").member("qos", 1);
    json.member("state_topic", m_topics.link()).member("value_template", "{{ 'ON' if value == 'up' else 'OFF' }}");
    end("binary_sensor", "link", json);
}

void Entities::add_button(const ButtonRow &row)
{
    Json json = begin(row.object, row.name);
    json.member("command_topic", m_topics.command()).member("payload_press", row.order).member("qos", 1);
    end("button", row.object, json);
}

} // namespace

std::vector<Document> discovery_documents(const std::string &prefix, const Topics &topics, const State &state)
{
    const Catalogue catalogue(state.model());
    const Availability availability(state.values(), state.model());
    Entities entities(prefix, topics, state);
    for (const SensorRow &row : SENSORS) {
        entities.add_sensor(row);
    }
    for (const BinarySensorRow &row : BINARY_SENSORS) {
        entities.add_binary_sensor(row);
    }
    entities.add_link();
    for (const ButtonRow &row : BUTTONS) {
        entities.add_button(row);
    }
    for (const auto &[setting, name] : names_of_settings(catalogue)) {
        if (!catalogue.options(setting).empty()) {
            entities.add_setting(availability, setting, name);
        }
        if (setting == SETTING_SCHEDULED_CAPTURE) { // its options are "off" alone; any time of day besides
            entities.add_schedule(name + " time", availability.has_choice(setting));
        }
    }
    return entities.take();
}

std::string birth_topic(const std::string &prefix)
{
    return prefix + "/status";
}

} // namespace zvmqtt
