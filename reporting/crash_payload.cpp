// SPDX-License-Identifier: MIT
#include "reporting/crash_payload.h"

#include "core/log.h"
#include "core/paths.h"
#include "core/utf8.h"

#include <sys/utsname.h>

namespace {

constexpr char log_tag[] = "crash";
constexpr char path_is_default[] = "/proc/vexahal/status/IsDefault";
constexpr char filter_command[] = "cat /tmp/system.cfg | syswrapper.sh systemcfg-sensitive-data-filter";
constexpr size_t value_size = 64;

constexpr struct {
    const char *key, *path, *name;
} ids[] = {
    {"anonymous_controller_id", path_system_cfg, "corvo.anonymous_controller_id"},
    {"anonymous_site_id", path_system_cfg, "corvo.anonymous_site_id"},
    {"anonymous_device_id", path_system_info, "device.anonid"},
};

void set_text(json_t *payload, const char *key, const char *value)
{
    (void)json_object_set_new(payload, key, json_text(value));
}

void set_decimal(json_t *payload, const char *key, long value)
{
    char digits[24];
    (void)snprintf(digits, sizeof digits, "%ld", value);
    set_text(payload, key, digits);
}

void add_identity(json_t *payload)
{
    char value[value_size];
    for (const auto &id : ids)
        if (*freadvalue(id.path, id.name, value, sizeof value, ""))
            set_text(payload, id.key, value);
    utsname kernel;
    if (uname(&kernel) == 0) {
        set_text(payload, "kernel_version", kernel.release);
        set_text(payload, "architecture", kernel.machine);
    }
    if (const int revision = get_boardrevision(path_system_info); revision >= 0)
        set_decimal(payload, "bomrev", revision);
    set_decimal(payload, "manufacturer_id", get_manufid());
    set_text(payload, "model", board_identify()->name);
}

void add_version(json_t *payload)
{
    const char *version;
    if (const int error = get_version(&version); error != 0)
        log_err_as("crash_payload", "Couldn't obtain firmware version! error code = %d", error);
    set_text(payload, "version", version);
}

void add_state(json_t *payload)
{
    (void)json_object_set_new(payload, "is_default", json_boolean(system_is_xxx(path_is_default, 0)));
    if (const long uptime = get_uptime_from_sysinfo(); uptime >= 0) {
        (void)json_object_set_new(payload, "uptime", json_integer(uptime));
        (void)json_object_set_new(payload, "boot_time", json_integer(time(nullptr) - uptime));
    }
    char value[value_size];
    set_text(payload, "controller_version",
             freadvalue(path_system_cfg, "corvo.version", value, sizeof value, "unknown"));
    if (get_system_time_str(value, sizeof value) == 0)
        set_text(payload, "system_time", value);
}

} // namespace

json_ref crash_payload(const char *capture_command, bool with_system_cfg)
{
    json_ref payload{json_object()};
    if (!payload)
        return payload;
    set_text(payload.get(), "product_line", "network");
    add_identity(payload.get());
    add_version(payload.get());
    add_state(payload.get());
    // a log that cannot be captured leaves an empty text, and the rest of the report is worth sending
    (void)json_object_capture_popen(payload.get(), "crash_log", capture_command);
    (void)json_object_capture_popen(payload.get(), "system_cfg", with_system_cfg ? filter_command : nullptr);
    return payload;
}
