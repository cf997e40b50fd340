// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

// A growing text in malloc'd memory; after a failed allocation it stays empty.
class json_text {
public:
    json_text() = default;
    json_text(const json_text &) = delete;
    json_text &operator=(const json_text &) = delete;
    ~json_text() { free(text_); }

    void add(std::string_view more)
    {
        if (char *at = room_for(more.size())) {
            memcpy(at, more.data(), more.size());
            length_ += more.size();
        }
    }
    void add(char c) { add({&c, 1}); }

    // The text, for free(); NULL when memory ran out on the way.
    char *release()
    {
        add('\0');
        char *text = failed_ ? nullptr : text_;
        if (!failed_)
            text_ = nullptr;
        return text;
    }

private:
    char *room_for(size_t more)
    {
        if (failed_ || more <= room_ - length_)
            return failed_ ? nullptr : text_ + length_;
        const size_t room = std::max(length_ + more, std::max<size_t>(256, room_ * 2));
        auto *grown = static_cast<char *>(realloc(text_, room));
        failed_ = !grown;
        if (failed_)
            return nullptr;
        text_ = grown;
        room_ = room;
        return text_ + length_;
    }

    char *text_ = nullptr;
    size_t length_ = 0, room_ = 0;
    bool failed_ = false;
};
