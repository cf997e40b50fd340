// SPDX-License-Identifier: MIT
#include "configuration.h"

#include "text.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>

namespace {

constexpr size_t longest_file = size_t{256} << 20; // a device would not hold more

std::string because(const char *path, int error)
{
    return "cannot read " + std::string{path} + ": " + strerror(error);
}

// A FIFO that nobody writes to reads as empty; one that somebody writes to is waited for.
unique_stream open_to_read(const char *path)
{
    const int fd = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd >= 0)
        (void)fcntl(fd, F_SETFL, O_RDONLY);
    return unique_stream{fd < 0 ? nullptr : fdopen(fd, "r")};
}

} // namespace

std::string load(const char *path, unique_cfg &cfg)
{
    const unique_stream file = open_to_read(path);
    if (!file)
        return because(path, errno);
    errno = 0;
    cfg.reset(parse_stream(file.get()));
    return ferror(file.get()) ? because(path, errno ? errno : EIO) : "";
}

std::string load(const char *path, std::string &bytes)
{
    const unique_stream file = open_to_read(path);
    if (!file)
        return because(path, errno);
    char piece[65536];
    while (const size_t got = fread(piece, 1, sizeof piece, file.get())) {
        if (bytes.size() + got > longest_file)
            return because(path, EFBIG);
        bytes.append(piece, got);
    }
    return ferror(file.get()) ? because(path, errno) : "";
}

std::string load(const char *path, std::string &bytes, unique_cfg &cfg)
{
    std::string trouble = load(path, bytes);
    if (trouble.empty() && !bytes.empty()) {
        const unique_stream memory{fmemopen(bytes.data(), bytes.size(), "re")};
        cfg.reset(parse_stream(memory.get()));
    }
    return trouble;
}

key_index::key_index(const cfg_entry *cfg)
{
    for (; cfg; cfg = cfg->next)
        first_.insert({lower_case(cfg->key), cfg}); // equal keys are those equal without case
}

const char *key_index::value(const std::string &key) const
{
    const auto found = first_.find(lower_case(key));
    return found == first_.end() ? nullptr : found->second->value;
}

// a configuration of one entry: a getter of the library has nothing to walk past
cfg_entry key_index::alone(const std::string &key) const
{
    static char nothing[] = "";
    const auto found = first_.find(lower_case(key));
    return found == first_.end() ? cfg_entry{nothing, nothing, nullptr, nullptr}
                                 : cfg_entry{found->second->key, found->second->value, nullptr, nullptr};
}

int64_t key_index::integer(const std::string &key) const
{
    cfg_entry entry = alone(key);
    errno = 0;
    return get_int64(&entry, -1, "%s", entry.key);
}

int key_index::boolean(const std::string &key) const
{
    cfg_entry entry = alone(key);
    return get_bool(&entry, -1, "%s", entry.key);
}
