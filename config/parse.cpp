// SPDX-License-Identifier: MIT
#include "config/key_table.h"
#include "config/store.h"
#include "core/ascii.h"
#include "core/line_reader.h"
#include "core/log.h"

#include <cstring>

namespace {

constexpr char log_tag[] = "cfg";
constexpr std::string_view misc_marker = "# misc";

struct drop_entry {
    void operator()(cfg_entry *entry) const noexcept { free_entry(entry); }
};
using unique_entry = std::unique_ptr<cfg_entry, drop_entry>;

// A list that grows at its end.
class entry_list {
public:
    entry_list() = default;
    entry_list(const entry_list &) = delete;
    entry_list &operator=(const entry_list &) = delete;
    ~entry_list() { free_cfg(head_); }

    cfg_entry *head() const { return head_; }
    void append(unique_entry entry)
    {
        *end_ = entry.release();
        end_ = &(*end_)->next;
    }
    cfg_entry *release()
    {
        end_ = &head_;
        return std::exchange(head_, nullptr);
    }

private:
    cfg_entry *head_ = nullptr;
    cfg_entry **end_ = &head_;
};

// The entries behind the marker. Each replaces the value of the first earlier entry with its key; instead of looking
// through all earlier ones each time, they are gathered and the list is looked through once for all of them.
class override_list {
public:
    void add(unique_entry entry, entry_list &list)
    {
        // without memory for a larger table the list is looked through now, and again for those that follow
        if (table_.is_full() && !table_.reserve(table_.size() + 1))
            apply(list);
        if (cfg_entry *earlier = table_.find_or_add(entry.get()))
            std::swap(earlier->value, entry->value);
        else
            overrides_.append(std::move(entry));
    }

    void apply(entry_list &list)
    {
        if (table_.size() == 0)
            return;
        for (key_table::walk at{table_, list.head()}; at.next();)
            if (cfg_entry *known = at.known(); known && known->value) {
                free(at.entry()->value);
                at.entry()->value = std::exchange(known->value, nullptr);
            }
        table_.clear();
        for (cfg_entry *rest = overrides_.release(); rest;) {
            unique_entry entry{std::exchange(rest, rest->next)};
            entry->next = nullptr;
            if (entry->value) // no earlier entry took it
                list.append(std::move(entry));
        }
    }

private:
    entry_list overrides_;
    key_table table_;
};

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
        unique_entry entry{static_cast<cfg_entry *>(calloc(1, sizeof(cfg_entry)))};
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
