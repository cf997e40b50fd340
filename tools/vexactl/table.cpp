// SPDX-License-Identifier: MIT
#include "table.h"

#include "text.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr size_t gap = 2;
constexpr size_t least_width = 8; // a column that gives way keeps this much

// the width to take from: the greatest of those that wrap, else of all; nullptr when none can give way
size_t *greatest(const std::vector<table_column> &columns, std::vector<size_t> &widths)
{
    size_t *best = nullptr, *best_wrapping = nullptr;
    for (size_t i = 0; i < widths.size(); i++) {
        if (widths[i] > least_width && (!best || widths[i] > *best))
            best = &widths[i];
        if (widths[i] > least_width && columns[i].wraps && (!best_wrapping || widths[i] > *best_wrapping))
            best_wrapping = &widths[i];
    }
    return best_wrapping ? best_wrapping : best;
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
    for (size_t &w : widths)
        w = std::min(w, page_width);
    size_t total = std::accumulate(widths.begin(), widths.end(), indent + gap * (widths.size() - 1));
    for (; total > page_width; total--) { // one by one, so that long columns end up equal
        size_t *w = greatest(columns_, widths);
        if (!w)
            break;
        --*w;
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
