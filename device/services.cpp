// SPDX-License-Identifier: MIT
#include "core/open_file.h"
#include "core/paths.h"

#include <cstring>
#include <libvexa.h>
#include <string_view>
#include <sys/stat.h>

namespace {

constexpr mode_t ignored_mode = S_IFREG | 0777; // a running configuration is never left like that

struct service {
    std::string_view general, particular; // keys
    int dev_status::*flag;
};

constexpr service services[] = {
    {"dhcpc.status", "dhcpc.1.status", &dev_status::dhcpc},
    {"dhcpd.status", "dhcpd.1.status", &dev_status::dhcpd},
    {"ppp.status", "ppp.1.status", &dev_status::ppp},
    {"iptables.status", "iptables.50.status", &dev_status::iptables},
    {"ebtables.status", "ebtables.50.status", &dev_status::ebtables},
};

constexpr bool is_shown(char c)
{
    return c > ' ' && c < 0x7f;
}

std::string_view trim(std::string_view text)
{
    while (!text.empty() && !is_shown(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && !is_shown(text.back()))
        text.remove_suffix(1);
    return text;
}

// The key of a line whose value is "enabled"; empty for any other line.
std::string_view enabled_key(const char *line)
{
    const char *equals = strchr(line, '=');
    if (strchr("\n\r#", *line) || !equals || trim({equals + 1, strlen(equals + 1)}) != "enabled")
        return {};
    return trim({line, size_t(equals - line)});
}

} // namespace

extern "C" int fill_services(dev_status *st)
{
    bool general[std::size(services)]{};
    bool particular[std::size(services)]{};
    struct stat info;
    unique_file file = open_reader(path_system_cfg);
    if (file && (fstat(fileno(file.get()), &info) != 0 || info.st_mode == ignored_mode))
        file.reset();
    char line[1024];
    while (file && fgets(line, sizeof line, file.get())) {
        const std::string_view key = enabled_key(line);
        for (size_t i = 0; i < std::size(services); i++) {
            general[i] |= key == services[i].general;
            particular[i] |= key == services[i].particular;
        }
    }
    for (size_t i = 0; i < std::size(services); i++)
        st->*services[i].flag = general[i] && particular[i];
    return 0;
}
