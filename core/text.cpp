// SPDX-License-Identifier: MIT
#include "core/text.h"

#include "core/ascii.h"

#include <cstring>
#include <libvexa.h>

void copy_text(char *dst, size_t size, const char *src)
{
    if (size == 0)
        return;
    const size_t length = strnlen(src, size - 1);
    memmove(dst, src, length);
    dst[length] = '\0';
}

extern "C" void trim_trailing(char *s, int len)
{
    while (len > 0 && is_space(s[len - 1]))
        s[--len] = '\0';
}

extern "C" void strncpy_trim(char *dst, size_t size, const char *src)
{
    if (size == 0)
        return;
    dst[0] = '\0';
    if (!src)
        return;
    while (is_space(*src))
        src++;
    copy_text(dst, size, src); // blanks at the end stay: callers compare with texts stored that way
}
