// SPDX-License-Identifier: MIT
#include "core/hash_table.h"
#include "core/log.h"
#include "core/open_file.h"
#include "core/piece_reader.h"

namespace {

constexpr char log_tag[] = "libvexa_proc";
constexpr char path_conntrack[] = "/proc/net/nf_conntrack";
constexpr size_t line_size = 320; // zero included
constexpr size_t recent_hosts = 2048;

static_assert(sizeof(conntrack_host) == 3 * sizeof(void *) && offsetof(conntrack_host, count) == sizeof(void *));
static_assert(sizeof(conntrack_hosts) == 2 * sizeof(void *) && offsetof(conntrack_hosts, count) == sizeof(void *));

struct counted_host {
    conntrack_host host; // what callers see
    UT_hash_handle hh;
    char address[1]; // and as much as it takes
};

struct host_table {
    conntrack_hosts ranking;
    counted_host *hosts;
    counted_host *recent[recent_hosts]; // by the low bits of the hash: few hosts have most of the flows
};

bool is_at(const counted_host &host, unsigned hash, std::string_view address)
{
    return host.hh.hashv == hash && host.hh.keylen == address.size() &&
           memcmp(host.address, address.data(), address.size()) == 0;
}

struct free_hosts {
    void operator()(host_table *table) const noexcept { free_conntrack_hosts(&table->ranking); }
};

counted_host *new_host(std::string_view address)
{
    auto *host = static_cast<counted_host *>(malloc(sizeof(counted_host) + address.size()));
    if (!host)
        return nullptr;
    memcpy(host->address, address.data(), address.size());
    host->address[address.size()] = '\0';
    host->host = {host->address, 1, nullptr};
    return host;
}

void add_conntrack_host(host_table &table, std::string_view address)
{
    unsigned hash = 0;
    HASH_VALUE(address.data(), address.size(), hash);
    counted_host *&host = table.recent[hash % recent_hosts];
    if (!host || !is_at(*host, hash, address))
        HASH_FIND_BYHASHVALUE(hh, table.hosts, address.data(), address.size(), hash, host);
    if (host) {
        host->host.count++;
        return;
    }
    host = new_host(address);
    if (!host) {
        log_err("Failed to alloc host");
        return;
    }
    HASH_ADD_KEYPTR_BYHASHVALUE(hh, table.hosts, host->address, address.size(), hash, host);
    table.ranking.count++;
}

// What stands behind the first occurrence of the key, to the next blank; empty when there is none. A line feed ends it
// as a blank does, the end of a piece does not.
std::string_view value_of(std::string_view line, std::string_view key)
{
    const size_t at = line.find(key);
    if (at == line.npos)
        return {};
    const char *value = line.data() + at + key.size();
    const auto room = size_t(line.data() + line.size() - value);
    const char *end = static_cast<const char *>(memchr(value, ' ', room));
    if (!end && room > 0 && value[room - 1] == '\n') // only the last character of a piece may be one
        end = value + room - 1;
    return end ? std::string_view{value, size_t(end - value)} : std::string_view{};
}

bool is_flow(std::string_view line)
{
    constexpr size_t size = 4;
    return line.size() >= size && (memcmp(line.data(), "ipv4", size) == 0 || memcmp(line.data(), "ipv6", size) == 0);
}

int by_count(const counted_host *a, const counted_host *b)
{
    return (a->host.count < b->host.count) - (a->host.count > b->host.count);
}

void rank(host_table &table)
{
    HASH_SORT(table.hosts, by_count); // stable
    table.ranking.first = reinterpret_cast<conntrack_host *>(table.hosts);
    for (counted_host *host = table.hosts; host; host = static_cast<counted_host *>(host->hh.next))
        host->host.next = static_cast<conntrack_host *>(host->hh.next);
}

} // namespace

extern "C" conntrack_hosts *get_top_conntrack_hosts(void)
{
    unique_fd fd = open_descriptor(path_conntrack);
    if (!fd) {
        log_err("Failed to open '%s': %s", path_conntrack, strerror(errno));
        return nullptr;
    }
    std::unique_ptr<host_table, free_hosts> table{static_cast<host_table *>(calloc(1, sizeof(host_table)))};
    if (!table) {
        log_err("Failed to alloc hash table");
        return nullptr;
    }
    piece_reader lines{std::move(fd), line_size};
    std::string_view line;
    while (lines.next(line)) {
        if (!is_flow(line))
            continue;
        for (const std::string_view address : {value_of(line, "src="), value_of(line, "dst=")})
            if (!address.empty())
                add_conntrack_host(*table, address);
    }
    rank(*table);
    return &table.release()->ranking;
}

extern "C" void free_conntrack_hosts(conntrack_hosts *h)
{
    if (!h)
        return;
    auto *table = reinterpret_cast<host_table *>(h);
    counted_host *host = table->hosts;
    HASH_CLEAR(hh, table->hosts); // the table only
    while (host) {
        counted_host *next = static_cast<counted_host *>(host->hh.next);
        free(host);
        host = next;
    }
    free(table);
}
