// SPDX-License-Identifier: MIT
#include "table.h"

#include "text.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr size_t gap = 2;
constexpr size_t least_width = 8; // a column that gives way keeps this much

// the column to take from: the widest of those that wrap, else the widest at all
size_t widest(const std::vector<table_column> &columns, const std::vector<size_t> &widths)
{
    size_t best = 0;
    for (size_t i = 1; i < widths.size(); i++) {
        const bool prefer = columns[i].wraps && (!columns[best].wraps || widths[best] <= least_width);
        const bool same_kind = columns[i].wraps == columns[best].wraps;
        if (prefer || (same_kind && widths[i] > widths[best]))
            best = i;
    }
    return best;
}

void pad(std::string &line, size_t columns)
{
    line.append(columns, ' ');
}

} // namespace

std::vector<size_t> table::fitted_widths(size_t indent) const
{
    std::vector<size_t> widths;
    for (const table_column &c : columns_)
        widths.push_back(width(c.title));
    for (const auto &cells : rows_)
        for (size_t i = 0; i < cells.size(); i++)
            widths[i] = std::max(widths[i], width(cells[i].text));
    size_t total = std::accumulate(widths.begin(), widths.end(), indent + gap * (widths.size() - 1));
    while (total > page_width) {
        size_t &w = widths[widest(columns_, widths)];
        if (w <= least_width)
            break;
        const size_t less = std::min(total - page_width, w - least_width);
        w -= less;
        total -= less;
    }
    return widths;
}

std::string table::render_row(const std::vector<cell> &cells, const std::vector<size_t> &widths, const palette &colours,
                              size_t indent) const
{
    std::vector<std::vector<std::string>> parts;
    size_t height = 1;
    for (size_t i = 0; i < cells.size(); i++) {
        parts.push_back(wrap(cells[i].text, widths[i]));
        height = std::max(height, parts.back().size());
    }
    std::string out;
    for (size_t y = 0; y < height; y++) {
        size_t owed = indent; // blanks are written when something follows, so that no line ends in one
        for (size_t i = 0; i < cells.size(); i++) {
            const std::string part = y < parts[i].size() ? parts[i][y] : "";
            const size_t room = widths[i] - std::min(widths[i], width(part));
            if (!part.empty()) {
                pad(out, owed + (columns_[i].right ? room : 0));
                out += colours.paint(cells[i].as, part);
                owed = columns_[i].right ? gap : room + gap;
            } else {
                owed += room + gap;
            }
        }
        out += '\n';
    }
    return out;
}

std::string table::render(const palette &colours, size_t indent) const
{
    const std::vector<size_t> widths = fitted_widths(indent);
    std::string out;
    std::vector<cell> titles;
    for (const table_column &c : columns_)
        titles.push_back({c.title, look::heading});
    if (std::any_of(titles.begin(), titles.end(), [](const cell &c) { return !c.text.empty(); }))
        out += render_row(titles, widths, colours, indent);
    for (const auto &cells : rows_)
        out += render_row(cells, widths, colours, indent);
    return out;
}
