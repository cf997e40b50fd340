// SPDX-License-Identifier: MIT
#include "bench/config_peers.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <strings.h>
#include <vector>

cfg_entry *parse_with_getline(const char *path)
{
    FILE *file = fopen(path, "re");
    if (!file)
        return nullptr;
    cfg_entry *head = nullptr;
    cfg_entry **end = &head;
    char *line = nullptr;
    size_t room = 0;
    ssize_t size;
    while ((size = getline(&line, &room, file)) > 0) {
        if (line[0] == '#' || line[0] == '\n' || line[0] == '\r')
            continue;
        char *equals = strchr(line, '=');
        if (!equals)
            continue;
        const char *key = line;
        const char *key_end = equals;
        while (key < key_end && (*key == ' ' || *key == '\t'))
            key++;
        while (key < key_end && (key_end[-1] == ' ' || key_end[-1] == '\t'))
            key_end--;
        auto *entry = static_cast<cfg_entry *>(calloc(1, sizeof(cfg_entry)));
        entry->key = strndup(key, size_t(key_end - key));
        entry->value = strndup(equals + 1, size_t(line + size - equals) - 2);
        *end = entry;
        end = &entry->next;
    }
    free(line);
    fclose(file);
    return head;
}

static unsigned long weight(const char *s)
{
    if (!isdigit(static_cast<unsigned char>(*s)))
        return static_cast<unsigned long>(tolower(static_cast<unsigned char>(*s)));
    unsigned long number = 0;
    for (; isdigit(static_cast<unsigned char>(*s)); s++)
        number = number * 10 + static_cast<unsigned long>(*s - '0');
    return 256 + number;
}

static int compare_by_character(const char *a, const char *b)
{
    for (;; a++, b++) {
        if (!*a)
            return *b ? -1 : 0;
        if (!*b)
            return 1;
        const unsigned long left = weight(a);
        const unsigned long right = weight(b);
        if (left != right)
            return left < right ? -1 : 1;
    }
}

const cfg_entry *find_by_character(const cfg_entry *cfg, const char *key)
{
    while (cfg && compare_by_character(cfg->key, key) != 0)
        cfg = cfg->next;
    return cfg;
}

size_t count_section(const cfg_entry *cfg, const char *prefix, const char *postfix)
{
    const size_t size = strlen(prefix);
    size_t count = 0;
    for (; cfg; cfg = cfg->next) {
        if (strncmp(cfg->key, prefix, size) != 0 || cfg->key[size] < '0' || cfg->key[size] > '9')
            continue;
        const char *tail = strchr(cfg->key + size, '.');
        count += tail && strcasecmp(tail, postfix) == 0;
    }
    return count;
}

static std::vector<const cfg_entry *> sorted(const cfg_entry *cfg)
{
    std::vector<const cfg_entry *> entries;
    for (; cfg; cfg = cfg->next)
        entries.push_back(cfg);
    std::sort(entries.begin(), entries.end(),
              [](const cfg_entry *a, const cfg_entry *b) { return strcmp(a->key, b->key) < 0; });
    return entries;
}

size_t diff_by_sorting(const cfg_entry *old_cfg, const cfg_entry *new_cfg)
{
    const auto before = sorted(old_cfg);
    const auto after = sorted(new_cfg);
    size_t changes = 0;
    auto b = before.begin();
    auto a = after.begin();
    while (a != after.end() || b != before.end()) {
        const int order = a == after.end() ? 1 : b == before.end() ? -1 : strcmp((*a)->key, (*b)->key);
        changes += order != 0 || strcmp((*a)->value, (*b)->value) != 0;
        a += order <= 0;
        b += order >= 0;
    }
    return changes;
}
