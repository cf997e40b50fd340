// SPDX-License-Identifier: MIT
#include "device/socket_table.h"

#include "core/hash_table.h"
#include "core/log.h"
#include "core/open_file.h"
#include "core/piece_reader.h"
#include "device/socket_line.h"

namespace {

constexpr char log_tag[] = "libvexa_proc";
constexpr size_t line_size = 256; // zero included

constexpr struct {
    uint32_t kind;
    const char *path;
} sources[] = {
    {VEXA_SOCKET_UNIX, "/proc/net/unix"}, {VEXA_SOCKET_TCP, "/proc/net/tcp"},   {VEXA_SOCKET_TCP6, "/proc/net/tcp6"},
    {VEXA_SOCKET_UDP, "/proc/net/udp"},   {VEXA_SOCKET_UDP6, "/proc/net/udp6"},
};

static_assert(offsetof(vexa_socket, kind) == 4 && offsetof(vexa_socket, ip) == 8 && offsetof(vexa_socket, un) == 8);
static_assert(offsetof(vexa_socket, un.path) == 24 && sizeof(vexa_socket) == 24 + sizeof(char *));

struct socket_record {
    UT_hash_handle hh; // beside the number that it goes by
    vexa_socket data;  // what callers see
    char path[1];      // of a unix socket, and as much as it takes
};

} // namespace

struct vexa_socket_table {
    socket_record *records;
};

namespace {

socket_record *new_record(const socket_line &line)
{
    auto *record = static_cast<socket_record *>(malloc(sizeof(socket_record) + line.path.size()));
    if (!record) {
        puts(line.data.kind == VEXA_SOCKET_UNIX ? "Error: Failed to init unix socket data"
                                                : "Error: Failed to init udp/tcp socket data");
        return nullptr;
    }
    record->data = line.data;
    if (!line.path.empty()) {
        memcpy(record->path, line.path.data(), line.path.size());
        record->path[line.path.size()] = '\0';
        record->data.un.path = record->path;
    }
    return record;
}

void add_socket(vexa_socket_table &table, const socket_line &line)
{
    if (line.data.inode == 0)
        return;
    socket_record *record = nullptr;
    unsigned hash = 0;
    HASH_VALUE(&line.data.inode, sizeof line.data.inode, hash);
    HASH_FIND_BYHASHVALUE(hh, table.records, &line.data.inode, sizeof line.data.inode, hash, record);
    if (record) {
        log_warn("Duplicate socket inode %d", int(line.data.inode));
        return;
    }
    record = new_record(line);
    if (!record) {
        log_err("Failed to init socket inode");
        return;
    }
    HASH_ADD_BYHASHVALUE(hh, table.records, data.inode, sizeof record->data.inode, hash, record);
}

void parse_sockets(vexa_socket_table &table, uint32_t kind, const char *path)
{
    unique_fd fd = open_descriptor(path);
    if (!fd) {
        log_err("Failed to open '%s': %s", path, strerror(errno));
        return;
    }
    piece_reader lines{std::move(fd), line_size};
    std::string_view text;
    (void)lines.next(text); // the heading
    socket_line line;
    while (lines.next(text))
        if (parse_socket_line(kind, text, line))
            add_socket(table, line);
}

} // namespace

vexa_socket_table *cache_sockets()
{
    unique_sockets table{static_cast<vexa_socket_table *>(calloc(1, sizeof(vexa_socket_table)))};
    if (!table) {
        log_err("Failed to alloc socket hash table");
        return nullptr;
    }
    for (const auto &source : sources)
        parse_sockets(*table, source.kind, source.path);
    return table.release();
}

void free_sockets(vexa_socket_table *table)
{
    if (!table)
        return;
    socket_record *record = table->records;
    HASH_CLEAR(hh, table->records); // the table only
    while (record) {
        auto *next = static_cast<socket_record *>(record->hh.next);
        free(record);
        record = next;
    }
    free(table);
}

const vexa_socket *find_socket(const vexa_socket_table &table, uint32_t inode)
{
    const socket_record *record = nullptr;
    HASH_FIND(hh, table.records, &inode, sizeof inode, record);
    return record ? &record->data : nullptr;
}
