// SPDX-License-Identifier: MIT
#include "core/paths.h"

#include <cstdlib>
#include <libvexa.h>

extern "C" const char *get_main_mac_str(void)
{
    static char text[18];
    freadvalue(path_system_info, "eth0.macaddr", text, sizeof text, "");
    if (text[0] == '\0')
        freadvalue(path_system_info, "wifi0.macaddr", text, sizeof text, "00:11:22:33:44:55");
    return text;
}

extern "C" long get_manufid(void)
{
    char text[5];
    return strtol(freadvalue(path_system_info, "manufid", text, sizeof text, "0000"), nullptr, 16);
}
