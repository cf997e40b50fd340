// SPDX-License-Identifier: MIT
#include "config/key.h"
#include "config/lookup.h"
#include "core/log.h"
#include "core/owner.h"

#include <climits>
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
    const size_t size = strlen(text.get());
    for (; cfg; cfg = cfg->next) {
        const bool matches = exact ? equal_keys(cfg->key, text.get()) : strncmp(cfg->key, text.get(), size) == 0;
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

void process_cfg_section(cfg_entry *cfg, section wanted, auto &on_match, const char *fmt, va_list args)
{
    if (wanted.postfix && wanted.postfix[0] != '.') {
        log_err("postfix must start with '.': '%s'", wanted.postfix);
        return;
    }
    const unique_text prefix{malloc_vprintf(fmt, args)};
    if (!prefix) {
        log_err("OOM");
        return;
    }
    const size_t size = strlen(prefix.get());
    if (size == 0 || prefix.get()[size - 1] != '.')
        log_warn("deprecated prefix doesn't end with '.': '%s' => '%s'", fmt, prefix.get());
    for (; cfg; cfg = cfg->next) {
        const bool matches = strncmp(cfg->key, prefix.get(), size) == 0 &&
                             is_section_member(cfg->key + size, wanted.postfix) &&
                             (!wanted.value || strcmp(cfg->value, wanted.value) == 0);
        if (matches && on_match(cfg) != 0)
            return;
    }
}

// Of two equal keys that of @a stands first.
cfg_it *merge(cfg_it *a, cfg_it *b)
{
    cfg_it *head = nullptr;
    cfg_it **end = &head;
    while (a && b) {
        cfg_it *&least = cfg_natural_compare(a->key, b->key) > 0 ? b : a;
        *end = least;
        end = &least->next;
        least = least->next;
    }
    *end = a ? a : b;
    return head;
}

// Cuts the longest ascending piece off the front.
cfg_it *take_run(cfg_it *&list)
{
    cfg_it *run = list;
    cfg_it *last = list;
    while (last->next && cfg_natural_compare(last->key, last->next->key) <= 0)
        last = last->next;
    list = std::exchange(last->next, nullptr);
    return run;
}

// A stable merge sort; slot i holds 2^i runs merged, those of higher slots came first.
cfg_it *sort(cfg_it *list)
{
    cfg_it *merged[sizeof(size_t) * CHAR_BIT] = {};
    while (list) {
        cfg_it *run = take_run(list);
        size_t i = 0;
        for (; merged[i]; i++)
            run = merge(std::exchange(merged[i], nullptr), run);
        merged[i] = run;
    }
    for (cfg_it *earlier : merged)
        list = merge(earlier, list);
    return list;
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
    process_cfg_section(cfg, {postfix, value}, found, fmt, args);
    va_end(args);
    return sort(found.list.head);
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
