// SPDX-License-Identifier: MIT
// The ranking as a program.

#include <cstdio>
#include <libvexa.h>

int main()
{
    conntrack_hosts *hosts = get_top_conntrack_hosts();
    if (!hosts)
        return 1;
    for (const conntrack_host *h = hosts->first; h; h = h->next)
        printf("%u %s\n", h->count, h->address);
    free_conntrack_hosts(hosts);
    return 0;
}
