// SPDX-License-Identifier: MIT
#include "config/key_index.h"
#include "config/store.h"
#include "core/ascii.h"
#include "core/line_reader.h"
#include "core/log.h"

#include <cstring>
#include <optional>

namespace {

constexpr char log_tag[] = "cfg";
constexpr std::string_view misc_marker = "# misc";

struct drop_entry {
    void operator()(cfg_entry *entry) const noexcept { free_entry(entry); }
};
using unique_entry = std::unique_ptr<cfg_entry, drop_entry>;

// The list while it is read: entries go to its end; from the marker on they first look for an equal key.
class entry_list {
public:
    void start_misc()
    {
        if (!index_)
            index_.emplace(head_);
    }

    void add(unique_entry entry)
    {
        if (cfg_entry *earlier = index_ ? index_->find_or_add(entry.get()) : nullptr) {
            std::swap(earlier->value, entry->value);
            return;
        }
        *end_ = entry.release();
        end_ = &(*end_)->next;
    }

    cfg_entry *head() const { return head_; }

private:
    cfg_entry *head_ = nullptr;
    cfg_entry **end_ = &head_;
    std::optional<key_index> index_;
};

// A zero byte would end the text for every reader.
std::string_view up_to_zero(std::string_view text)
{
    const size_t end = text.find('\0');
    return {text.data(), end == text.npos ? text.size() : end};
}

char *copy_of(std::string_view text)
{
    auto *copy = static_cast<char *>(malloc(text.size() + 1));
    if (copy) {
        memcpy(copy, text.data(), text.size());
        copy[text.size()] = '\0';
    }
    return copy;
}

struct key_and_value {
    std::string_view key, value;
};

// The last character of a line is dropped as its line feed, also where the last line has none.
bool split(std::string_view line, key_and_value &out)
{
    const size_t equals = line.find('=');
    if (line.front() == '\n' || line.front() == '\r' || equals == line.npos)
        return false;
    std::string_view value{line.data() + equals + 1, line.size() - equals - 1};
    if (!value.empty())
        value.remove_suffix(1);
    out = {trim_blanks(up_to_zero({line.data(), equals})), up_to_zero(value)};
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
    std::string_view line;
    key_and_value text;
    while (lines.next(line)) {
        if (line.front() == '#') {
            if (is_misc_marker(line))
                list.start_misc();
            continue;
        }
        if (!split(line, text))
            continue;
        unique_entry entry{static_cast<cfg_entry *>(calloc(1, sizeof(cfg_entry)))};
        if (!entry) {
            log_err("%d: calloc(%zu, %zu) failed", 137, size_t{1}, sizeof(cfg_entry));
            break;
        }
        entry->key = copy_of(text.key);
        if (!entry->key) {
            log_err("%d: malloc(%zu) failed", 143, text.key.size() + 1);
            break;
        }
        entry->value = copy_of(text.value);
        if (!entry->value) {
            log_err("%d: malloc(%zu) failed", 149, text.value.size() + 1);
            break;
        }
        list.add(std::move(entry));
    }
    return list.head();
}

extern "C" cfg_entry *parse(const char *path)
{
    const unique_file file{fopen(path, "re")};
    return parse_stream(file.get());
}
