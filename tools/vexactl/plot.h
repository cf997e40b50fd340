// SPDX-License-Identifier: MIT
#pragma once

#include "document.h"

#include <string>

// A picture of a section's document.
struct plot {
    enum class shape {
        none,
        bars,   // a bar for each row: `label`, and `value` of `whole`
        counts, // a bar for each value of `label`, which is in units of `value`, as long as it is frequent
        share,  // of a record: what `value` leaves of `label`
    };
    shape as = shape::none;
    const char *label = nullptr;
    const char *value = nullptr;
    double whole = 0;
};

// inline SVG; empty when there is nothing to draw
std::string draw(const plot &what, const json_t *document);

// with the characters that mean something in a page replaced
std::string escaped(std::string_view visible);
