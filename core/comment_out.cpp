// SPDX-License-Identifier: MIT
#include <cstring>
#include <libvexa.h>
#include <string_view>

namespace {

constexpr size_t longest_line = 255; // line feed included

// A line by its place in the file: zero bytes may stand in it, so its text tells no length.
struct placed_line {
    char text[longest_line];
    off_t start = 0;
    off_t end = 0;
    bool whole = false; // else only its first characters are in the text

    bool next(FILE *stream)
    {
        start = end;
        int c = 0;
        while (c != '\n' && (c = getc(stream)) != EOF) {
            if (const auto at = size_t(end - start); at < longest_line)
                text[at] = char(c);
            end++;
        }
        const auto size = size_t(end - start);
        whole = size < longest_line || (size == longest_line && c == '\n');
        return size > 0;
    }

    bool contains(std::string_view pattern) const
    {
        return std::string_view{text, size_t(end - start)}.find(pattern) != std::string_view::npos;
    }

    bool comment_out(FILE *stream) const
    {
        return fseeko(stream, start, SEEK_SET) == 0 && putc('#', stream) != EOF && fseeko(stream, end, SEEK_SET) == 0;
    }
};

int comment_out(FILE *stream, std::string_view pattern)
{
    if (fseeko(stream, 0, SEEK_SET) != 0)
        return -1;
    clearerr(stream);
    int result = 0;
    for (placed_line line; line.next(stream);) {
        if (!line.whole)
            result = -1;
        else if (line.contains(pattern) && !line.comment_out(stream))
            return -1;
    }
    return ferror(stream) || fflush(stream) != 0 ? -1 : result;
}

} // namespace

extern "C" int comment_out_lines(FILE *stream, char *patterns)
{
    int result = 0;
    char *rest = nullptr;
    for (const char *pattern = strtok_r(patterns, "|", &rest); pattern; pattern = strtok_r(nullptr, "|", &rest))
        if (comment_out(stream, {pattern, strlen(pattern)}) != 0)
            result = -1;
    return result;
}
