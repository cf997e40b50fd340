// SPDX-License-Identifier: MIT
#include "core/owner.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <libvexa.h>

static_assert(offsetof(exec_desc, path) == 0 && offsetof(exec_desc, argc) == 4096);
static_assert(offsetof(exec_desc, argv) == 4096 + sizeof(char *) && sizeof(exec_desc) == 4096 + 2 * sizeof(char *));

namespace {

constexpr size_t longest_argument = 4096;

struct destroy_exec {
    void operator()(exec_desc *d) const noexcept { exec_destroy(d); }
};
using unique_exec = std::unique_ptr<exec_desc, destroy_exec>;

// A descriptor with its path and room for the arguments behind it.
unique_exec new_exec(const char *path, int32_t argc)
{
    unique_exec d{static_cast<exec_desc *>(calloc(1, sizeof(exec_desc)))};
    if (!d)
        return nullptr;
    d->argv = static_cast<char **>(calloc(size_t(argc) + 1, sizeof(char *)));
    if (!d->argv)
        return nullptr;
    memcpy(d->path, path, strnlen(path, sizeof d->path - 1));
    d->argc = argc;
    d->argv[0] = d->path;
    return d;
}

bool set_argument(exec_desc &d, int32_t i, const char *text)
{
    d.argv[i] = strndup(text, longest_argument);
    return d.argv[i] != nullptr;
}

} // namespace

extern "C" exec_desc *exec_create(const char *path, ...)
{
    if (!path || !*path)
        return nullptr;
    va_list args;
    va_list counted;
    va_start(args, path);
    va_copy(counted, args);
    int32_t argc = 1;
    while (va_arg(counted, const char *))
        argc++;
    va_end(counted);

    unique_exec d = new_exec(path, argc);
    for (int32_t i = 1; d && i < argc; i++)
        if (!set_argument(*d, i, va_arg(args, const char *)))
            d = nullptr;
    va_end(args);
    return d.release();
}

extern "C" void exec_destroy(exec_desc *d)
{
    if (!d)
        return;
    for (int32_t i = 1; i < d->argc; i++)
        free(d->argv[i]);
    free(d->argv);
    free(d);
}

extern "C" exec_desc *exec_copy(const exec_desc *d)
{
    if (!d)
        return nullptr;
    unique_exec copy = new_exec(d->path, d->argc);
    for (int32_t i = 1; copy && i < d->argc; i++)
        if (!set_argument(*copy, i, d->argv[i]))
            copy = nullptr;
    return copy.release();
}

extern "C" int exec_cmp(const exec_desc *a, const exec_desc *b)
{
    if (!a || !b)
        return -1;
    if (a == b)
        return 0;
    if (a->argc != b->argc)
        return -ENOENT;
    if (strncmp(a->path, b->path, sizeof a->path) != 0)
        return -ESRCH;
    for (int32_t i = 1; i < a->argc; i++)
        if (strcmp(a->argv[i], b->argv[i]) != 0)
            return i;
    return 0;
}
