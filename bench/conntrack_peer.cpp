// SPDX-License-Identifier: MIT
#include "bench/conntrack_peer.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <uthash.h>

namespace {

struct host {
    char *address;
    unsigned count;
    UT_hash_handle hh;
};

void count_host(host *&table, const char *address)
{
    host *found = nullptr;
    HASH_FIND_STR(table, address, found);
    if (!found) {
        found = static_cast<host *>(calloc(1, sizeof(host)));
        found->address = strdup(address);
        HASH_ADD_KEYPTR(hh, table, found->address, strlen(found->address), found);
    }
    found->count++;
}

char *value_of(char *line, const char *key)
{
    char *at = strstr(line, key);
    return at ? at + strlen(key) : nullptr;
}

void cut_and_count(host *&table, char *value)
{
    char *end = value ? strchr(value, ' ') : nullptr;
    if (!end)
        return;
    *end = '\0';
    count_host(table, value);
}

int by_count(const host *a, const host *b)
{
    return int(b->count) - int(a->count);
}

} // namespace

size_t rank_with_stdio(const char *path)
{
    FILE *file = fopen(path, "r");
    host *table = nullptr;
    char line[320];
    while (file && fgets(line, sizeof line, file)) {
        if (strncmp(line, "ipv4", 4) != 0 && strncmp(line, "ipv6", 4) != 0)
            continue;
        char *src = value_of(line, "src=");
        char *dst = value_of(line, "dst=");
        cut_and_count(table, src);
        cut_and_count(table, dst);
    }
    if (file)
        fclose(file);
    HASH_SORT(table, by_count);
    const size_t hosts = HASH_COUNT(table);
    host *each = table;
    HASH_CLEAR(hh, table);
    while (each) {
        host *next = static_cast<host *>(each->hh.next);
        free(each->address);
        free(each);
        each = next;
    }
    return hosts;
}
