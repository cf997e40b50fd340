// SPDX-License-Identifier: MIT
#include "cells.h"

#include "text.h"

#include <algorithm>

namespace {

std::string words_text(const json_t *list)
{
    std::string text;
    for (size_t i = 0; i < json_array_size(list); i++)
        text += (i ? " " : "") + scalar_text(json_array_get(list, i));
    return text;
}

// how people see the kinds of a change
constexpr struct {
    const char *word, *mark;
    look as;
} changes[] = {{"added", "+", look::good}, {"removed", "-", look::bad}, {"changed", "~", look::changed}};

cell change_cell(const json_t *value)
{
    for (const auto &c : changes)
        if (bytes_of(value) == c.word)
            return {c.mark, c.as};
    return {scalar_text(value)};
}

std::string bytes_text(json_int_t count)
{
    static constexpr const char *units[] = {"B", "kB", "MB", "GB", "TB", "PB", "EB"};
    auto amount = static_cast<double>(count);
    size_t unit = 0;
    for (; amount >= 999.95 && unit + 1 < std::size(units); unit++)
        amount /= 1000;
    return format(unit ? "%.1f %s" : "%.0f %s", amount, units[unit]);
}

// Below 80 something is wrong.
cell bar_cell(json_int_t percent, const palette &colours)
{
    const look as = percent >= 80 ? look::good : percent >= 50 ? look::changed : look::bad;
    return {colours.bar(static_cast<size_t>(percent) * 8 / 100, 8) + format(" %3d", int(percent)), as};
}

// what stands for the columns of an answer that names none
std::vector<column> own_columns(const json_t *object)
{
    std::vector<column> columns;
    const char *key = nullptr;
    json_t *value = nullptr;
    json_object_foreach(const_cast<json_t *>(object), key, value)
        columns.push_back({key, key, json_is_number(value) ? kind::number : kind::text, json_is_string(value)});
    return columns;
}

} // namespace

std::string scalar_text(const json_t *value)
{
    if (!value || json_is_null(value))
        return "-";
    if (json_is_string(value))
        return visible(bytes_of(value));
    if (json_is_boolean(value))
        return json_is_true(value) ? "yes" : "no";
    if (json_is_array(value))
        return words_text(value);
    std::string text = json_text(value, JSON_COMPACT);
    text.pop_back();
    return text;
}

cell cell_of(const json_t *value, kind as, const palette &colours)
{
    if (as == kind::on_off && json_is_boolean(value)) {
        const bool on = json_is_true(value);
        return {colours.mark(on) + (on ? " on" : " off"), on ? look::good : look::dim};
    }
    if (as == kind::bytes && json_is_integer(value))
        return {bytes_text(json_integer_value(value))};
    if (as == kind::bar && json_is_integer(value))
        return bar_cell(std::clamp<json_int_t>(json_integer_value(value), 0, 100), colours);
    if (as == kind::change && json_is_string(value))
        return change_cell(value);
    return {scalar_text(value), value && !json_is_null(value) ? look::plain : look::dim};
}

std::vector<column> columns_of(const answer &what, const json_t *object)
{
    return what.columns.empty() ? own_columns(object) : std::vector<column>{what.columns.begin(), what.columns.end()};
}
