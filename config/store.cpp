// SPDX-License-Identifier: MIT
#include "config/store.h"

#include "core/log.h"
#include "core/owner.h"

#include <cstddef>

// Hosts reach into these records.
static constexpr size_t word = sizeof(void *);
static_assert(sizeof(cfg_entry) == 4 * word && offsetof(cfg_entry, value) == word &&
              offsetof(cfg_entry, esc_value) == 2 * word && offsetof(cfg_entry, next) == 3 * word);
static_assert(sizeof(cfg_it) == 4 * word && offsetof(cfg_it, value) == word && offsetof(cfg_it, next) == 3 * word);
static_assert(sizeof(cfg_it_ctx) == 2 * word && offsetof(cfg_it_ctx, tail) == word);
static_assert(sizeof(cfg_count_ctx) == 8 && offsetof(cfg_count_ctx, enabled_only) == 4);

namespace {

constexpr char log_tag[] = "cfg";

void write_entries(FILE *out, const cfg_entry *cfg)
{
    for (; cfg; cfg = cfg->next)
        fprintf(out, "%s=%s\n", cfg->key, cfg->value);
}

} // namespace

void free_entry(cfg_entry *entry)
{
    if (entry->esc_value != entry->value)
        free(entry->esc_value);
    free(entry->value);
    free(entry->key);
    free(entry);
}

bool append_node(cfg_it_ctx &list, const cfg_entry &entry)
{
    auto *node = static_cast<cfg_it *>(calloc(1, sizeof(cfg_it)));
    if (!node)
        return false;
    node->key = entry.key;
    node->value = entry.value;
    (list.head ? list.tail->next : list.head) = node;
    list.tail = node;
    return true;
}

extern "C" void free_cfg(cfg_entry *cfg)
{
    while (cfg)
        free_entry(std::exchange(cfg, cfg->next));
}

extern "C" void print_cfg(cfg_entry *cfg)
{
    write_entries(stdout, cfg);
}

extern "C" int save_cfg(cfg_entry *cfg, const char *path)
{
    unique_file file{fopen(path, "we")};
    if (!file)
        return -1;
    fputs("# CFG Start\n", file.get());
    write_entries(file.get(), cfg);
    const bool written = ferror(file.get()) == 0;
    return fclose(file.release()) == 0 && written ? 0 : -1;
}

extern "C" void free_cfg_it(cfg_it *it)
{
    while (it)
        free(std::exchange(it, it->next));
}

extern "C" cfg_it *cfg_it_append(cfg_it *list, cfg_it **other)
{
    if (!other || !*other)
        return list;
    cfg_it **end = &list;
    while (*end)
        end = &(*end)->next;
    *end = std::exchange(*other, nullptr);
    return list;
}

extern "C" int append_cfg_match_cb(cfg_entry *match, cfg_it_ctx *ctx)
{
    if (ctx->head && !ctx->tail) {
        log_err("invalid ctx state");
        return -1;
    }
    if (!append_node(*ctx, *match)) {
        log_err("%d: calloc(%zu, %zu) failed", 311, size_t{1}, sizeof(cfg_it));
        return -1;
    }
    return 0;
}
