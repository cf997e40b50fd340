// SPDX-License-Identifier: MIT
#include "tests/support/failing_memory.h"

#include <dlfcn.h>

namespace {

size_t good, bad, refused;

bool refuse()
{
    const bool turn = good == 0 && bad > 0;
    good -= good > 0;
    bad -= turn;
    refused += turn;
    return turn;
}

} // namespace

failing_memory::failing_memory(size_t after, size_t in_a_row)
{
    refused = 0;
    good = after;
    bad = in_a_row;
}

failing_memory::~failing_memory()
{
    bad = 0;
}

bool failing_memory::has_failed()
{
    return refused > 0;
}

// The library under test finds these before those of the C library or of a sanitizer.
extern "C" void *malloc(size_t size)
{
    static const auto next = reinterpret_cast<void *(*)(size_t)>(dlsym(RTLD_NEXT, "malloc"));
    return refuse() ? nullptr : next(size);
}

extern "C" void *calloc(size_t count, size_t size)
{
    static const auto next = reinterpret_cast<void *(*)(size_t, size_t)>(dlsym(RTLD_NEXT, "calloc"));
    return refuse() ? nullptr : next(count, size);
}
