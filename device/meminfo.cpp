// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/open_file.h"
#include "core/piece_reader.h"
#include "core/scanner.h"

#include <sys/sysinfo.h>

namespace {

constexpr char log_tag[] = "libvexa_proc";
constexpr char path_meminfo[] = "/proc/meminfo";
constexpr size_t line_size = 32; // zero included

constexpr struct {
    std::string_view key; // ends with a zero
    uint64_t vexa_meminfo::*value;
} counters[] = {
    {"MemTotal", &vexa_meminfo::mem_total},
    {"MemFree", &vexa_meminfo::mem_free},
    {"MemAvailable", &vexa_meminfo::mem_available},
    {"Buffers", &vexa_meminfo::buffers},
    {"Cached", &vexa_meminfo::cached},
    {"Active", &vexa_meminfo::active},
    {"Inactive", &vexa_meminfo::inactive},
    {"Active(anon)", &vexa_meminfo::active_anon},
    {"Inactive(anon)", &vexa_meminfo::inactive_anon},
    {"Active(file)", &vexa_meminfo::active_file},
    {"Inactive(file)", &vexa_meminfo::inactive_file},
    {"Unevictable", &vexa_meminfo::unevictable},
    {"Mlocked", &vexa_meminfo::mlocked},
    {"Dirty", &vexa_meminfo::dirty},
    {"Writeback", &vexa_meminfo::writeback},
    {"AnonPages", &vexa_meminfo::anon_pages},
    {"Mapped", &vexa_meminfo::mapped},
    {"Shmem", &vexa_meminfo::shmem},
    {"Slab", &vexa_meminfo::slab},
    {"SReclaimable", &vexa_meminfo::s_reclaimable},
    {"SUnreclaim", &vexa_meminfo::s_unreclaim},
    {"KernelStack", &vexa_meminfo::kernel_stack},
    {"PageTables", &vexa_meminfo::page_tables},
    {"CommitLimit", &vexa_meminfo::commit_limit},
    {"Committed_AS", &vexa_meminfo::committed_as},
};
static_assert(sizeof(vexa_meminfo) == std::size(counters) * sizeof(uint64_t) + sizeof(double));
static_assert(offsetof(vexa_meminfo, mem_total) == 0 && offsetof(vexa_meminfo, used_percent) == 25 * sizeof(uint64_t));

// Whether the key is one of the counters.
bool store(vexa_meminfo &m, std::string_view key, std::string_view text)
{
    for (const auto &c : counters) {
        if (key != c.key)
            continue;
        unsigned long value = 0;
        (void)scanner{text}.decimal(value); // without digits it is 0
        m.*c.value = value;
        return true;
    }
    return false;
}

// In double precision, so that more available than there is gives a negative share.
double used_share(double total, double unused)
{
    return total > 0 ? (total - unused) * 100.0 / total : 0;
}

} // namespace

extern "C" int meminfo(vexa_meminfo *m)
{
    unique_fd fd = open_descriptor(path_meminfo);
    if (!fd) {
        log_err("Failed to open '%s': %s", path_meminfo, strerror(errno));
        return -1;
    }
    *m = {};
    piece_reader pieces{std::move(fd), line_size};
    std::string_view piece;
    for (size_t matched = 0; matched < std::size(counters) && pieces.next(piece);) {
        const size_t colon = piece.find(':');
        if (colon == piece.npos)
            log_err("No colon found");
        else
            matched += store(*m, {piece.data(), colon}, {piece.data() + colon + 1, piece.size() - colon - 1});
    }
    m->used_percent = used_share(double(m->mem_total), double(m->mem_available));
    return 0;
}

extern "C" json_t *vexa_meminfo_to_obj(const vexa_meminfo *m)
{
    json_t *obj = json_object();
    if (!obj) {
        log_err("Failed to allocate json object");
        return nullptr;
    }
    for (const auto &c : counters)
        json_object_set_new(obj, c.key.data(), json_integer(json_int_t(m->*c.value)));
    return obj;
}

// Callers rely on the figure being that of their own record, unlike meminfo()'s; the file only has to be there.
extern "C" float get_memused_percent(const struct sysinfo *si)
{
    vexa_meminfo readable;
    return meminfo(&readable) == 0 ? float(used_share(double(si->totalram), double(si->freeram))) : 0;
}
