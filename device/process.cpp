// SPDX-License-Identifier: MIT
#include "device/process.h"

#include "core/dir_reader.h"
#include "core/list.h"
#include "core/log.h"
#include "core/open_file.h"
#include "core/scanner.h"
#include "device/process_fds.h"
#include "device/process_stat.h"
#include "device/socket_table.h"

#include <cstring>

namespace {

constexpr char log_tag[] = "libvexa_proc";
constexpr char path_proc[] = "/proc";
constexpr size_t stat_size = 1024; // zero included

static_assert(offsetof(vexa_ps_list, count) == 2 * sizeof(void *) && sizeof(vexa_ps_list) == 4 * sizeof(void *));
static_assert(offsetof(vexa_ps_entry, comm) == 3 * sizeof(void *) &&
              offsetof(vexa_ps_entry, vsz) == 5 * sizeof(void *));
static_assert(offsetof(vexa_ps_entry, fds) == 9 * sizeof(void *) && sizeof(vexa_ps_entry) == 11 * sizeof(void *));
static_assert(offsetof(vexa_ps_fd, fd_type) == 2 * sizeof(void *) && offsetof(vexa_ps_fd, link) == 3 * sizeof(void *));

vexa_ps_list *vexa_ps_list_init()
{
    auto *list = static_cast<vexa_ps_list *>(calloc(1, sizeof(vexa_ps_list)));
    if (list)
        list_init(&list->entries);
    else
        log_err("Failed to allocate memory for vexa_ps_list");
    return list;
}

// 0 for an entry that is no process.
int32_t pid_of(const dir_reader &proc, const directory_entry &entry)
{
    long pid = 0;
    if (!is_digit(*entry.name) || !proc.is_directory(entry))
        return 0;
    (void)scanner{{entry.name, strlen(entry.name)}}.signed_number(pid);
    return int32_t(pid);
}

unique_process new_process(int32_t pid, const process_stat &stat)
{
    unique_process entry{static_cast<vexa_ps_entry *>(calloc(1, sizeof(vexa_ps_entry)))};
    if (!entry)
        return nullptr;
    list_init(&entry->links);
    list_init(&entry->fds);
    entry->pid = pid;
    entry->comm = strndup(stat.comm.data(), stat.comm.size());
    entry->state = stat.state;
    entry->ppid = stat.ppid;
    entry->vsz = stat.vsz;
    entry->rss = stat.rss;
    return entry->comm ? std::move(entry) : nullptr;
}

// Null for a process that has ended meanwhile, and without memory.
unique_process read_process(int proc, int32_t pid, unsigned shift)
{
    const unique_fd fd = open_descriptor(process_path{pid, "stat"}.text, proc);
    char text[stat_size];
    const ssize_t got = fd ? read(fd.get(), text, sizeof text - 1) : -1;
    process_stat stat;
    if (got <= 0 || !parse_process_stat({text, size_t(got)}, shift, stat))
        return nullptr;
    unique_process entry = new_process(pid, stat);
    if (!entry)
        log_err("Failed to allocate memory for process %d", int(pid));
    return entry;
}

} // namespace

void free_process(vexa_ps_entry *entry)
{
    free_descriptors(*entry);
    free(entry->comm);
    free(entry->cmdline);
    free(entry);
}

extern "C" vexa_ps_list *vexa_ps_filter(int with_fds, int (*filter)(vexa_ps_entry *entry, void *arg), void *arg)
{
    unique_fd fd = open_directory(path_proc);
    if (!fd) {
        log_err("Failed to open '%s': %s", path_proc, strerror(errno));
        return nullptr;
    }
    dir_reader proc{std::move(fd)};
    unique_processes list{vexa_ps_list_init()};
    if (!list)
        return nullptr;
    if (with_fds && !(list->sockets = cache_sockets()))
        log_warn("Failed to cache sockets");
    const unsigned shift = page_shift();
    directory_entry name;
    while (proc.next(name)) {
        const int32_t pid = pid_of(proc, name);
        unique_process entry = pid != 0 ? read_process(proc.fd(), pid, shift) : nullptr;
        if (!entry)
            continue;
        entry->cmdline = fread_cmdline(proc.fd(), pid).release();
        read_descriptors(proc.fd(), *entry, with_fds != 0, list->sockets);
        if (filter && filter(entry.get(), arg) == 1)
            continue;
        list_add_tail(&list->entries, &entry.release()->links);
        list->count++;
    }
    return list.release();
}

extern "C" vexa_ps_list *vexa_ps(void)
{
    return vexa_ps_filter(0, nullptr, nullptr);
}

extern "C" void vexa_ps_list_free(vexa_ps_list *list)
{
    if (!list)
        return;
    list_clear<vexa_ps_entry>(&list->entries, free_process);
    free_sockets(list->sockets);
    free(list);
}
