// The peer that the documents are held against: a table-driven writer with known keys and std::to_chars.
#pragma once

#include "records.h"
#include "status_values.h"

#include <charconv>
#include <string>
#include <vector>

namespace bench {

// Keys worked out before, std::to_chars, one block into the stream.
class TableWriter {
  public:
    TableWriter()
    {
        for (const zv::StatusField &row : zv::status_fields) {
            if (row.output != zv::StatusOutput::NONE) {
                m_rows.push_back({",\"" + std::to_string(row.id) + "\":", row});
            }
        }
        m_rows.front().key.erase(0, 1);
    }

    void operator()(std::stringstream &stream, const all_status_settings_t &record) const
    {
        char buffer[BUFFER_SIZE];
        char *next = append(buffer, "\"status\":{\n");
        for (const Row &row : m_rows) {
            next = member(next, row, record);
        }
        *next++ = '}';
        stream.write(buffer, next - buffer);
    }

    // How many members differ from the cache.
    int compare(const all_status_settings_t &record, std::vector<std::string> &cache) const
    {
        char buffer[BUFFER_SIZE];
        int count = 0;
        for (const Row &row : m_rows) {
            const auto size = static_cast<size_t>(member(buffer, row, record) - buffer);
            std::string &cached = cache[row.field.id];
            if (size != cached.size() || memcmp(buffer, cached.data(), size) != 0) {
                cached.assign(buffer, size);
                ++count;
            }
        }
        return count;
    }

  private:
    struct Row {
        std::string key;
        zv::StatusField field;
    };

    static constexpr size_t BUFFER_SIZE = 4096;

    static char *member(char *next, const Row &row, const all_status_settings_t &record)
    {
        next = append(next, row.key);
        read_status(record.bytes, row.field, [&](auto value) {
            if constexpr (std::is_arithmetic_v<decltype(value)>) {
                next = std::to_chars(next, next + 20, value).ptr;
            } else {
                *next++ = '"';
                next = append(next, value);
                *next++ = '"';
            }
        });
        return next;
    }

    static char *append(char *next, std::string_view text)
    {
        memcpy(next, text.data(), text.size());
        return next + text.size();
    }

    std::vector<Row> m_rows;
};

} // namespace bench
