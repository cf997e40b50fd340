// SPDX-License-Identifier: MIT
#include "reporting/trace_meta.h"

#include "core/log.h"
#include "core/paths.h"

namespace {

constexpr char log_tag[] = "trace";
constexpr char path_is_default[] = "/proc/vexahal/status/IsDefault";

char device_id[65]; // empty until it is read, once

// A text that no JSON string can hold leaves its key out.
void set_text(json_t *meta, const char *key, const char *value)
{
    (void)json_object_set_new(meta, key, json_string(value));
}

template <size_t size>
void set_decimal(json_t *meta, const char *key, long value)
{
    char digits[size];
    (void)snprintf(digits, sizeof digits, "%ld", value);
    set_text(meta, key, digits);
}

template <size_t size>
void set_if_any(json_t *meta, const char *key, const char *name)
{
    char value[size];
    if (*freadvalue(path_system_cfg, name, value, sizeof value, ""))
        set_text(meta, key, value);
}

const char *anonymous_device_id()
{
    if (!*device_id)
        freadvalue(path_system_info, "device.anonid", device_id, sizeof device_id, "0000000000000000");
    return device_id;
}

void add_device(json_t *meta, const char *version)
{
    char value[64];
    char week[8];
    set_text(meta, "model", board_identify()->name);
    set_text(meta, "version", version);
    set_decimal<16>(meta, "board_rev", get_boardrevision(path_system_info));
    set_decimal<8>(meta, "manufacturer_id", get_manufid());
    set_text(meta, "controller.version", freadvalue(path_system_cfg, "corvo.version", value, sizeof value, "unknown"));
    set_text(meta, "is_default", system_is_xxx(path_is_default, 0) ? "true" : "false");
    set_text(meta, "mfg_week", freadvalue(path_system_info, "mfgweek", week, sizeof week, "2005"));
    set_if_any<65>(meta, "anonymous_controller_id", "corvo.anonymous_controller_id");
    set_if_any<65>(meta, "anonymous_site_id", "corvo.anonymous_site_id");
    set_text(meta, "anonymous_device_id", anonymous_device_id());
}

json_t *now_ms()
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return json_integer(json_int_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000);
}

// New references: to the caller's own member, or to what stands for it.
json_t *given_or(json_t *value, json_t *(*otherwise)())
{
    return value ? json_incref(value) : otherwise();
}

json_t *object_or_new(json_t *value)
{
    return json_is_object(value) ? json_incref(value) : json_object();
}

} // namespace

json_ref trace_outer_meta_object(json_t *given)
{
    json_ref outer{json_object()};
    const char *version;
    if (const int error = get_version(&version); error != 0)
        log_warn("Couldn't obtain firmware version! error code = %d", error);
    const auto event = [] { return json_string("event"); };
    json_t *all = outer.get();
    if (json_object_set_new(all, "timestamp", given_or(json_object_get(given, "timestamp"), now_ms)) != 0 ||
        json_object_set_new(all, "type", given_or(json_object_get(given, "type"), event)) != 0 ||
        json_object_set_new(all, "meta", object_or_new(json_object_get(given, "meta"))) != 0 ||
        json_object_set_new(all, "source", object_or_new(json_object_get(given, "source"))) != 0)
        return nullptr;
    add_device(json_object_get(all, "meta"), version);
    return outer;
}
