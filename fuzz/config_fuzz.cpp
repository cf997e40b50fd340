// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "fuzz/check.h"

#include <cstring>
#include <libvexa.h>
#include <string>
#include <string_view>
#include <sys/mman.h>

namespace {

struct release {
    void operator()(cfg_entry *cfg) const noexcept { free_cfg(cfg); }
    void operator()(cfg_it *it) const noexcept { free_cfg_it(it); }
};
using config = std::unique_ptr<cfg_entry, release>;
using results = std::unique_ptr<cfg_it, release>;

config config_of(std::string_view text)
{
    std::string bytes{text};
    const unique_file stream{fmemopen(bytes.data(), bytes.size(), "r")};
    return config{parse_stream(stream.get())};
}

bool same_entries(const cfg_entry *a, const cfg_entry *b)
{
    for (; a && b; a = a->next, b = b->next)
        if (strcmp(a->key, b->key) != 0 || strcmp(a->value, b->value) != 0)
            return false;
    return !a && !b;
}

// Only the first of equal keys is found, and keys are equal that differ in case only.
void check_lookups(cfg_entry *cfg)
{
    for (const cfg_entry *entry = cfg; entry; entry = entry->next) {
        const cfg_entry *first = cfg;
        while (strcasecmp(first->key, entry->key) != 0)
            first = first->next;
        check(get_value(cfg, nullptr, "%s", entry->key) == first->value);
        check(cfg_natural_compare(cfg->key, entry->key) == -cfg_natural_compare(entry->key, cfg->key));
        check((cfg_natural_compare(cfg->key, entry->key) == 0) == (first == cfg));
        (void)get_bool(cfg, 7, "%s", entry->key);
        (void)get_int64(cfg, 7, "%s", entry->key);
        (void)get_cfg_key_idx(entry->key, 2);
        (void)get_key_element(entry->key, 2);
    }
}

void check_escapes(cfg_entry *cfg)
{
    for (; cfg; cfg = cfg->next) {
        const char *value = cfg->value;
        for (const char *escaped = esc_value(cfg); *escaped || *value; escaped++) {
            escaped += *escaped == '\\';
            check(*escaped == *value++);
        }
    }
}

void check_sections(cfg_entry *cfg)
{
    for (const cfg_entry *entry = cfg; entry; entry = entry->next) {
        const auto size = int(strcspn(entry->key, "0123456789"));
        const char *postfix = strchr(entry->key + size, '.');
        const results found{get_cfg_section(cfg, postfix, nullptr, "%.*s", size, entry->key)};
        uint32_t count = 0;
        for (const cfg_it *it = found.get(); it; it = it->next, count++)
            check(!it->next || cfg_natural_compare(it->key, it->next->key) <= 0);
        check(count == get_cfg_section_count(cfg, postfix, nullptr, "%.*s", size, entry->key));
        check(entry->key[size] == '\0' || count > 0);
    }
}

// What a file cannot hold is left out: a line that begins like this is none.
bool survives_saving(const cfg_entry *cfg)
{
    for (; cfg; cfg = cfg->next)
        if (cfg->key[0] == '#' || cfg->key[0] == '\r')
            return false;
    return true;
}

void check_saving(cfg_entry *cfg)
{
    const unique_fd file{memfd_create("saved", MFD_CLOEXEC)};
    const std::string path = "/proc/self/fd/" + std::to_string(file.get());
    check(save_cfg(cfg, path.c_str()) == 0);
    check(same_entries(config{parse(path.c_str())}.get(), cfg) || !survives_saving(cfg));
}

bool is_comment(const char *key)
{
    const char *dot = strrchr(key, '.');
    return dot && strcmp(dot, ".comment") == 0;
}

void check_diff(cfg_entry *before, cfg_entry *after)
{
    const results changes{get_cfg_diff_it(before, after)};
    const cfg_it *change = changes.get();
    const auto expect = [&](const cfg_entry *entry) {
        check(change && change->key == entry->key && change->value == entry->value);
        change = change->next;
    };
    for (const cfg_entry *entry = after; entry; entry = entry->next)
        if (const char *old = get_value(before, nullptr, "%s", entry->key);
            !is_comment(entry->key) && (!old || strcmp(old, entry->value) != 0))
            expect(entry);
    for (const cfg_entry *entry = before; entry; entry = entry->next)
        if (!is_comment(entry->key) && !get_value(after, nullptr, "%s", entry->key))
            expect(entry);
    check(!change);
}

} // namespace

// Two configurations with a line feed and "~" between them.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    libvexa_log_level = 0;
    const std::string_view text{reinterpret_cast<const char *>(data), size};
    const size_t middle = std::min(text.find("\n~"), size);
    const config before = config_of(text.substr(0, middle));
    const config after = config_of(text.substr(middle));
    for (cfg_entry *cfg : {before.get(), after.get()}) {
        check_lookups(cfg);
        check_escapes(cfg);
        check_sections(cfg);
        check_saving(cfg);
    }
    check_diff(before.get(), after.get());
    return 0;
}
