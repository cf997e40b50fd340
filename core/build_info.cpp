// SPDX-License-Identifier: MIT
#include <cstdio>
#include <cstring>
#include <libvexa.h>
#include <unistd.h>

namespace {

constexpr char path_build_properties[] = "/usr/lib/build.properties";

} // namespace

extern "C" int get_build_time(char *buf, int size)
{
    if (size < 0 || access(path_build_properties, F_OK) != 0)
        return -1;
    char date[12];
    char time[12];
    freadvalue(path_build_properties, "build_date", date, sizeof date, "");
    freadvalue(path_build_properties, "build_time", time, sizeof time, "");
    snprintf(buf, size_t(size), "%s %s", date, time);
    return 0;
}

extern "C" int get_vexa_scm_reftype(void)
{
    char type[16];
    freadvalue(path_build_properties, "scm_reftype", type, sizeof type, "unknown");
    if (strcmp(type, "atag") == 0)
        return 1;
    return strcmp(type, "branch") == 0 ? 2 : 0;
}
