// SPDX-License-Identifier: MIT
#include "core/hash_table.h"
#include "core/log.h"
#include "core/open_file.h"
#include "core/piece_reader.h"

namespace {

constexpr char log_tag[] = "libvexa_proc";
constexpr char path_conntrack[] = "/proc/net/nf_conntrack";
constexpr size_t line_size = 320; // zero included
constexpr unsigned recent_bits = 12;
constexpr size_t recent_hosts = size_t{1} << recent_bits;
constexpr size_t block_size = 16384; // for some 150 hosts

static_assert(sizeof(conntrack_host) == 3 * sizeof(void *) && offsetof(conntrack_host, count) == sizeof(void *));
static_assert(sizeof(conntrack_hosts) == 2 * sizeof(void *) && offsetof(conntrack_hosts, count) == sizeof(void *));

struct counted_host {
    conntrack_host host; // what callers see
    UT_hash_handle hh;
    char address[1]; // and as much as it takes
};

// Hosts are many and go together, so they share their memory.
struct host_block {
    host_block *next;
    alignas(counted_host) char room[block_size];
};

struct host_table {
    conntrack_hosts ranking;
    counted_host *hosts;
    host_block *blocks;                 // the newest first
    size_t taken;                       // of its room
    counted_host *recent[recent_hosts]; // few hosts have most of the flows
};

bool is_at(const counted_host &host, std::string_view address)
{
    return host.hh.keylen == address.size() && memcmp(host.address, address.data(), address.size()) == 0;
}

// The place among the recent hosts: a rough hash of the last characters, in which neighbours differ.
counted_host *&recent_place(host_table &table, std::string_view address)
{
    uint64_t last = 0;
    if (address.size() >= sizeof last)
        memcpy(&last, address.data() + address.size() - sizeof last, sizeof last);
    else
        for (const char c : address)
            last = last << 8 | uint8_t(c);
    constexpr uint64_t odd = 0x9e3779b97f4a7c15; // spreads each bit upwards
    return table.recent[last * odd >> (64 - recent_bits)];
}

struct free_hosts {
    void operator()(host_table *table) const noexcept { free_conntrack_hosts(&table->ranking); }
};

counted_host *new_host(host_table &table, std::string_view address)
{
    constexpr size_t unit = alignof(counted_host);
    const size_t size = (sizeof(counted_host) + address.size() + unit - 1) / unit * unit; // a line's worth at most
    if (!table.blocks || size > block_size - table.taken) {
        auto *block = static_cast<host_block *>(malloc(sizeof(host_block)));
        if (!block)
            return nullptr;
        block->next = std::exchange(table.blocks, block);
        table.taken = 0;
    }
    auto *host = reinterpret_cast<counted_host *>(table.blocks->room + table.taken);
    table.taken += size;
    memcpy(host->address, address.data(), address.size());
    host->address[address.size()] = '\0';
    host->host = {host->address, 1, nullptr};
    return host;
}

void add_conntrack_host(host_table &table, std::string_view address)
{
    counted_host *&recent = recent_place(table, address);
    if (recent && is_at(*recent, address)) {
        recent->host.count++;
        return;
    }
    unsigned hash = 0;
    HASH_VALUE(address.data(), address.size(), hash);
    counted_host *host = nullptr;
    HASH_FIND_BYHASHVALUE(hh, table.hosts, address.data(), address.size(), hash, host);
    if (host) {
        host->host.count++;
    } else if ((host = new_host(table, address))) {
        HASH_ADD_KEYPTR_BYHASHVALUE(hh, table.hosts, host->address, address.size(), hash, host);
        table.ranking.count++;
    } else {
        log_err("Failed to alloc host");
    }
    recent = host;
}

// What stands behind a key, to the next blank; empty when there is none. A line feed ends it as a blank does, the end
// of a piece does not.
std::string_view value_at(const char *value, const char *line_end)
{
    const auto room = size_t(line_end - value);
    const char *end = static_cast<const char *>(memchr(value, ' ', room));
    if (!end && room > 0 && value[room - 1] == '\n') // only the last character of a piece may be one
        end = value + room - 1;
    return end ? std::string_view{value, size_t(end - value)} : std::string_view{};
}

void count_ends(host_table &table, std::string_view line)
{
    constexpr size_t size = 4; // of a key
    const char *src = nullptr, *dst = nullptr;
    const char *const end = line.data() + line.size();
    const char *at = line.data() + size - 1; // no key ends before the family does
    while ((!src || !dst) && (at = static_cast<const char *>(memchr(at, '=', size_t(end - at))))) {
        at++;
        if (!src && memcmp(at - size, "src=", size) == 0)
            src = at;
        else if (!dst && memcmp(at - size, "dst=", size) == 0)
            dst = at;
    }
    for (const char *value : {src, dst})
        if (const std::string_view address = value ? value_at(value, end) : std::string_view{}; !address.empty())
            add_conntrack_host(table, address);
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
    while (lines.next(line))
        if (is_flow(line))
            count_ends(*table, line);
    rank(*table);
    return &table.release()->ranking;
}

extern "C" void free_conntrack_hosts(conntrack_hosts *h)
{
    if (!h)
        return;
    auto *table = reinterpret_cast<host_table *>(h);
    HASH_CLEAR(hh, table->hosts); // the table only
    while (host_block *block = table->blocks) {
        table->blocks = block->next;
        free(block);
    }
    free(table);
}
