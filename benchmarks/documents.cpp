// A poll's two documents, status and settings, into a caller's stream: the library's beside other ways to write them,
// each at its best: with keys made in advance, and with its buffers kept from poll to poll.
#include "poll.h"
#include "table_writer.h"

#include <array>
#include <fmt/compile.h>
#include <nlohmann/json.hpp>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace {

using namespace bench;

constexpr int32_t WRITTEN = 1;

int32_t library(Poll &poll)
{
    const all_status_settings_t &record = *poll.record;
    camera_status_serialize_status_to_json(poll.stream, &status_of(record), MODEL);
    camera_settings_serialize_to_json(poll.stream, &settings_of(record), &status_of(record),
                                      &system_settings_of(record), MODEL);
    return WRITTEN;
}

template <class Number>
int32_t table(Poll &poll)
{
    table_writer<Number>().write(poll.stream, *poll.record);
    return WRITTEN;
}

// The ids as texts.
const std::string &key(uint32_t id)
{
    static const auto keys = [] {
        std::array<std::string, SETTINGS_ALL_FIELDS_COUNT> made;
        for (size_t i = 0; i < made.size(); ++i) {
            made[i] = std::to_string(i);
        }
        return made;
    }();
    return keys[id];
}

class RapidJson {
  public:
    void start(std::stringstream &)
    {
        m_text.Clear();
        m_writer.Reset(m_text);
        m_writer.StartObject();
    }
    void begin(const char *name)
    {
        m_writer.Key(name);
        m_writer.StartObject();
    }
    void member(uint32_t id, auto value)
    {
        m_writer.Key(key(id).data(), static_cast<rapidjson::SizeType>(key(id).size()));
        if constexpr (std::is_same_v<decltype(value), int>) {
            m_writer.Int(value);
        } else if constexpr (std::is_same_v<decltype(value), uint32_t>) {
            m_writer.Uint(value);
        } else if constexpr (std::is_arithmetic_v<decltype(value)>) {
            m_writer.Uint64(value);
        } else {
            m_writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
        }
    }
    void end() { m_writer.EndObject(); }
    void finish(std::stringstream &stream)
    {
        m_writer.EndObject();
        stream.write(m_text.GetString(), static_cast<std::streamsize>(m_text.GetSize()));
    }

  private:
    rapidjson::StringBuffer m_text;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer;
};

class NlohmannJson {
  public:
    void start(std::stringstream &) { m_document.clear(); }
    void begin(const char *name) { m_object = &m_document[name]; }
    void member(uint32_t id, auto value) { m_object->emplace(key(id), value); }
    void end() {}
    void finish(std::stringstream &stream) { stream << m_document; }

  private:
    nlohmann::ordered_json m_document;
    nlohmann::ordered_json *m_object = nullptr;
};

class Insertion {
  public:
    void start(std::stringstream &stream) { m_stream = &stream; }
    void begin(const char *name)
    {
        *m_stream << '"' << name << "\":{";
        m_separator = "";
    }
    void member(uint32_t id, auto value)
    {
        *m_stream << m_separator << '"' << id << "\":";
        if constexpr (std::is_arithmetic_v<decltype(value)>) {
            *m_stream << value;
        } else {
            *m_stream << '"' << value << '"';
        }
        m_separator = ",";
    }
    void end() { *m_stream << '}'; }
    void finish(std::stringstream &) {}

  private:
    std::stringstream *m_stream = nullptr;
    const char *m_separator = "";
};

class Fmt {
  public:
    void start(std::stringstream &) { m_next = m_buffer; }
    void begin(const char *name) { m_next = fmt::format_to(m_next, FMT_COMPILE("\"{}\":{{"), name); }
    void member(uint32_t id, auto value)
    {
        if constexpr (std::is_arithmetic_v<decltype(value)>) {
            m_next = fmt::format_to(m_next, FMT_COMPILE("\"{}\":{},"), key(id), value);
        } else {
            m_next = fmt::format_to(m_next, FMT_COMPILE("\"{}\":\"{}\","), key(id), value);
        }
    }
    void end() { m_next[-1] = '}'; }
    void finish(std::stringstream &stream) { stream.write(m_buffer, m_next - m_buffer); }

  private:
    char m_buffer[8192];
    char *m_next = m_buffer;
};

template <class Writer>
int32_t peer(Poll &poll)
{
    static Writer writer;
    writer.start(poll.stream);
    writer.begin("status");
    for (const zv::StatusField &row : zv::published_statuses()) {
        read_status(poll.record->bytes, row, [&](auto value) { writer.member(row.id, value); });
    }
    writer.end();
    writer.begin("settings");
    for (const SettingRow &row : settings_rows()) {
        writer.member(row.field.id, read_setting(*poll.record, row));
    }
    writer.end();
    writer.finish(poll.stream);
    return WRITTEN;
}

constexpr Worker workers[] = {
    {"documents", "library", library},
    {"documents", "to_chars_table", table<ToChars>},
    {"documents", "digit_table", table<DigitTable>},
    {"documents", "rapidjson", peer<RapidJson>},
    {"documents", "fmt", peer<Fmt>},
    {"documents", "ostream", peer<Insertion>},
    {"documents", "nlohmann_json", peer<NlohmannJson>},
};

const bool added = add_workers(workers);

} // namespace
