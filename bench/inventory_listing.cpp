// SPDX-License-Identifier: MIT
// The snapshot as a program: a line for each descriptor, as other tools print them.

#include <cstdio>
#include <libvexa.h>

namespace {

template <typename Entry>
const Entry *entry_of(const vexa_list *link)
{
    return reinterpret_cast<const Entry *>(link);
}

void print_fd(const vexa_ps_entry &process, const vexa_ps_fd &fd)
{
    const vexa_socket *s = fd.fd_type == VEXA_FD_SOCKET ? fd.socket : nullptr;
    if (fd.fd_type != VEXA_FD_SOCKET)
        printf("%d %s %u %s\n", process.pid, process.comm, fd.fd_type, fd.link);
    else if (s && s->kind == VEXA_SOCKET_UNIX)
        printf("%d %s unix %u %u %s\n", process.pid, process.comm, s->un.type, s->un.state,
               s->un.path ? s->un.path : "");
    else if (s)
        printf("%d %s %u %u %u %u\n", process.pid, process.comm, s->kind, s->ip.local_port, s->ip.remote_port,
               s->ip.state);
}

} // namespace

int main()
{
    vexa_ps_list *list = vexa_ps_filter(1, nullptr, nullptr);
    if (!list)
        return 1;
    for (const vexa_list *p = list->entries.next; p != &list->entries; p = p->next)
        for (const vexa_list *f = entry_of<vexa_ps_entry>(p)->fds.next; f != &entry_of<vexa_ps_entry>(p)->fds;
             f = f->next)
            print_fd(*entry_of<vexa_ps_entry>(p), *entry_of<vexa_ps_fd>(f));
    vexa_ps_list_free(list);
    return 0;
}
