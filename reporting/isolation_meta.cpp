// SPDX-License-Identifier: MIT
#include "reporting/isolation_meta.h"

#include "core/load_json.h"
#include "core/log.h"
#include "core/utf8.h"
#include "reporting/crash_payload.h"

#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr char log_tag[] = "crash";
constexpr off_t largest_meta = 1 << 20; // what is larger is none of ours
constexpr size_t longest_note = sizeof ", \"send_attempts\": 5";

// 0 with the JSON value that the file holds, null when that is none; or an errno.
int read_meta(int file, json_ref &meta)
{
    struct stat info;
    if (fstat(file, &info) != 0)
        return errno;
    if (info.st_size == 0 || info.st_size > largest_meta)
        return 0;
    const auto size = size_t(info.st_size);
    const unique_text text{static_cast<char *>(malloc(size))};
    if (!text)
        return ENOMEM;
    const ssize_t got = pread(file, text.get(), size, 0);
    if (got < 0)
        return errno;
    json_error_t error;
    meta.reset(load_json({text.get(), size_t(got)}, error));
    return 0;
}

int add_extra_payload(json_t *payload, const char *uplink_model)
{
    return json_object_set_new(payload, "uplink_model", json_text(uplink_model ? uplink_model : "unknown"));
}

int create_meta(log_visit &log, const char *uplink_model)
{
    log.meta.reset(json_object());
    json_ref payload = crash_payload(nullptr);
    json_t *meta = log.meta.get();
    json_t *extended = payload.get();
    if (json_object_set_new(meta, "filename", json_text(log.name)) != 0 ||
        json_object_set_new(meta, "sent_to_analytics", json_false()) != 0 ||
        json_object_set_new(meta, "payload", payload.release()) != 0 ||
        json_object_set_new(extended, "type", json_string(log.kind.name)) != 0)
        return ENOMEM;
    if (add_extra_payload(extended, uplink_model) != 0) {
        log_err_as("prepare_crash_log_meta", "Failed to add extra payload");
        return ENOMEM;
    }
    log.save = rewrite::changed;
    return 0;
}

int read_or_create(log_visit &log, const char *uplink_model)
{
    if (const int error = read_meta(log.file, log.meta); error != 0)
        return error;
    if (!log.meta)
        return create_meta(log, uplink_model);
    return json_is_object(json_object_get(log.meta.get(), "payload")) ? 0 : ENODATA;
}

bool write_all(int file, std::string_view text)
{
    for (off_t at = 0; !text.empty();) {
        const ssize_t n = pwrite(file, text.data(), text.size(), at);
        if (n < 0 && errno != EINTR)
            return false;
        at += n > 0 ? n : 0;
        text.remove_prefix(n > 0 ? size_t(n) : 0);
    }
    return true;
}

// False without room. File systems that cannot tell beforehand have their say when the text is written.
bool reserve(int file, off_t length)
{
    int result;
    do {
        result = fallocate(file, FALLOC_FL_KEEP_SIZE, 0, length);
    } while (result != 0 && errno == EINTR);
    return result == 0 || errno == EOPNOTSUPP || errno == ENOSYS;
}

} // namespace

int prepare_crash_log_meta(log_visit &log, const char *uplink_model)
{
    const int error = read_or_create(log, uplink_model);
    if (error != 0)
        log_err("Failed to generate %s meta: %s", log.kind.name, strerror(error));
    return error;
}

bool reserve_note(const log_visit &log)
{
    const unique_text text{json_dumps(log.meta.get(), 0)};
    return text && reserve(log.file, off_t(strlen(text.get()) + longest_note));
}

// The file itself is rewritten, for its lock is what others wait for; so room for the new text is taken first.
bool rewrite_meta(const log_visit &log)
{
    const unique_text text{json_dumps(log.meta.get(), 0)};
    if (!text)
        return false;
    const auto length = off_t(strlen(text.get()));
    return reserve(log.file, length) && write_all(log.file, text.get()) && ftruncate(log.file, length) == 0;
}
