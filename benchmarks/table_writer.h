// The peer that the poll's work is compared with: table-driven, with known keys; how it writes a number is the
// parameter (numbers.h).
#pragma once

#include "numbers.h"
#include "records.h"
#include "settings_values.h"
#include "status_values.h"

#include <sstream>
#include <string>
#include <vector>

namespace bench {

template <class Number>
class TableWriter {
  public:
    TableWriter()
    {
        for (const zv::StatusField &row : zv::published_statuses()) {
            m_status.push_back({Key(row.id), row});
        }
        for (const SettingRow &row : settings_rows()) {
            m_settings.push_back({Key(row.field.id), row});
        }
    }

    // One block into the stream for each document.
    void write(std::stringstream &stream, const all_status_settings_t &record) const
    {
        char buffer[BUFFER_SIZE];
        char *next = append(buffer, "\"status\":{\n");
        for (const auto &row : m_status) {
            next = status_member(next, row, record);
            *next++ = ',';
        }
        next[-1] = '}';
        stream.write(buffer, next - buffer);

        next = append(buffer, "\"settings\":{");
        for (const auto &row : m_settings) {
            next = Number::write(row.key.append(next), read_setting(record, row.field));
            *next++ = ',';
        }
        next[-1] = '}';
        stream.write(buffer, next - buffer);
    }

    // The status members whose text is not the cache's, in one block; returns their number.
    int32_t write_changes(std::stringstream &stream, const all_status_settings_t &record,
                          std::vector<std::string> &cache) const
    {
        char buffer[BUFFER_SIZE];
        char *next = buffer;
        int32_t count = 0;
        for (const auto &row : m_status) {
            char *end = status_member(next, row, record);
            const auto size = static_cast<size_t>(end - next);
            std::string &cached = cache[row.field.id];
            if (size != cached.size() || memcmp(next, cached.data(), size) != 0) {
                cached.assign(next, size);
                ++count;
                *end++ = ',';
                next = end;
            }
        }
        write_members(stream, buffer, next);
        return count;
    }

    // The settings whose option is not the one of before, in one block; returns their number.
    int32_t write_settings_changes(std::stringstream &stream, const all_status_settings_t &record,
                                   const all_status_settings_t &previous) const
    {
        char buffer[BUFFER_SIZE];
        char *next = buffer;
        int32_t count = 0;
        for (const auto &row : m_settings) {
            const uint32_t option = read_setting(record, row.field);
            if (option != read_setting(previous, row.field)) {
                next = Number::write(row.key.append(next), option);
                *next++ = ',';
                ++count;
            }
        }
        write_members(stream, buffer, next);
        return count;
    }

  private:
    static constexpr size_t BUFFER_SIZE = 4096;

    // `"id":`, copied as a block of fixed size.
    struct Key {
        char text[8] = {};
        size_t size;

        explicit Key(uint32_t id)
        {
            char *next = text;
            *next++ = '"';
            next = std::to_chars(next, std::end(text), id).ptr;
            *next++ = '"';
            *next++ = ':';
            size = static_cast<size_t>(next - text);
        }
        char *append(char *next) const
        {
            memcpy(next, text, sizeof text);
            return next + size;
        }
    };

    template <class Field>
    struct Row {
        Key key;
        Field field;
    };

    static char *append(char *next, std::string_view text)
    {
        memcpy(next, text.data(), text.size());
        return next + text.size();
    }

    // Without the comma after the last one.
    static void write_members(std::stringstream &stream, const char *begin, const char *end)
    {
        if (end != begin) {
            stream.write(begin, end - begin - 1);
        }
    }

    static char *status_member(char *next, const Row<zv::StatusField> &row, const all_status_settings_t &record)
    {
        next = row.key.append(next);
        read_status(record.bytes, row.field, [&](auto value) {
            if constexpr (std::is_arithmetic_v<decltype(value)>) {
                next = Number::write(next, value);
            } else {
                *next++ = '"';
                next = append(next, value);
                *next++ = '"';
            }
        });
        return next;
    }

    std::vector<Row<zv::StatusField>> m_status;
    std::vector<Row<SettingRow>> m_settings;
};

template <class Number>
const TableWriter<Number> &table_writer()
{
    static const TableWriter<Number> writer;
    return writer;
}

} // namespace bench
