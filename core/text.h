// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

// Copies as much as fits and terminates it; a size of 0 is never written to. The texts may overlap.
void copy_text(char *dst, size_t size, const char *src);

inline bool begins_with(const char *text, const char *beginning)
{
    while (*beginning && *text == *beginning) {
        text++;
        beginning++;
    }
    return *beginning == '\0';
}
