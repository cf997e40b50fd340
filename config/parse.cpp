// SPDX-License-Identifier: MIT
#include "config/override_list.h"
#include "core/ascii.h"
#include "core/line_reader.h"
#include "core/log.h"

#include <cstring>

namespace {

constexpr char log_tag[] = "cfg";
constexpr std::string_view misc_marker = "# misc";

// A zero byte ends the text for every reader.
std::string_view up_to_zero(std::string_view text)
{
    const size_t end = text.find('\0');
    return {text.data(), end == text.npos ? text.size() : end};
}

// What a text of this size takes: at least as much as the allocator gives anyway, so that short texts can be copied
// without a branch on their size.
constexpr size_t short_block = 24;
static_assert(short_block <= line_reader::slack);

constexpr size_t block_size(std::string_view text)
{
    return text.size() < short_block ? short_block : text.size() + 1;
}

[[gnu::always_inline]] inline char *copy_of(std::string_view text)
{
    auto *copy = static_cast<char *>(malloc(block_size(text)));
    if (!copy)
        return nullptr;
    if (text.size() < short_block)
        memcpy(copy, text.data(), short_block);
    else
        memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
}

// calloc() would take a part of the whole that can be measured.
unique_entry empty_entry()
{
    unique_entry entry{static_cast<cfg_entry *>(malloc(sizeof(cfg_entry)))};
    if (entry)
        *entry = {};
    return entry;
}

struct key_and_value {
    std::string_view key, value;
};

// The last character of a line is dropped as its line feed, also where the last line has none.
bool split(std::string_view line, bool may_hold_zero, key_and_value &out)
{
    const size_t equals = line.find('=');
    if (line.front() == '\n' || line.front() == '\r' || equals == line.npos)
        return false;
    std::string_view value{line.data() + equals + 1, line.size() - equals - 1};
    if (!value.empty())
        value.remove_suffix(1);
    std::string_view key{line.data(), equals};
    if (may_hold_zero) {
        key = up_to_zero(key);
        value = up_to_zero(value);
    }
    out = {trim_blanks(key), value};
    return true;
}

bool is_misc_marker(std::string_view comment)
{
    return comment.size() >= misc_marker.size() && memcmp(comment.data(), misc_marker.data(), misc_marker.size()) == 0;
}

} // namespace

extern "C" cfg_entry *parse_stream(FILE *stream)
{
    if (!stream)
        return nullptr;
    line_reader lines{stream};
    entry_list list;
    override_list overrides;
    bool in_misc = false;
    std::string_view line;
    key_and_value text;
    while (lines.next(line)) {
        if (line.front() == '#') {
            in_misc = in_misc || is_misc_marker(line);
            continue;
        }
        if (!split(line, lines.met_zero(), text))
            continue;
        unique_entry entry = empty_entry();
        if (!entry) {
            log_err("%d: calloc(%zu, %zu) failed", 137, size_t{1}, sizeof(cfg_entry));
            break;
        }
        entry->key = copy_of(text.key);
        if (!entry->key) {
            log_err("%d: malloc(%zu) failed", 143, block_size(text.key));
            break;
        }
        entry->value = copy_of(text.value);
        if (!entry->value) {
            log_err("%d: malloc(%zu) failed", 149, block_size(text.value));
            break;
        }
        if (in_misc)
            overrides.add(std::move(entry), list);
        else
            list.append(std::move(entry));
    }
    overrides.apply(list);
    return list.release();
}

extern "C" cfg_entry *parse(const char *path)
{
    const unique_file file{fopen(path, "re")};
    return parse_stream(file.get());
}
