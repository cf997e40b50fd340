// SPDX-License-Identifier: MIT
#include "config/key.h"
#include "config/lookup.h"
#include "config/sort.h"
#include "config/store.h"
#include "core/log.h"
#include "core/owner.h"
#include "core/text.h"

#include <cstring>

namespace {

constexpr char log_tag[] = "cfg";

// What a walk does with a match; non-zero ends the walk.
struct collector {
    cfg_it_ctx list{};
    int operator()(cfg_entry *match) { return append_cfg_match_cb(match, &list); }
};

struct counter {
    cfg_count_ctx ctx{};
    int operator()(const cfg_entry *match)
    {
        if (!ctx.enabled_only || is_true_word(match->value))
            ctx.count++;
        return 0;
    }
};

void process_cfg_it(cfg_entry *cfg, bool exact, auto &on_match, const char *fmt, va_list args)
{
    const unique_text text{malloc_vprintf(fmt, args)};
    if (!text) {
        log_err("OOM");
        return;
    }
    for (; cfg; cfg = cfg->next) {
        fetch_ahead(cfg);
        const bool matches = exact ? equal_keys(cfg->key, text.get()) : begins_with(cfg->key, text.get());
        if (matches && on_match(cfg) != 0)
            return;
    }
}

// As strtol() would find one, whatever the base.
bool begins_with_number(const char *text)
{
    while (is_space(*text))
        text++;
    if (*text == '+' || *text == '-')
        text++;
    return is_digit(*text);
}

bool is_section_member(const char *rest, const char *postfix)
{
    if (!begins_with_number(rest))
        return false;
    const char *tail = strchr(rest, '.');
    return tail && postfix ? equal_keys(tail, postfix) : !tail && !postfix;
}

struct section {
    const char *postfix, *value;
};

// Tells how much of the keys of all matches is the same: the prefix, up to a number that may go on behind it.
size_t process_cfg_section(cfg_entry *cfg, section wanted, auto &on_match, const char *fmt, va_list args)
{
    if (wanted.postfix && wanted.postfix[0] != '.') {
        log_err("postfix must start with '.': '%s'", wanted.postfix);
        return 0;
    }
    const unique_text prefix{malloc_vprintf(fmt, args)};
    if (!prefix) {
        log_err("OOM");
        return 0;
    }
    size_t size = strlen(prefix.get());
    if (size == 0 || prefix.get()[size - 1] != '.')
        log_warn("deprecated prefix doesn't end with '.': '%s' => '%s'", fmt, prefix.get());
    for (; cfg; cfg = cfg->next) {
        fetch_ahead(cfg);
        const bool matches = begins_with(cfg->key, prefix.get()) &&
                             is_section_member(cfg->key + size, wanted.postfix) &&
                             (!wanted.value || strcmp(cfg->value, wanted.value) == 0);
        if (matches && on_match(cfg) != 0)
            break;
    }
    while (size > 0 && is_digit(prefix.get()[size - 1]))
        size--;
    return size;
}

} // namespace

extern "C" uint32_t get_cfg_count(cfg_entry *cfg)
{
    uint32_t count = 0;
    for (; cfg; cfg = cfg->next)
        count++;
    return count;
}

extern "C" cfg_it *get_cfg_it(cfg_entry *cfg, int exact, const char *fmt, ...)
{
    collector found;
    va_list args;
    va_start(args, fmt);
    process_cfg_it(cfg, exact != 0, found, fmt, args);
    va_end(args);
    return found.list.head;
}

extern "C" uint32_t get_cfg_key_count(cfg_entry *cfg, int exact, const char *fmt, ...)
{
    counter found;
    va_list args;
    va_start(args, fmt);
    process_cfg_it(cfg, exact != 0, found, fmt, args);
    va_end(args);
    return found.ctx.count;
}

extern "C" cfg_it *get_cfg_section(cfg_entry *cfg, const char *postfix, const char *value, const char *fmt, ...)
{
    collector found;
    va_list args;
    va_start(args, fmt);
    const size_t common = process_cfg_section(cfg, {postfix, value}, found, fmt, args);
    va_end(args);
    return sort_by_key(found.list.head, common);
}

extern "C" uint32_t get_cfg_section_count(cfg_entry *cfg, const char *postfix, const char *value, const char *fmt, ...)
{
    counter found;
    va_list args;
    va_start(args, fmt);
    process_cfg_section(cfg, {postfix, value}, found, fmt, args);
    va_end(args);
    return found.ctx.count;
}

extern "C" uint32_t get_cfg_section_enabled_count(cfg_entry *cfg, const char *postfix, const char *fmt, ...)
{
    counter found{.ctx = {.count = 0, .enabled_only = 1}};
    va_list args;
    va_start(args, fmt);
    process_cfg_section(cfg, {postfix, nullptr}, found, fmt, args);
    va_end(args);
    return found.ctx.count;
}
