// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/shell.h"
#include "core/utf8.h"
#include "reporting/crash_payload.h"
#include "reporting/gate.h"
#include "reporting/post_crash.h"
#include "reporting/service_url.h"
#include "reporting/upload_file.h"

#include <iterator>

namespace {

constexpr char log_tag[] = "crash";
constexpr char path_upload_allowed[] = "/var/run/system.analytics.coredump";
constexpr char messages_command[] = "tail -n 100 /var/log/messages | syswrapper.sh sensitive-data-filter";
constexpr char ram_dump_command[] =
    "logread | grep -i \"collecting ramdump\" -B 200 | syswrapper.sh sensitive-data-filter";

constexpr int ram_dump = 3;
constexpr const char *dump_types[] = {"core-dump", "app-crash", "oom-kill", "ram-dump"};

// What died, as the arguments tell.
struct death {
    const char *name;
    int pid, signal, number_of_crashes, process_uptime;
};

const char *type_of(int dump_kind)
{
    return dump_kind >= 0 && dump_kind < int(std::size(dump_types)) ? dump_types[dump_kind] : "unknown";
}

void add_process(json_t *payload, const death &d)
{
    (void)json_object_set_new(payload, "cmd", json_text(d.name));
    (void)json_object_set_new(payload, "signal", json_integer(d.signal));
    (void)json_object_set_new(payload, "number_of_crashes", json_integer(d.number_of_crashes));
    (void)json_object_set_new(payload, "process_uptime", json_integer(d.process_uptime));
    const unique_text name = shell_double_quoted(d.name);
    const unique_text command{
        name ? malloc_printf("tail -n 100 /var/log/messages | grep -e \"%s\\[%d\\]\" | syswrapper.sh "
                             "sensitive-data-filter",
                             name.get(), d.pid)
             : nullptr};
    (void)json_object_capture_popen(payload, "process_stdout", command.get());
}

json_ref binary_payload(const death &d, int dump_kind, bool upload)
{
    const bool is_ram_dump = dump_kind == ram_dump;
    json_ref payload = crash_payload(is_ram_dump ? ram_dump_command : messages_command, is_ram_dump);
    if (!payload)
        return payload;
    (void)json_object_set_new(payload.get(), "type", json_string(type_of(dump_kind)));
    (void)json_object_set_new(payload.get(), "upload", json_boolean(upload));
    if (is_ram_dump)
        (void)json_object_set_new(payload.get(), "dump_type", json_text(d.name));
    else
        add_process(payload.get(), d);
    return payload;
}

} // namespace

extern "C" int send_crash_binary_data(const char *name, int pid, int signal, int number_of_crashes, int process_uptime,
                                      const void *data, int data_len, int dump_kind)
{
    const bool upload_allowed = freadlong(path_upload_allowed, 0) == 1;
    const bool has_data = data && data_len > 0;
    char address[crash_url_size];
    if (!reporting_allowed())
        return -1;
    if (!crash_url("crash", address)) {
        log_debug("URL truncated");
        return -1;
    }
    const json_ref payload =
        binary_payload({name, pid, signal, number_of_crashes, process_uptime}, dump_kind, has_data && upload_allowed);
    if (!payload) {
        log_err("Failed to generate core dump payload");
        return -1;
    }
    json_ref answer;
    if (post_crash(address, payload.get(), has_data ? &answer : nullptr) != 0)
        return -1;
    if (!has_data)
        return 0;
    if (!upload_allowed) {
        log_info("Binary dump upload disabled by system settings");
        return 0;
    }
    const char *upload_url = json_string_value(json_object_get(answer.get(), "upload_url"));
    if (!upload_url) {
        log_warn("No upload_url in response");
        return 0;
    }
    return upload_file(upload_url, data, size_t(data_len));
}

extern "C" int send_ram_dump(const char *dump_type, const void *data, int data_len)
{
    return send_crash_binary_data(dump_type, 0, 0, 0, 0, data, data_len, ram_dump);
}
