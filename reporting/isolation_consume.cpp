// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/open_file.h"
#include "reporting/isolation_log.h"

// The side of the isolation logs that a local consumer sees, who takes them one by one.

namespace {

constexpr char log_tag[] = "crash";

bool is_taken(const log_visit &log)
{
    return json_is_true(json_object_get(log.meta.get(), "sent_to_net"));
}

int find_untaken(log_visit &log, void *found)
{
    if (!is_taken(log))
        *static_cast<bool *>(found) = log.stop = true;
    return 0;
}

int gather_first_vwire_disconnect_log(log_visit &log, void *copy)
{
    if (is_taken(log))
        return 0;
    log.stop = true;
    const unique_file file =
        stream_of(unique_fd{openat(log.directory, log.name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)}, "r");
    if (!file) {
        const int error = errno;
        log_err("Unable to open %s%s", log.kind.logs, log.name);
        return error;
    }
    json_ref whole{json_deep_copy(log.meta.get())};
    if (!whole)
        return ENOMEM;
    (void)json_object_load_file_base64(whole.get(), "file_data", file.get());
    *static_cast<json_t **>(copy) = whole.release();
    return 0;
}

struct search {
    const char *name;
    bool found;
};

int mark_crash_log_sent_to_net(log_visit &log, void *argument)
{
    search &s = *static_cast<search *>(argument);
    if (!s.name) {
        log_err("Missing finish_filename");
        return EINVAL;
    }
    if (!is_named(log, s.name))
        return 0;
    log.stop = true;
    if (!is_taken(log)) {
        if (json_object_set_new(log.meta.get(), "sent_to_net", json_true()) != 0)
            return ENOMEM;
        log.save = rewrite::changed;
    }
    s.found = true;
    return 0;
}

} // namespace

extern "C" int has_crash_logs(void)
{
    bool found = false;
    return iterate_crash_logs(vwire_disconnect, nullptr, find_untaken, &found) == 0 && found;
}

extern "C" json_t *get_next_crash_log(void)
{
    json_t *copy = nullptr;
    (void)iterate_crash_logs(vwire_disconnect, nullptr, gather_first_vwire_disconnect_log, &copy);
    return copy;
}

extern "C" int mark_crash_log_finished(const char *filename)
{
    search s{filename, false};
    (void)iterate_crash_logs(vwire_disconnect, nullptr, mark_crash_log_sent_to_net, &s);
    return s.found;
}
