// SPDX-License-Identifier: MIT
#include "core/text.h"

#include <cerrno>
#include <cstdio>
#include <libvexa.h>

namespace {

constexpr char path_version[] = "/usr/etc/.version";
constexpr char path_build[] = "/usr/etc/.build";

char version_text[64];
bool is_known; // and stays so

template <size_t size>
int read_part(const char *path, char (&part)[size])
{
    errno = 0; // what an empty file answers with
    const int result = fsreadline(path, part, size);
    return result == 0 && part[0] == '\0' ? -EINVAL : result;
}

} // namespace

extern "C" int get_version(const char **version)
{
    *version = version_text;
    if (is_known)
        return 0;
    char release[64];
    char build[32];
    copy_text(version_text, sizeof version_text, "unknown.0");
    if (const int result = read_part(path_version, release); result != 0)
        return result;
    if (const int result = read_part(path_build, build); result != 0)
        return result;
    char whole[sizeof release + sizeof build];
    (void)snprintf(whole, sizeof whole, "%s.%s", release, build);
    copy_text(version_text, sizeof version_text, whole);
    is_known = true;
    return 0;
}
