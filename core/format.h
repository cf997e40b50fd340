// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>

// Formats a path or a name that must not be cut: false when it does not fit, and then the text is empty.
bool format_whole(char *out, size_t size, const char *fmt, ...) VEXA_PRINTF(3, 4);
