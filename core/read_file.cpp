// SPDX-License-Identifier: MIT
#include "core/read_file.h"

#include "core/log.h"
#include "core/number.h"
#include "core/open_file.h"
#include "core/text.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace {

constexpr char log_tag[] = "libvexa_util";
constexpr size_t piece_size = 255;   // of a line, zero included
constexpr size_t number_size = 16;   // of the text of an integer, zero included
constexpr size_t fraction_size = 33; // of the text of a floating-point number

// 0, or a negated errno, which an empty file leaves as it was.
int first_line(const char *path, char *buf, size_t size, bool &found)
{
    if (!path)
        return -EINVAL;
    const unique_file file = open_reader(path);
    found = file && read_line(file.get(), buf, size);
    return found ? 0 : -errno;
}

char *take_default(const char *func, char *buf, size_t size, const char *def)
{
    if (!def)
        log_err_as(func, "NULL pointer for default value");
    copy_text(buf, size, def ? def : "");
    return buf;
}

// A missing file reads as a text without digits.
template <size_t size, typename T, typename Convert>
T first_number(const char *path, T def, Convert convert)
{
    char text[size];
    return number_or(def, freadline(path, text, sizeof text, "null"), convert);
}

template <typename T, typename Convert>
T first_number_at(int dirfd, const char *path, T def, Convert convert)
{
    char text[number_size];
    const unique_file file = open_reader(path, dirfd);
    return file && read_line(file.get(), text, sizeof text) ? number_or(def, text, convert) : def;
}

// The second word of a line whose first is the key; null for any other line. The line is cut up.
const char *value_of(char *line, const char *key)
{
    constexpr char delimiters[] = " \t\r\n=";
    char *rest = nullptr;
    const char *first = strtok_r(line, delimiters, &rest);
    return first && strcmp(first, key) == 0 ? strtok_r(nullptr, delimiters, &rest) : nullptr;
}

} // namespace

bool read_line(FILE *file, char *buf, size_t size)
{
    if (size == 0) {
        errno = EINVAL;
        return false;
    }
    if (!fgets(buf, int(std::min(size, size_t{INT_MAX})), file))
        return false;
    buf[strcspn(buf, "\r\n")] = '\0';
    return true;
}

extern "C" int fsreadline(const char *path, char *buf, size_t size)
{
    bool found = false;
    const int result = first_line(path, buf, size, found);
    if (!found && buf)
        copy_text(buf, size, "");
    return result;
}

extern "C" char *freadline(const char *path, char *buf, size_t size, const char *def)
{
    bool found = false;
    const int result = first_line(path, buf, size, found);
    if (result != 0)
        log_verbose("fsreadline returned error code %d", result);
    return found ? buf : take_default(__func__, buf, size, def);
}

extern "C" char *freadlineat(int dirfd, const char *path, char *buf, size_t size, const char *def)
{
    const unique_file file = open_reader(path, dirfd);
    return file && read_line(file.get(), buf, size) ? buf : take_default(__func__, buf, size, def);
}

extern "C" int fsreadlinebykey(const char *path, const char *needle, char *buf, size_t size)
{
    if (!path || !needle || !buf || size == 0)
        return -1;
    buf[size - 1] = '\0';
    const unique_file file = open_reader(path);
    char piece[piece_size];
    while (file && fgets(piece, sizeof piece, file.get())) {
        if (strstr(piece, needle)) {
            copy_text(buf, size, piece);
            return 0;
        }
    }
    return -1;
}

extern "C" char *freadvalue(const char *path, const char *key, char *buf, size_t size, const char *def)
{
    if (size == 0)
        return buf;
    buf[size - 1] = '\0';
    const unique_file file = open_reader(path);
    char piece[piece_size];
    while (file && fgets(piece, sizeof piece, file.get())) {
        if (const char *value = value_of(piece, key)) {
            copy_text(buf, size, value);
            return buf;
        }
    }
    return take_default(__func__, buf, size, def);
}

extern "C" long freadlong(const char *path, long def)
{
    return first_number<number_size>(path, def, [](const char *s, char **end) { return strtol(s, end, 10); });
}

extern "C" unsigned long freadulong(const char *path, unsigned long def)
{
    return first_number<number_size>(path, def, [](const char *s, char **end) { return strtoul(s, end, 10); });
}

extern "C" double freaddouble(const char *path, double def)
{
    return first_number<fraction_size>(path, def, strtod);
}

extern "C" long freadlongat(int dirfd, const char *path, long def)
{
    return first_number_at(dirfd, path, def, [](const char *s, char **end) { return strtol(s, end, 0); });
}

extern "C" int64_t freadi64at(int dirfd, const char *path, int64_t def)
{
    return first_number_at(dirfd, path, def, [](const char *s, char **end) { return int64_t{strtoll(s, end, 0)}; });
}
