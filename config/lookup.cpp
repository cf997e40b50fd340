// SPDX-License-Identifier: MIT
#include "config/lookup.h"

#include "config/key.h"
#include "config/store.h"
#include "core/log.h"
#include "core/owner.h"

#include <cstring>

namespace {

constexpr char log_tag[] = "cfg";
constexpr const char *true_words[] = {"on", "enabled", "1", "enable", "active", "true"};
constexpr const char *false_words[] = {"off", "disabled", "0", "disable", "inactive", "false"};
constexpr char shell_special[] = "`\"\\$";

bool is_in(const auto &words, std::string_view text)
{
    for (const char *word : words)
        if (equal_without_case(text, word))
            return true;
    return false;
}

cfg_entry *vget_value(cfg_entry *cfg, const char *fmt, va_list args) VEXA_PRINTF(2, 0);

cfg_entry *vget_value(cfg_entry *cfg, const char *fmt, va_list args)
{
    const unique_text key{malloc_vprintf(fmt, args)};
    if (!key) {
        log_err("OOM");
        return nullptr;
    }
    return find_entry(cfg, key.get());
}

// errno is left as it stands before the conversion: a host may rely on a range error of its own to get the default.
template <auto convert, int base, typename Number>
Number vget_number(cfg_entry *cfg, Number def, const char *fmt, va_list args)
{
    const cfg_entry *entry = vget_value(cfg, fmt, args);
    if (!entry)
        return def;
    char *end;
    const auto number = convert(entry->value, &end, base);
    return errno == ERANGE || end == entry->value ? def : Number(number);
}

} // namespace

cfg_entry *find_entry(cfg_entry *cfg, const char *key)
{
    for (;; cfg = cfg->next) {
        while (cfg && !may_be_equal(cfg->key[0], key[0])) { // most of them: a loop of its own is the fastest way past
            fetch_ahead(cfg);
            cfg = cfg->next;
        }
        if (!cfg || equal_keys(cfg->key, key))
            return cfg;
    }
}

bool is_true_word(std::string_view text)
{
    return is_in(true_words, text);
}

extern "C" const char *get_value(cfg_entry *cfg, const char *def, const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    const cfg_entry *entry = vget_value(cfg, fmt, args);
    va_end(args);
    return entry ? entry->value : def;
}

extern "C" const char *get_esc_value(cfg_entry *cfg, const char *def, const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    cfg_entry *entry = vget_value(cfg, fmt, args);
    va_end(args);
    const char *value = entry ? esc_value(entry) : nullptr;
    return value ? value : def;
}

extern "C" const char *esc_value(cfg_entry *entry)
{
    if (entry->esc_value)
        return entry->esc_value;
    size_t specials = 0;
    for (const char *at = entry->value; *(at += strcspn(at, shell_special)); at++)
        specials++;
    if (specials == 0)
        return entry->esc_value = entry->value;

    const size_t size = strlen(entry->value) + specials + 1;
    char *out = static_cast<char *>(malloc(size));
    if (!out) {
        log_err("%d: malloc(%zu) failed", 507, size);
        return nullptr;
    }
    entry->esc_value = out;
    for (const char *in = entry->value; *in; *out++ = *in++)
        if (strchr(shell_special, *in))
            *out++ = '\\';
    *out = '\0';
    return entry->esc_value;
}

extern "C" int32_t get_int32(cfg_entry *cfg, int32_t def, const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    const int32_t number = vget_number<strtol, 0>(cfg, def, fmt, args);
    va_end(args);
    return number;
}

extern "C" uint32_t get_uint32(cfg_entry *cfg, uint32_t def, const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    const uint32_t number = vget_number<strtoul, 0>(cfg, def, fmt, args);
    va_end(args);
    return number;
}

extern "C" int32_t get_int32_dec(cfg_entry *cfg, int32_t def, const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    const int32_t number = vget_number<strtol, 10>(cfg, def, fmt, args);
    va_end(args);
    return number;
}

extern "C" int64_t get_int64(cfg_entry *cfg, int64_t def, const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    const int64_t number = vget_number<strtoll, 0>(cfg, def, fmt, args);
    va_end(args);
    return number;
}

extern "C" int get_bool(cfg_entry *cfg, int def, const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    const cfg_entry *entry = vget_value(cfg, fmt, args);
    va_end(args);
    if (!entry)
        return def;
    const std::string_view word = trim_blanks(entry->value);
    return is_true_word(word) ? 1 : is_in(false_words, word) ? 0 : def;
}
