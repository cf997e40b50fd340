// SPDX-License-Identifier: MIT
#include "core/text.h"

#include <cerrno>
#include <cstring>
#include <libvexa.h>
#include <unistd.h>

// Files that stand for a switch: by their text below "/proc", by being there elsewhere.

namespace {

bool is_kernel_switch(const char *path)
{
    return begins_with(path, "/proc/");
}

const char *word(bool value)
{
    return value ? "true" : "false";
}

} // namespace

extern "C" int system_is_xxx(const char *path, int def)
{
    if (access(path, R_OK) != 0)
        return def;
    char line[16];
    return !is_kernel_switch(path) || strcmp(freadline(path, line, sizeof line, word(def)), "true") == 0;
}

extern "C" int system_set_xxx(const char *path, int value)
{
    if (value || is_kernel_switch(path))
        return system_set_value(path, word(value));
    return unlink(path) == 0 || errno == ENOENT ? 0 : -1;
}

extern "C" int system_set_value(const char *path, const char *value)
{
    return fwriteline(path, "%s\n", value) < 0 ? -1 : 0;
}
