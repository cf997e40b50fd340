// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"

#include <climits>
#include <cstring>
#include <string_view>
#include <sys/stat.h>

static_assert(PATH_MAX == 4096);

namespace {

constexpr char log_tag[] = "libvexa_util";
constexpr size_t path_size = PATH_MAX;

// A path that grows and shrinks by whole components; an absolute one keeps a "/" before each, so that its root is
// empty.
struct path_builder {
    char *text;
    size_t length = 0;
    bool relative;

    bool add(std::string_view component)
    {
        const size_t slash = length > 0 || !relative;
        if (length + slash + component.size() >= path_size)
            return false;
        if (slash)
            text[length++] = '/';
        memmove(text + length, component.data(), component.size());
        length += component.size();
        return true;
    }

    // The start of a relative path loses its last component, and with it perhaps the path its start.
    void drop_last()
    {
        while (length > 0 && text[--length] != '/') {
        }
    }

    bool start_at_current_directory()
    {
        if (!getcwd(text, path_size))
            return false;
        relative = false;
        length = text[1] ? strlen(text) : 0;
        return true;
    }

    void finish()
    {
        if (length == 0)
            text[length++] = relative ? '.' : '/';
        text[length] = '\0';
    }
};

// The component at the start of a path, which then begins behind it; slashes before it are passed over.
std::string_view next_component(const char *&path)
{
    path += strspn(path, "/");
    const char *start = path;
    path += strcspn(path, "/");
    return {start, size_t(path - start)};
}

bool reduce(const char *path, path_builder &out)
{
    for (const char *rest = path; *rest;) {
        const std::string_view component = next_component(rest);
        if (component.empty() || component == ".")
            continue;
        if (component != "..") {
            if (!out.add(component)) {
                errno = ENAMETOOLONG;
                return false;
            }
            continue;
        }
        if (out.length == 0 && out.relative && !out.start_at_current_directory()) {
            log_err_as("qx_reduce_path", "Couldn't getcwd for path %s, %s", path, strerror(errno));
            return false;
        }
        out.drop_last();
    }
    out.finish();
    return true;
}

enum class found { nothing, directory, other };

// errno tells why it is not a directory.
found look_at(const char *path)
{
    struct stat info;
    if (stat(path, &info) != 0)
        return found::nothing;
    if (S_ISDIR(info.st_mode))
        return found::directory;
    errno = ENOTDIR;
    return found::other;
}

// Another process may make the same directory at the same time.
bool make_directory(const char *path, mode_t mode)
{
    return mkdir(path, mode) == 0 || (errno == EEXIST && look_at(path) == found::directory);
}

// Cuts the path at each "/", from its end, until what is left exists (a directory) or is a single name (nothing).
found cut_to_existing(char *path)
{
    for (char *slash = strrchr(path, '/'); slash && slash > path; slash = strrchr(path, '/')) {
        *slash = '\0';
        if (const found there = look_at(path); there != found::nothing)
            return there;
        if (errno != ENOENT)
            return found::other;
    }
    return found::nothing;
}

// Makes what is missing of a reduced path.
bool make_path(char *path, mode_t mode)
{
    const char *end = path + strlen(path);
    const found there = cut_to_existing(path);
    if (there == found::other || (there == found::nothing && !make_directory(path, mode)))
        return false;
    for (char *cut = path + strlen(path); cut < end; cut += strlen(cut)) {
        *cut = '/';
        if (!make_directory(path, mode))
            return false;
    }
    return true;
}

} // namespace

extern "C" char *qx_reduce_path(const char *path, char *out)
{
    unique_text own;
    if (!out) {
        own.reset(static_cast<char *>(malloc(path_size)));
        if (!own) {
            log_err("%d: malloc(%zu) failed", 1282, path_size);
            errno = ENOMEM;
            return nullptr;
        }
    }
    path_builder result{.text = own ? own.get() : out, .relative = path[0] != '/'};
    if (!reduce(path, result))
        return nullptr;
    if (!own)
        return out;
    char *shrunk = static_cast<char *>(realloc(own.get(), result.length + 1));
    char *whole = own.release();
    return shrunk ? shrunk : whole;
}

extern "C" int qx_mkdir_p(const char *path, mode_t mode)
{
    const found there = look_at(path);
    char full[path_size];
    if (there == found::other || (there == found::nothing && (!qx_reduce_path(path, full) || !make_path(full, mode))))
        return -1;
    errno = 0;
    return 0;
}
