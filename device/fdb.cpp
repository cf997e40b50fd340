// SPDX-License-Identifier: MIT
#include "core/open_file.h"
#include "core/read_file.h"
#include "core/text.h"
#include "device/net_path.h"
#include "device/record_reader.h"

#include <iterator>
#include <libvexa.h>

namespace {

constexpr size_t record_size = 24; // not the kernel's 16: the callbacks were written for these
constexpr size_t port_at = 6;
constexpr unsigned most_ports = 16;

struct bridge_ports {
    bool wanted[UINT8_MAX + 1]{}; // by number
    char last_name[NAME_MAX + 1] = "";
};

void complain(const char *path)
{
    fprintf(stderr, "%s: %s\n", path, strerror(errno));
}

// "br0" is meant by "br0", and so is "br0.5", but not "br01".
bool is_meant(const char *name, const char *by)
{
    const size_t length = strlen(by);
    return strncmp(name, by, length) == 0 && (name[length] == '\0' || name[length] == '.');
}

bool is_excluded(const char *name, const char **exclude)
{
    for (; exclude && *exclude; exclude++)
        if (is_meant(name, *exclude))
            return true;
    return false;
}

bool read_port_number(const char *bridge, const char *port, unsigned long &number)
{
    char line[32];
    const unique_file file = open_reader(net_path{bridge, port, "port_no"});
    if (!file || !read_line(file.get(), line, sizeof line))
        return false;
    char *end;
    number = strtoul(line, &end, 0);
    return end != line;
}

void collect_ports(DIR *dir, const char *bridge, const char **exclude, bridge_ports &ports)
{
    unsigned count = 0;
    while (const dirent *port = readdir(dir)) {
        unsigned long number;
        if (port->d_name[0] == '.')
            continue;
        copy_text(ports.last_name, sizeof ports.last_name, port->d_name);
        if (is_excluded(port->d_name, exclude) || !read_port_number(bridge, port->d_name, number))
            continue;
        if (number < std::size(ports.wanted)) // no record can name another
            ports.wanted[number] = true;
        if (++count == most_ports) {
            fputs("_fdb_foreach_on_bridge: WARN: MAX_ETH_PORTS hit!\n", stderr);
            break;
        }
    }
}

using fdb_callback = void (*)(void *arg, const uint8_t *record, const char *name);

void visit_bridge(const char *bridge, const char **exclude, fdb_callback callback, void *arg)
{
    const unique_dir dir{opendir(net_path{bridge, "brif"})};
    if (!dir)
        return; // no bridge
    bridge_ports ports;
    collect_ports(dir.get(), bridge, exclude, ports);
    const net_path path{bridge, "brforward"};
    unique_fd table = open_descriptor(path);
    if (!table)
        return complain(path);
    record_reader<record_size> records{std::move(table)};
    while (const uint8_t *record = records.next())
        if (ports.wanted[record[port_at]])
            callback(arg, record, ports.last_name);
}

} // namespace

extern "C" int fdb_foreach(const char *bridge_prefix, const char **exclude, fdb_callback callback, void *arg)
{
    const unique_dir interfaces{opendir(path_class_net)};
    if (!interfaces) {
        complain(path_class_net);
        return -1;
    }
    while (const dirent *interface = readdir(interfaces.get()))
        if (interface->d_name[0] != '.' && (!bridge_prefix || is_meant(interface->d_name, bridge_prefix)))
            visit_bridge(interface->d_name, exclude, callback, arg);
    return 0;
}
