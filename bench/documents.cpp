// A poll's documents, into a caller's stream: the library's beside other ways to write the same text.
#include "records.h"
#include "status_values.h"
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
}

void table(std::stringstream &stream, const all_status_settings_t &record)
{
    static const TableWriter writer;
    writer(stream, record);
}

void rapid(std::stringstream &stream, const all_status_settings_t &record)
{
    rapidjson::StringBuffer text;
    rapidjson::Writer writer(text);
    writer.StartObject();
    writer.Key("status");
    writer.StartObject();
    for (const zv::StatusField &row : zv::status_fields) {
        read_status(record.bytes, row, [&](auto value) {
            char key[10];
            writer.Key(key, static_cast<rapidjson::SizeType>(std::to_chars(key, std::end(key), row.id).ptr - key));
            if constexpr (std::is_same_v<decltype(value), int>) {
                writer.Int(value);
            } else if constexpr (std::is_arithmetic_v<decltype(value)>) {
                writer.Uint64(value);
            } else {
                writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
            }
        });
    }
    writer.EndObject();
    writer.EndObject();
    stream.write(text.GetString(), static_cast<std::streamsize>(text.GetSize()));
}

void nlohmann_json(std::stringstream &stream, const all_status_settings_t &record)
{
    nlohmann::ordered_json document;
    nlohmann::ordered_json &status = document["status"];
    for (const zv::StatusField &row : zv::status_fields) {
        read_status(record.bytes, row, [&](auto value) { status[std::to_string(row.id)] = value; });
    }
    stream << document;
}

void members(std::stringstream &stream, const all_status_settings_t &record)
{
    stream << "\"status\":{\n";
    const char *separator = "";
    for (const zv::StatusField &row : zv::status_fields) {
        read_status(record.bytes, row, [&](auto value) {
            stream << separator << '"' << uint32_t{row.id} << "\":";
            if constexpr (std::is_arithmetic_v<decltype(value)>) {
                stream << value;
            } else {
                stream << '"' << value << '"';
            }
            separator = ",";
        });
    }
    stream << '}';
}

using Writer = void (*)(std::stringstream &, const all_status_settings_t &);

void write_documents(benchmark::State &state, Writer write)
{
    Rotation rotation;
    std::stringstream stream;
    for (auto _ : state) {
        stream.seekp(0);
        write(stream, rotation.next());
    }
}

BENCHMARK_CAPTURE(write_documents, library, library)->Name("status_document/library");
BENCHMARK_CAPTURE(write_documents, table, table)->Name("status_document/table");
BENCHMARK_CAPTURE(write_documents, rapidjson, rapid)->Name("status_document/rapidjson");
BENCHMARK_CAPTURE(write_documents, nlohmann, nlohmann_json)->Name("status_document/nlohmann-json");
BENCHMARK_CAPTURE(write_documents, ostream, members)->Name("status_document/ostream");

} // namespace
