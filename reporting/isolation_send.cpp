// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/shell.h"
#include "reporting/gate.h"
#include "reporting/isolation_meta.h"
#include "reporting/post_crash.h"
#include "reporting/service_url.h"

#include <algorithm>

namespace {

constexpr char log_tag[] = "crash";
constexpr int most_attempts = 5;

// False when nothing can be told of the log, not even that.
bool add_crash_log(const log_visit &log, json_t *payload, const char *func)
{
    const unique_text name = shell_word(log.name);
    const unique_text command{
        name ? malloc_printf("tar -xOzf %s%s | syswrapper.sh sensitive-data-filter", log.kind.logs, name.get())
             : nullptr};
    if (command && json_object_capture_popen(payload, "crash_log", command.get()) == 0)
        return true;
    log_err_as(func, "Capturing %s log %s failed\n", log.kind.name, log.name);
    if (command)
        save_crash_payload_cmd(command.get());
    return json_object_set_new(payload, "crash_log", json_string("Error generating crash_log payload")) == 0;
}

void note_sent(log_visit &log)
{
    (void)json_object_set_new(log.meta.get(), "sent_to_analytics", json_true());
    log.save = rewrite::changed;
}

void note_failure(log_visit &log, const char *func)
{
    json_t *meta = log.meta.get();
    const int64_t before = std::clamp<int64_t>(vexa_json_read_i64(meta, "send_attempts", 0), 0, most_attempts);
    (void)json_object_set_new(meta, "send_attempts", json_integer(before + 1));
    if (before + 1 >= most_attempts) {
        note_sent(log);
        log_info_as(func, "Failed to record %s log %s after %d attempts\n", log.kind.name, log.name, most_attempts);
        return;
    }
    log_err_as(func, "Recording %s log %s failed\n", log.kind.name, log.name);
    log.save = std::max(log.save, rewrite::retry_only);
}

int send_vwire_disconnect_log(log_visit &log, void *)
{
    if (json_is_true(json_object_get(log.meta.get(), "sent_to_analytics")))
        return 0;
    char address[crash_url_size];
    if (!crash_url("crash", address)) {
        log_debug("URL truncated");
        return ENOMEM;
    }
    if (!reserve_note(log))
        return ENOSPC;
    log_info("Processing %s log %s", log.kind.name, log.name);
    json_t *payload = json_object_get(log.meta.get(), "payload");
    if (!add_crash_log(log, payload, __func__)) {
        log_err("Payload %s is invalid\n", log.name);
        return ENOMEM;
    }
    const int posted = post_crash(address, payload, nullptr);
    (void)json_object_del(payload, "crash_log");
    if (posted != 0) {
        note_failure(log, __func__);
        return 0;
    }
    note_sent(log);
    log_info("Recorded %s log %s\n", log.kind.name, log.name);
    return 0;
}

} // namespace

extern "C" int check_vwire_disconnect_logs(const char *uplink_model, int send)
{
    const bool sends = send && reporting_allowed();
    return iterate_crash_logs(vwire_disconnect, uplink_model, sends ? send_vwire_disconnect_log : nullptr, nullptr);
}
