// SPDX-License-Identifier: MIT
#include "core/text.h"

#include <cstdio>
#include <cstring>
#include <ctime>
#include <libvexa.h>
#include <sys/sysinfo.h>

namespace {

constexpr char path_uptime[] = "/proc/uptime";

} // namespace

extern "C" long get_uptime_from_sysinfo(void)
{
    struct sysinfo info;
    return sysinfo(&info) == 0 ? long(info.uptime) : -1;
}

extern "C" long get_uptime_from_file(const char *path)
{
    char line[32];
    long seconds;
    return sscanf(freadline(path, line, sizeof line, ""), "%ld.%*s ", &seconds) == 1 ? seconds : -1;
}

extern "C" long get_uptime_from_proc(void)
{
    return get_uptime_from_file(path_uptime);
}

extern "C" int uptime2str(unsigned long seconds, char *out, size_t size)
{
    const struct {
        unsigned long value;
        char unit;
    } parts[] = {{seconds / 86400, 'd'}, {seconds / 3600 % 24, 'h'}, {seconds / 60 % 60, 'm'}, {seconds % 60, 's'}};
    char text[64] = "";
    int length = 0;
    for (const auto &part : parts)
        if (part.value != 0)
            length += snprintf(text + length, sizeof text - size_t(length), "%lu%c", part.value, part.unit);
    copy_text(out, size, text);
    return size_t(length) < size ? 0 : -1;
}

extern "C" int get_system_time(char fields[7][8])
{
    char text[32];
    char *rest = nullptr;
    const time_t now = time(nullptr);
    memset(fields, 0, sizeof(char[7][8]));
    if (!ctime_r(&now, text))
        return -1;
    const char *word = strtok_r(text, " :", &rest);
    for (int i = 0; i < 7 && word; i++, word = strtok_r(nullptr, " :", &rest))
        copy_text(fields[i], sizeof fields[i], word);
    return 0;
}

extern "C" int get_system_time_str(char *out, size_t size)
{
    const time_t now = time(nullptr);
    tm local;
    if (size == 0 || !localtime_r(&now, &local))
        return -1;
    if (strftime(out, size, "%Y-%m-%dT%H:%M:%S", &local) == 0) {
        out[0] = '\0';
        return -1;
    }
    return 0;
}
