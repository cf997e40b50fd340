// SPDX-License-Identifier: MIT
#include "core/format.h"
#include "core/log.h"

extern "C" int vexa_snprintf(const char *module, const char *trunc_msg, char *buf, size_t size, const char *fmt, ...)
{
    const char *const log_tag = module;
    if (size == 0) {
        if (trunc_msg)
            log_err("%s\n", trunc_msg);
        return 0;
    }
    va_list args;
    va_start(args, fmt);
    const int length = vsnprintf(buf, size, fmt, args);
    va_end(args);
    if (length < 0) {
        log_err("%s failure: %d\n", __func__, length);
        return 0;
    }
    if (!trunc_msg || size_t(length) < size)
        return length;
    log_err("%s\n", trunc_msg);
    return int(size - 1);
}

bool format_whole(char *out, size_t size, const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    const int length = vsnprintf(out, size, fmt, args);
    va_end(args);
    const bool whole = length >= 0 && size_t(length) < size;
    if (!whole && size > 0)
        out[0] = '\0';
    return whole;
}
