// SPDX-License-Identifier: MIT
#include "reporting/isolation_log.h"

#include "core/dir_reader.h"
#include "core/log.h"
#include "core/open_file.h"
#include "core/sleep.h"
#include "core/utf8.h"
#include "reporting/isolation_meta.h"

#include <cstring>
#include <sys/file.h>
#include <sys/stat.h>

namespace {

constexpr char log_tag[] = "crash";
constexpr int tries = 10; // to lock a meta file
constexpr mode_t directory_mode = 0755;
constexpr mode_t marker_mode = 0644;
constexpr mode_t meta_mode = 0666; // less what the host's umask takes

// What a pass has open.
struct log_store {
    const log_kind &kind;
    dir_reader logs;
    unique_fd meta = unique_fd{};
    unique_fd finished = unique_fd{};
    bool changed = false; // persistent storage wants to be saved
};

// Let go by word: a child that another thread forks meanwhile would keep a lock that only closing ends.
struct unlock {
    void operator()(const unique_fd *file) const noexcept { (void)flock(file->get(), LOCK_UN); }
};
using file_lock = std::unique_ptr<const unique_fd, unlock>;

bool try_lock(int fd)
{
    return flock(fd, LOCK_EX | LOCK_NB) == 0;
}

unique_fd make_directory(const char *path, const char *func)
{
    unique_fd directory;
    if (qx_mkdir_p(path, directory_mode) == 0)
        directory = open_directory(path);
    if (!directory)
        log_err_as(func, "couldn't make dir %s: %s", path, strerror(errno));
    return directory;
}

bool is_regular(const dir_reader &directory, const directory_entry &entry)
{
    struct stat info;
    if (entry.type != DT_UNKNOWN)
        return entry.type == DT_REG;
    return fstatat(directory.fd(), entry.name, &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(info.st_mode);
}

bool is_finished(const log_store &store, const char *name)
{
    struct stat info;
    return fstatat(store.finished.get(), name, &info, AT_SYMLINK_NOFOLLOW) == 0;
}

// One try, under the lock of the directory. False when it is worth another one, else @error tells how it went.
bool try_meta(const log_store &store, const char *name, unique_fd &file, int &error, const char *func)
{
    file = open_writable(name, O_RDWR, meta_mode, store.meta.get());
    error = file ? 0 : errno;
    if (!file)
        log_err_as(func, "Couldn't open %s%s %s", store.kind.meta, name, strerror(errno));
    return !file || try_lock(file.get());
}

// 0 with the meta file locked, or an errno.
int lock_meta(const log_store &store, const char *name, unique_fd &file, const char *func)
{
    for (int i = 0; i < tries; i++) {
        if (i > 0)
            sleep_a_second();
        if (!try_lock(store.logs.fd()))
            continue;
        int error;
        const bool decided = try_meta(store, name, file, error, func);
        (void)flock(store.logs.fd(), LOCK_UN);
        if (decided)
            return error;
    }
    file.reset();
    return EBUSY;
}

bool mark_finished(const log_store &store, const char *name)
{
    const unique_fd marker = open_writable(name, O_WRONLY, marker_mode, store.finished.get());
    return bool(marker);
}

void finish_crash_meta(log_store &store, const log_visit &log, int error)
{
    if (error != 0)
        log_warn("Couldn't process %s: %s", log.name, strerror(error));
    if (json_is_true(json_object_get(log.meta.get(), "sent_to_net")))
        store.changed |= mark_finished(store, log.name);
    if (log.save == rewrite::none)
        return;
    if (!rewrite_meta(log))
        log_err("Cannot save %s %s%s meta file", log.kind.name, log.kind.meta, log.name);
    store.changed |= log.save == rewrite::changed;
}

// Whether the pass ends with this log.
bool visit(log_store &store, const char *name, const char *uplink_model, log_action action, void *argument,
           const char *func)
{
    log_visit log{store.kind, name, store.logs.fd()};
    unique_fd file;
    int error = lock_meta(store, name, file, func);
    const file_lock lock{file ? &file : nullptr};
    log.file = file.get();
    if (error == 0)
        error = prepare_crash_log_meta(log, uplink_model);
    if (error == 0 && action)
        error = action(log, argument);
    finish_crash_meta(store, log, error);
    return log.stop;
}

} // namespace

int iterate_crash_logs(const log_kind &kind, const char *uplink_model, log_action action, void *argument)
{
    log_store store{kind, dir_reader{open_directory(kind.logs)}};
    if (store.logs.fd() < 0)
        return 0;
    store.finished = make_directory(kind.finished, __func__);
    if (store.finished)
        store.meta = make_directory(kind.meta, __func__);
    if (!store.meta)
        return -1;
    bool stop = false;
    for (directory_entry entry; !stop && store.logs.next(entry);)
        if (is_regular(store.logs, entry) && !is_finished(store, entry.name))
            stop = visit(store, entry.name, uplink_model, action, argument, __func__);
    if (store.changed)
        syswrapper_impl(1, "save-config", nullptr);
    return 0;
}

bool is_named(const log_visit &log, const char *name)
{
    const json_ref text{json_text(log.name)};
    return strcmp(log.name, name) == 0 || (text && strcmp(json_string_value(text.get()), name) == 0);
}
