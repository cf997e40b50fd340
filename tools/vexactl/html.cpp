// SPDX-License-Identifier: MIT
#include "html.h"

#include "cells.h"
#include "plot.h"

namespace {

constexpr palette marks{.coloured = false, .unicode = true};

constexpr char head[] = R"(<meta name="viewport" content="width=device-width, initial-scale=1">
<style>
:root { color-scheme: light dark; --ink: #1c2430; --dim: #6a7483; --paper: #fdfdfc; --line: #d9dde3; --bar: #2f7d6d; }
@media (prefers-color-scheme: dark) {
  :root { --ink: #e4e8ee; --dim: #98a2b0; --paper: #14181d; --line: #333b45; --bar: #58b8a3; }
}
body { margin: 2rem auto; max-width: 60rem; padding: 0 1rem; font: 15px/1.5 system-ui, sans-serif;
       color: var(--ink); background: var(--paper); }
h1 { font-size: 1.5rem; } h2 { font-size: 1.05rem; border-bottom: 1px solid var(--line); margin-top: 2rem; }
table { border-collapse: collapse; } td, th { text-align: left; padding: 1px 1.2em 1px 0; vertical-align: top; }
th { color: var(--dim); font-weight: normal; } td.number, th.number { text-align: right; }
svg { display: block; width: 100%; max-width: 44rem; margin: .6rem 0; font-size: 12px; }
svg text { fill: var(--ink); } svg rect { fill: var(--bar); } svg rect.whole { fill: var(--line); }
</style>
)";

std::string element(const char *tag, const column &c, const std::string &text)
{
    const bool number = c.as == kind::number || c.as == kind::bytes;
    return std::string{"<"} + tag + (number ? " class=\"number\">" : ">") + escaped(text) + "</" + tag + ">";
}

std::string record_lines(const answer &what)
{
    std::string lines;
    for (const column &c : columns_of(what, what.document.get())) {
        const json_t *value = json_object_get(what.document.get(), c.key);
        lines += "<tr>" + element("th", {c.key, c.title}, c.title) +
                 element("td", {c.key, c.title}, cell_of(value, c.as, marks).text) + "</tr>\n";
    }
    return lines;
}

std::string row_lines(const answer &what)
{
    const json_t *rows = what.document.get();
    const std::vector<column> columns = columns_of(what, json_array_get(rows, 0));
    std::string lines = "<tr>";
    for (const column &c : columns)
        lines += element("th", c, c.title);
    lines += "</tr>\n";
    for (size_t i = 0; i < json_array_size(rows); i++) {
        lines += "<tr>";
        for (const column &c : columns)
            lines += element("td", c, cell_of(json_object_get(json_array_get(rows, i), c.key), c.as, marks).text);
        lines += "</tr>\n";
    }
    return lines;
}

std::string body_of(const section &s)
{
    const json_t *document = s.body.document.get();
    const std::string lines = json_is_array(document) ? row_lines(s.body) : record_lines(s.body);
    return draw(s.picture, document) + "<table>\n" + lines + "</table>\n";
}

} // namespace

std::string html_page(const std::string &title, const std::vector<section> &sections)
{
    std::string page = "<!DOCTYPE html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n<title>" + escaped(title) +
                       "</title>\n" + head + "<h1>" + escaped(title) + "</h1>\n";
    for (const section &s : sections)
        if (!has_no_rows(s))
            page += std::string{"<section id=\""} + s.key + "\">\n<h2>" + escaped(s.title) + "</h2>\n" + body_of(s) +
                    "</section>\n";
    return page + "</html>\n";
}
