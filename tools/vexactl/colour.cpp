// SPDX-License-Identifier: MIT
#include "colour.h"

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>
#include <unistd.h>

namespace {

const char *sequence(look as)
{
    switch (as) {
    case look::heading:
        return "\033[1m";
    case look::label:
        return "\033[36m";
    case look::dim:
        return "\033[2m";
    case look::good:
        return "\033[32m";
    case look::bad:
        return "\033[31m";
    case look::changed:
        return "\033[33m";
    case look::plain:
        break;
    }
    return "";
}

bool is_set(const char *variable)
{
    const char *value = getenv(variable);
    return value && *value;
}

bool terminal_shows_colour()
{
    const char *terminal = getenv("TERM");
    return isatty(STDOUT_FILENO) && !is_set("NO_COLOR") && !(terminal && strcmp(terminal, "dumb") == 0);
}

// What the locale's character set is, before character classes are switched to those of UTF-8: text from outside
// is UTF-8 or bytes, whatever the user's locale.
bool locale_is_utf8()
{
    setlocale(LC_CTYPE, "");
    const bool utf8 = strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
    setlocale(LC_CTYPE, "C.UTF-8");
    return utf8;
}

} // namespace

std::string palette::paint(look as, const std::string &text) const
{
    const char *start = coloured && !text.empty() ? sequence(as) : "";
    return *start ? start + text + "\033[0m" : text;
}

std::string palette::mark(bool on) const
{
    if (unicode)
        return on ? "\u25cf" : "\u25cb"; // filled and empty circle
    return on ? "[x]" : "[ ]";
}

std::string palette::rule(size_t columns) const
{
    std::string line;
    for (size_t i = 0; i < columns; i++)
        line += unicode ? "\u2500" : "-";
    return line;
}

std::string palette::bar(size_t full, size_t columns) const
{
    std::string line;
    for (size_t i = 0; i < columns; i++)
        line += i < full ? unicode ? "\u2588" : "#" : unicode ? "\u2591" : "."; // full block, light shade
    return line;
}

palette choose_palette(const std::string &when)
{
    return {when == "always" || (when == "auto" && terminal_shows_colour()), locale_is_utf8()};
}
