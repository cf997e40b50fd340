// SPDX-License-Identifier: MIT
#pragma once

#include "colour.h"

#include <string>
#include <vector>

constexpr size_t page_width = 80;

struct cell {
    std::string text; // visible
    look as = look::plain;
};

struct table_column {
    std::string title;
    bool right = false; // aligned to the right
    bool wraps = false; // gives way first when the table is too wide
};

// Aligned columns within the page: what is too long goes on in the next line of its column.
class table {
public:
    explicit table(std::vector<table_column> columns) : columns_{std::move(columns)} {}
    void row(std::vector<cell> cells) { rows_.push_back(std::move(cells)); }

    // lines, each with its line feed; the heading only when a column has a title
    std::string render(const palette &colours, size_t indent) const;

private:
    std::vector<size_t> fitted_widths(size_t indent) const;
    std::string render_row(const std::vector<cell> &cells, const std::vector<size_t> &widths, const palette &colours,
                           size_t indent) const;

    std::vector<table_column> columns_;
    std::vector<std::vector<cell>> rows_;
};
