// SPDX-License-Identifier: MIT
#include "plot.h"

#include "cells.h"
#include "text.h"

#include <algorithm>
#include <map>

namespace {

constexpr double row_height = 22, label_width = 190, bar_width = 360, value_width = 60;

struct bar {
    std::string label;
    double share; // 0 to 1
    std::string value;
};

std::vector<bar> bars_of_rows(const plot &what, const json_t *rows)
{
    std::vector<bar> bars;
    for (size_t i = 0; i < json_array_size(rows); i++) {
        const json_t *row = json_array_get(rows, i);
        const json_t *value = json_object_get(row, what.value);
        if (json_is_number(value) && json_number_value(value) >= 0)
            bars.push_back({scalar_text(json_object_get(row, what.label)), json_number_value(value) / what.whole,
                            scalar_text(value)});
    }
    return bars;
}

std::vector<bar> bars_of_counts(const plot &what, const json_t *rows)
{
    std::map<json_int_t, int> counts;
    int most = 0;
    for (size_t i = 0; i < json_array_size(rows); i++)
        if (const json_t *value = json_object_get(json_array_get(rows, i), what.label); json_is_integer(value))
            most = std::max(most, ++counts[json_integer_value(value)]);
    std::vector<bar> bars;
    bars.reserve(counts.size());
    for (const auto &[value, count] : counts)
        bars.push_back({std::to_string(value) + what.value, double(count) / most, std::to_string(count)});
    return bars;
}

std::vector<bar> bar_of_share(const plot &what, const json_t *record)
{
    const double whole = json_number_value(json_object_get(record, what.label));
    const double left = json_number_value(json_object_get(record, what.value));
    if (whole <= 0)
        return {};
    const double used = std::clamp(1 - left / whole, 0.0, 1.0);
    return {{"in use", used, format("%.0f %%", 100 * used)}};
}

std::vector<bar> bars_of(const plot &what, const json_t *document)
{
    switch (what.as) {
    case plot::shape::bars:
        return bars_of_rows(what, document);
    case plot::shape::counts:
        return bars_of_counts(what, document);
    case plot::shape::share:
        return bar_of_share(what, document);
    case plot::shape::none:
        break;
    }
    return {};
}

} // namespace

std::string draw(const plot &what, const json_t *document)
{
    const std::vector<bar> bars = bars_of(what, document);
    if (bars.empty())
        return "";
    const double width = label_width + bar_width + value_width;
    std::string svg = format("<svg viewBox=\"0 0 %.0f %.0f\" role=\"img\">\n", width, row_height * double(bars.size()));
    double y = 0;
    for (const bar &b : bars) {
        svg += format("<text x=\"%.0f\" y=\"%.0f\" text-anchor=\"end\">", label_width - 8, y + 15) + escaped(b.label) +
               format("</text><rect class=\"whole\" x=\"%.0f\" y=\"%.0f\" width=\"%.0f\" height=\"14\"/>", label_width,
                      y + 4, bar_width) +
               format("<rect x=\"%.0f\" y=\"%.0f\" width=\"%.1f\" height=\"14\"/>", label_width, y + 4,
                      bar_width * std::min(b.share, 1.0)) +
               format("<text x=\"%.0f\" y=\"%.0f\">", label_width + bar_width + 8, y + 15) + escaped(b.value) +
               "</text>\n";
        y += row_height;
    }
    return svg + "</svg>\n";
}

std::string escaped(std::string_view visible)
{
    std::string out;
    for (const char c : visible)
        switch (c) {
        case '<':
            out += "&lt;";
            break;
        case '&':
            out += "&amp;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += c;
        }
    return out;
}
