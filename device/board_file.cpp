// SPDX-License-Identifier: MIT
#include "device/board_file.h"

#include "core/format.h"
#include "core/open_file.h"
#include "core/read_file.h"
#include "core/text.h"

#include <climits>
#include <cstring>
#include <libvexa.h>

namespace {

constexpr char path_board[] = "/proc/vexahal/board";
constexpr uint32_t no_file = UINT32_MAX;
constexpr uint32_t board_id_mask = 0xffffff00;

} // namespace

bool read_board_value(const char *path, const char *key, char (&value)[board_value_size])
{
    const unique_file file = open_reader(path);
    char line[board_value_size];
    value[0] = '\0';
    while (file && read_line(file.get(), line, sizeof line)) {
        if (!begins_with(line, key))
            continue;
        const char *equals = strrchr(line, '=');
        copy_text(value, sizeof value, equals ? equals + 1 : line);
    }
    return bool(file);
}

extern "C" uint32_t corvo_get_bomrev(void)
{
    char value[board_value_size];
    return read_board_value(path_board, "bomrev", value) ? uint32_t(strtoul(value, nullptr, 16)) : no_file;
}

extern "C" uint32_t corvo_get_hw_board_id(void)
{
    return corvo_get_bomrev() & board_id_mask;
}

extern "C" int get_boardrevision(const char *path)
{
    char value[board_value_size];
    return read_board_value(path, "boardrevision", value) ? int(strtol(value, nullptr, 10)) : -1;
}

extern "C" int get_boardsn(const char *path, char *out, int size)
{
    char value[board_value_size];
    if (!read_board_value(path, "serialno", value) || size < 0)
        return -1;
    return format_whole(out, size_t(size), "%s\n", value) ? 0 : -1;
}
