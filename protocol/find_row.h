// The row of a constant table that passes a test, for every table that is not looked up by index.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace zv {

// The first such row; null where there is none.
template <class Row, size_t Count, class Test>
constexpr const Row *find_row(const Row (&rows)[Count], Test test)
{
    const Row *row = std::find_if(std::begin(rows), std::end(rows), test);
    return row == std::end(rows) ? nullptr : row;
}

} // namespace zv
