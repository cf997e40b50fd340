// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

// touch_file() for a mark of the library's own: a link in its place is not followed.
int touch_mark(const char *path, mode_t mode);
