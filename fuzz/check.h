// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

// What must hold for every input; a fuzzer reports the one that breaks it.
inline void check(bool holds)
{
    if (!holds)
        abort();
}
