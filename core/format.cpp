// SPDX-License-Identifier: MIT
#include "core/owner.h"

#include <cstdarg>
#include <libvexa.h>

extern "C" char *malloc_vprintf(const char *fmt, va_list args)
{
    va_list measured;
    va_copy(measured, args);
    const int length = vsnprintf(nullptr, 0, fmt, measured);
    va_end(measured);
    if (length < 0)
        return nullptr;
    const size_t size = size_t(length) + 1;
    unique_text text{static_cast<char *>(malloc(size))};
    if (!text || vsnprintf(text.get(), size, fmt, args) != length)
        return nullptr;
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
