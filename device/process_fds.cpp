// SPDX-License-Identifier: MIT
#include "device/process_fds.h"

#include "core/dir_reader.h"
#include "core/list.h"
#include "core/log.h"
#include "core/scanner.h"
#include "device/process_stat.h"
#include "device/socket_table.h"

#include <cstring>

namespace {

constexpr char log_tag[] = "libvexa_proc";
constexpr size_t link_size = 386; // a target must be shorter
constexpr int32_t dot_entries = 2;

// A socket, a pipe and an anonymous file with a number end in ":[number]"; anything else is a file.
bool holds_number(std::string_view target)
{
    for (size_t colon = target.find(":["); colon != target.npos; colon = target.find(":[", colon + 1)) {
        const char *c = target.data() + colon + 2;
        const char *const end = target.data() + target.size();
        const char *const digits = c;
        while (c != end && is_digit(*c))
            c++;
        if (c != digits && c != end && *c == ']')
            return true;
    }
    return false;
}

uint32_t inode_of(std::string_view target)
{
    unsigned long inode = 0;
    const size_t bracket = target.find('[') + 1;
    (void)scanner{{target.data() + bracket, target.size() - bracket}}.decimal(inode);
    return uint32_t(inode);
}

// VEXA_FD_UNKNOWN for a kind that nobody knows.
uint32_t type_of(std::string_view target)
{
    if (!holds_number(target))
        return VEXA_FD_FILE;
    switch (target.front()) {
    case 'a':
        return VEXA_FD_ANON;
    case 'p':
        return VEXA_FD_PIPE;
    case 's':
        return VEXA_FD_SOCKET;
    default:
        return VEXA_FD_UNKNOWN;
    }
}

// A target shares the memory of its descriptor.
unique_malloc<vexa_ps_fd> new_descriptor(uint32_t type, std::string_view target, const vexa_socket_table *sockets)
{
    const bool keeps_target = type != VEXA_FD_SOCKET;
    const size_t size = sizeof(vexa_ps_fd) + (keeps_target ? target.size() + 1 : 0);
    unique_malloc<vexa_ps_fd> fd{static_cast<vexa_ps_fd *>(malloc(size))};
    if (!fd)
        return nullptr;
    *fd = {};
    fd->fd_type = type;
    if (keeps_target) {
        fd->link = reinterpret_cast<char *>(fd.get() + 1);
        memcpy(fd->link, target.data(), target.size());
        fd->link[target.size()] = '\0';
    } else if (sockets) {
        fd->socket = find_socket(*sockets, inode_of(target));
    }
    return fd;
}

// The target of a link, in the buffer; empty when there is none that fits.
std::string_view resolve_fd_path(const dir_reader &folder, int32_t pid, const char *name, char (&target)[link_size])
{
    const ssize_t size = readlinkat(folder.fd(), name, target, sizeof target);
    if (size < 0) {
        log_verbose("Failed to readlink '/proc/%d/fd/%s': %s", int(pid), name, strerror(errno));
        return {};
    }
    if (size_t(size) == sizeof target) {
        log_verbose("Resolved path truncated '/proc/%d/fd/%s ->  %.*s'", int(pid), name, int(sizeof target - 1),
                    target);
        return {};
    }
    return {target, size_t(size)};
}

void add_descriptor(vexa_ps_entry &entry, std::string_view target, const vexa_socket_table *sockets)
{
    const uint32_t type = type_of(target);
    if (type == VEXA_FD_UNKNOWN) {
        log_warn("Unknown FD type '%.*s'", int(target.size()), target.data());
        return;
    }
    auto fd = new_descriptor(type, target, sockets);
    if (fd)
        list_add_front(&entry.fds, &fd.release()->links);
    else
        log_err("Failed to alloc FD");
}

} // namespace

void read_descriptors(int proc, vexa_ps_entry &entry, bool list, const vexa_socket_table *sockets)
{
    unique_fd fd = open_directory(process_path{entry.pid, "fd"}.text, proc);
    if (!fd) {
        log_verbose("Failed to open '/proc/%d/fd': %s", int(entry.pid), strerror(errno));
        entry.fd_count = -1;
        return;
    }
    dir_reader folder{std::move(fd)};
    directory_entry link;
    char target[link_size];
    entry.fd_count = -dot_entries;
    while (folder.next(link)) {
        entry.fd_count++;
        if (!list || link.type != DT_LNK)
            continue;
        const std::string_view resolved = resolve_fd_path(folder, entry.pid, link.name, target);
        if (!resolved.empty())
            add_descriptor(entry, resolved, sockets);
    }
    if (folder.error() != 0) {
        log_verbose("Failed to read '/proc/%d/fd': %s", int(entry.pid), strerror(folder.error()));
        entry.fd_count = -dot_entries;
    }
}

void free_descriptors(vexa_ps_entry &entry)
{
    list_clear<vexa_ps_fd>(&entry.fds, free);
}
