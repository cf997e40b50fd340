// SPDX-License-Identifier: MIT
#pragma once

#include <string>

enum class look { plain, heading, label, dim, good, bad, changed };

// Colours and marks that the terminal can show.
struct palette {
    bool coloured = false;
    bool unicode = false; // the locale's character set is UTF-8

    std::string paint(look as, const std::string &text) const;
    std::string mark(bool on) const;
    std::string rule(size_t columns) const;
    std::string bar(size_t full, size_t columns) const;
};

// `when` is "auto", "always" or "never"; automatic is a terminal that does not ask for NO_COLOR
palette choose_palette(const std::string &when);
