// The peer that the documents are compared with: a table-driven writer with known keys and std::to_chars.
#pragma once

#include "records.h"
#include "settings_values.h"
#include "status_values.h"

#include <charconv>
#include <string>
#include <vector>

namespace bench {

class TableWriter {
  public:
    TableWriter()
    {
        for (const zv::StatusField &row : zv::status_fields) {
            if (row.output != zv::StatusOutput::NONE) {
                m_status.push_back({Key(row.id), row});
            }
        }
        for (const settings_field_t &row : settings_rows()) {
            m_settings.push_back({Key(row.id), row});
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
            const uint32_t value = setting_value(record, row.field);
            next = number(row.key.append(next), m_options.id(row.field.id, value, flat_mode_of(record)));
            *next++ = ',';
        }
        next[-1] = '}';
        stream.write(buffer, next - buffer);
    }

    // How many members of the status differ from the cache.
    int32_t compare(const all_status_settings_t &record, std::vector<std::string> &cache) const
    {
        char buffer[BUFFER_SIZE];
        int32_t count = 0;
        for (const auto &row : m_status) {
            const auto size = static_cast<size_t>(status_member(buffer, row, record) - buffer);
            std::string &cached = cache[row.field.id];
            if (size != cached.size() || memcmp(buffer, cached.data(), size) != 0) {
                cached.assign(buffer, size);
                ++count;
            }
        }
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

    static char *number(char *next, auto value) { return std::to_chars(next, next + 20, value).ptr; }

    static char *status_member(char *next, const Row<zv::StatusField> &row, const all_status_settings_t &record)
    {
        next = row.key.append(next);
        read_status(record.bytes, row.field, [&](auto value) {
            if constexpr (std::is_arithmetic_v<decltype(value)>) {
                next = number(next, value);
            } else {
                *next++ = '"';
                next = append(next, value);
                *next++ = '"';
            }
        });
        return next;
    }

    std::vector<Row<zv::StatusField>> m_status;
    std::vector<Row<settings_field_t>> m_settings;
    const OptionTables &m_options = option_tables();
};

} // namespace bench
