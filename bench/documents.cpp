// A poll's two documents, status and settings, into a caller's stream: the library's beside other ways to write them.
#include "records.h"
#include "table_writer.h"

#include <benchmark/benchmark.h>
#include <charconv>
#include <nlohmann/json.hpp>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace {

using namespace bench;

void library(std::stringstream &stream, const all_status_settings_t &record)
{
    camera_status_serialize_status_to_json(stream, &status_of(record), MODEL);
    camera_settings_serialize_to_json(stream, &settings_of(record), &status_of(record), &system_settings_of(record),
                                      MODEL);
}

void table(std::stringstream &stream, const all_status_settings_t &record)
{
    static const TableWriter writer;
    writer.write(stream, record);
}

class RapidJson {
  public:
    explicit RapidJson(std::stringstream &stream) : m_stream(stream), m_writer(m_text) { m_writer.StartObject(); }

    void begin(const char *name)
    {
        m_writer.Key(name);
        m_writer.StartObject();
    }
    void member(uint32_t id, auto value)
    {
        char key[10];
        m_writer.Key(key, static_cast<rapidjson::SizeType>(std::to_chars(key, std::end(key), id).ptr - key));
        if constexpr (std::is_same_v<decltype(value), int>) {
            m_writer.Int(value);
        } else if constexpr (std::is_arithmetic_v<decltype(value)>) {
            m_writer.Uint64(value);
        } else {
            m_writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
        }
    }
    void end() { m_writer.EndObject(); }
    void finish()
    {
        m_writer.EndObject();
        m_stream.write(m_text.GetString(), static_cast<std::streamsize>(m_text.GetSize()));
    }

  private:
    std::stringstream &m_stream;
    rapidjson::StringBuffer m_text;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer;
};

class NlohmannJson {
  public:
    explicit NlohmannJson(std::stringstream &stream) : m_stream(stream) {}

    void begin(const char *name) { m_object = &m_document[name]; }
    void member(uint32_t id, auto value) { (*m_object)[std::to_string(id)] = value; }
    void end() {}
    void finish() { m_stream << m_document; }

  private:
    std::stringstream &m_stream;
    nlohmann::ordered_json m_document;
    nlohmann::ordered_json *m_object = nullptr;
};

class Insertion {
  public:
    explicit Insertion(std::stringstream &stream) : m_stream(stream) {}

    void begin(const char *name)
    {
        m_stream << '"' << name << "\":{";
        m_separator = "";
    }
    void member(uint32_t id, auto value)
    {
        m_stream << m_separator << '"' << id << "\":";
        if constexpr (std::is_arithmetic_v<decltype(value)>) {
            m_stream << value;
        } else {
            m_stream << '"' << value << '"';
        }
        m_separator = ",";
    }
    void end() { m_stream << '}'; }
    void finish() {}

  private:
    std::stringstream &m_stream;
    const char *m_separator = "";
};

template <class Writer>
void peer(std::stringstream &stream, const all_status_settings_t &record)
{
    Writer writer(stream);
    writer.begin("status");
    for (const zv::StatusField &row : zv::status_fields) {
        read_status(record.bytes, row, [&](auto value) { writer.member(row.id, value); });
    }
    writer.end();
    writer.begin("settings");
    for (const settings_field_t &row : settings_rows()) {
        writer.member(row.id, read_setting(record, row));
    }
    writer.end();
    writer.finish();
}

using Write = void (*)(std::stringstream &, const all_status_settings_t &);

// The text of the documents without what some peers put around or between them.
std::string text_of(Write write, const all_status_settings_t &record)
{
    std::stringstream stream;
    write(stream, record);
    std::string text = stream.str();
    std::erase_if(text,
                  [](char character) { return std::string_view("{},\n").find(character) != std::string_view::npos; });
    return text;
}

void write_documents(benchmark::State &state, Write write)
{
    for (const all_status_settings_t &record : records()) {
        if (text_of(write, record) != text_of(table, record)) {
            state.SkipWithError("not the same text");
            return;
        }
    }
    Rotation rotation;
    std::stringstream stream;
    for (auto _ : state) {
        stream.seekp(0);
        write(stream, rotation.next());
    }
}

BENCHMARK_CAPTURE(write_documents, library, library)->Name("documents/library");
BENCHMARK_CAPTURE(write_documents, table, table)->Name("documents/table");
BENCHMARK_CAPTURE(write_documents, rapidjson, peer<RapidJson>)->Name("documents/rapidjson");
BENCHMARK_CAPTURE(write_documents, nlohmann, peer<NlohmannJson>)->Name("documents/nlohmann-json");
BENCHMARK_CAPTURE(write_documents, ostream, peer<Insertion>)->Name("documents/ostream");

} // namespace
