// SPDX-License-Identifier: MIT
#include "output.h"

#include "cells.h"
#include "shell_words.h"
#include "text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

bool has_no_rows(const section &s)
{
    return json_is_array(s.body.document.get()) && json_array_size(s.body.document.get()) == 0;
}

int output::show(const answer &what)
{
    const json_t *document = what.document.get();
    switch (format_) {
    case output_format::json:
        return write(json_text(document, JSON_INDENT(2)));
    case output_format::kv:
        return write(what.pairs ? shell_pairs(document) : shell_lines(document));
    case output_format::table:
        break;
    }
    return write(for_people(what, 0));
}

int output::page(const std::string &title, const std::vector<section> &sections)
{
    if (!for_people()) {
        answer whole{json_ref{object({})}, {}};
        for (const section &s : sections)
            json_object_set(whole.document.get(), s.key, s.body.document.get());
        return show(whole);
    }
    std::string out = colours_.paint(look::heading, title) + "\n";
    for (const section &s : sections) {
        if (has_no_rows(s))
            continue;
        const std::string rule = colours_.rule(page_width - width(s.title) - 1);
        out += "\n" + colours_.paint(look::heading, s.title) + " " + colours_.paint(look::dim, rule) + "\n";
        out += for_people(s.body, 2);
    }
    return write(out);
}

int output::fail(int status, const std::string &message)
{
    flush(); // what was found stands before what is said about it
    if (format_ == output_format::json) {
        const json_ref error{object({{"error", text(message)}, {"status", number(status)}})};
        fputs(json_text(error.get(), JSON_COMPACT).c_str(), stderr);
    } else {
        fprintf(stderr, "vexactl: %s\n", visible(message).c_str());
    }
    return status;
}

int output::write(const std::string &text)
{
    if (fwrite(text.data(), 1, text.size(), stdout) != text.size())
        note_write_error();
    return write_error_ == 0 ? status_ok : status_unavailable;
}

int output::flush()
{
    if (fflush(stdout) != 0)
        note_write_error();
    return write_error_ == 0 ? status_ok : status_unavailable;
}

void output::note_write_error()
{
    if (write_error_ == 0)
        write_error_ = errno;
}

int output::finish()
{
    (void)flush();
    if (close(STDOUT_FILENO) < 0) // some file systems tell only now that nothing was stored
        note_write_error();
    if (write_error_ == 0)
        return status_ok;
    return fail(status_unavailable, std::string{"cannot write the answer: "} + strerror(write_error_));
}

std::string output::for_people(const answer &what, size_t indent) const
{
    const json_t *document = what.document.get();
    if (json_is_array(document))
        return rows(what, indent);
    if (json_is_object(document))
        return record(what, indent);
    return std::string(indent, ' ') + scalar_text(document) + "\n";
}

std::string output::record(const answer &what, size_t indent) const
{
    std::vector<std::vector<cell>> entries;
    for (const column &c : columns_of(what, what.document.get())) {
        const json_t *value = json_object_get(what.document.get(), c.key);
        entries.push_back({{c.title, look::label}, cell_of(value, c.as, colours_)});
    }
    const size_t columns = what.side_by_side ? 2 : 1;
    const size_t height = (entries.size() + columns - 1) / columns;
    std::vector<table_column> places;
    for (size_t i = 0; i < columns; i++)
        places.insert(places.end(), {{}, {"", false, true}});
    table lines{std::move(places)};
    for (size_t y = 0; y < height; y++) {
        std::vector<cell> cells;
        for (size_t i = y; i < entries.size(); i += height)
            cells.insert(cells.end(), entries[i].begin(), entries[i].end());
        lines.row(std::move(cells));
    }
    return lines.render(colours_, indent);
}

// The rows go down the first column of the page, then down the next.
std::string output::grid(const answer &what, size_t indent) const
{
    const json_t *list = what.document.get();
    const size_t count = json_array_size(list);
    std::vector<cell> entries;
    size_t widest = 1;
    for (size_t i = 0; i < count; i++) {
        const json_t *item = json_array_get(list, i);
        const cell name = cell_of(json_object_get(item, what.columns[0].key), kind::text, colours_);
        const bool on = json_is_true(json_object_get(item, what.columns[1].key));
        entries.push_back({colours_.mark(on) + " " + name.text, on ? look::good : look::dim});
        widest = std::max(widest, width(entries.back().text));
    }
    constexpr size_t gap = 2;
    const size_t columns = std::max<size_t>(1, (page_width - indent + gap) / (widest + gap));
    const size_t height = (count + columns - 1) / columns;
    table lines{std::vector<table_column>(columns)};
    for (size_t y = 0; y < height; y++) {
        std::vector<cell> cells;
        for (size_t i = y; i < count; i += height)
            cells.push_back(entries[i]);
        lines.row(std::move(cells));
    }
    return lines.render(colours_, indent);
}

std::string output::rows(const answer &what, size_t indent) const
{
    const json_t *list = what.document.get();
    if (json_array_size(list) == 0)
        return *what.when_empty ? std::string(indent, ' ') + colours_.paint(look::dim, what.when_empty) + "\n" : "";
    if (what.side_by_side)
        return grid(what, indent);
    const std::vector<column> columns = columns_of(what, json_array_get(list, 0));
    std::vector<table_column> headings;
    headings.reserve(columns.size());
    for (const column &c : columns)
        headings.push_back({upper_case(c.title), c.as == kind::number || c.as == kind::bytes, c.wraps});
    table lines{std::move(headings)};
    for (size_t i = 0; i < json_array_size(list); i++) {
        const json_t *item = json_array_get(list, i);
        std::vector<cell> cells;
        cells.reserve(columns.size());
        look row_look = look::plain;
        for (const column &c : columns) {
            cells.push_back(cell_of(json_object_get(item, c.key), c.as, colours_));
            if (c.as == kind::change)
                row_look = cells.back().as;
        }
        if (row_look != look::plain)
            for (cell &c : cells)
                c.as = row_look;
        lines.row(std::move(cells));
    }
    return lines.render(colours_, indent);
}
