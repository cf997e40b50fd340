// SPDX-License-Identifier: MIT
#include "inventory.h"

#include <cstring>
#include <libvexa.h>

namespace {

int drops(vexa_ps_entry *entry, void *name)
{
    return strcmp(entry->comm, static_cast<const char *>(name)) != 0;
}

struct drop_hosts {
    void operator()(conntrack_hosts *hosts) const noexcept { free_conntrack_hosts(hosts); }
};

json_t *socket_row(const json_t *process, const json_t *fd)
{
    json_t *row = object({{"pid", json_incref(json_object_get(process, "pid"))},
                          {"comm", json_incref(json_object_get(process, "comm"))},
                          {"socket_type", json_incref(json_object_get(fd, "socket_type"))}});
    json_object_update(row, json_object_get(fd, "socket"));
    return row;
}

} // namespace

json_ref process_documents(bool with_fds, const char *name)
{
    vexa_ps_list *list = vexa_ps_filter(with_fds, name ? drops : nullptr, const_cast<char *>(name));
    return json_ref{list ? vexa_ps_list_to_array(list) : nullptr};
}

json_ref socket_documents()
{
    const json_ref processes = process_documents(true);
    if (!processes)
        return nullptr;
    json_ref rows{list()};
    for (size_t i = 0; i < json_array_size(processes.get()); i++) {
        const json_t *process = json_array_get(processes.get(), i);
        const json_t *fds = json_object_get(process, "fds");
        for (size_t k = 0; k < json_array_size(fds); k++)
            if (const json_t *fd = json_array_get(fds, k); json_object_get(fd, "socket"))
                append(rows.get(), socket_row(process, fd));
    }
    return rows;
}

json_ref memory_document()
{
    vexa_meminfo m{};
    return json_ref{meminfo(&m) == 0 ? vexa_meminfo_to_obj(&m) : nullptr};
}

json_ref host_documents(size_t most)
{
    const std::unique_ptr<conntrack_hosts, drop_hosts> hosts{get_top_conntrack_hosts()};
    if (!hosts)
        return nullptr;
    json_ref rows{list()};
    for (const conntrack_host *h = hosts->first; h && json_array_size(rows.get()) < most; h = h->next)
        append(rows.get(), object({{"address", text(h->address)}, {"count", number(h->count)}}));
    return rows;
}
