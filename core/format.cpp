// SPDX-License-Identifier: MIT
#include "core/owner.h"

#include <cstdarg>
#include <cstring>
#include <libvexa.h>

// Most texts are short: they are formatted once, and copied.
extern "C" char *malloc_vprintf(const char *fmt, va_list args)
{
    char brief[256];
    va_list again;
    va_copy(again, args);
    const int length = vsnprintf(brief, sizeof brief, fmt, args);
    const size_t size = size_t(length) + 1;
    unique_text text{length < 0 ? nullptr : static_cast<char *>(malloc(size))};
    if (text && size <= sizeof brief)
        memcpy(text.get(), brief, size);
    else if (text && vsnprintf(text.get(), size, fmt, again) != length)
        text.reset();
    va_end(again);
    return text.release();
}

extern "C" char *malloc_printf(const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    char *text = malloc_vprintf(fmt, args);
    va_end(args);
    return text;
}
