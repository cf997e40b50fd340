// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/number.h"
#include "core/owner.h"

extern "C" {
timespec qx_now = {};
}

namespace {

constexpr char log_tag[] = "libvexa_util";

} // namespace

extern "C" time_t vexa_grab_ts(void)
{
    clock_gettime(CLOCK_MONOTONIC, &qx_now);
    return qx_now.tv_sec;
}

extern "C" void vexa_set_ts(time_t seconds)
{
    qx_now.tv_sec = seconds;
}

extern "C" const char *vexa_json_get_str(json_t *obj, const char *key, const char *def)
{
    const char *text = json_string_value(json_object_get(obj, key));
    return text ? text : def;
}

extern "C" int vexa_json_get_bool(json_t *obj, const char *key, int def)
{
    const json_t *value = json_object_get(obj, key);
    if (json_is_boolean(value))
        return json_is_true(value);
    return json_is_integer(value) ? json_integer_value(value) != 0 : def;
}

extern "C" int64_t vexa_json_read_i64(json_t *obj, const char *key, int64_t def)
{
    const json_t *value = json_object_get(obj, key);
    return json_is_integer(value) ? json_integer_value(value) : def;
}

extern "C" long vexa_json_read_long(json_t *obj, const char *key, long def)
{
    return long(vexa_json_read_i64(obj, key, def));
}

extern "C" int vexa_json_add_i64(json_t *obj, const char *key, int64_t delta)
{
    return json_object_set_new(obj, key, json_integer(wrapping_add(vexa_json_read_i64(obj, key, 0), delta)));
}

extern "C" int vexa_json_add_long(json_t *obj, const char *key, long delta)
{
    return vexa_json_add_i64(obj, key, delta);
}

extern "C" int vexa_json_read_array(json_t *obj, const char *key, int64_t **out, size_t *count)
{
    const json_t *array = json_object_get(obj, key);
    const size_t size = json_array_size(array);
    if (size == 0)
        return -1;
    unique_malloc<int64_t> numbers{static_cast<int64_t *>(calloc(size, sizeof(int64_t)))};
    if (!numbers)
        return -1;
    size_t found = 0;
    for (size_t i = 0; i < size; i++) {
        const json_t *element = json_array_get(array, i);
        if (json_is_integer(element))
            numbers.get()[found++] = json_integer_value(element);
    }
    if (found == 0)
        return -1;
    *out = numbers.release();
    *count = found;
    return 0;
}

extern "C" int vexa_json_append_array(json_t *obj, const char *key, int64_t value)
{
    json_t *array = json_object_get(obj, key);
    if (array)
        return json_array_append_new(array, json_integer(value));
    json_ref fresh{json_array()};
    if (!fresh || json_array_append_new(fresh.get(), json_integer(value)) != 0)
        return -1;
    return json_object_set_new(obj, key, fresh.release());
}

extern "C" int vexa_json_integer_value_from_obj(json_t *obj, const char *obj_name, const char *key, int accept_integer,
                                                int *value)
{
    if (!value) {
        log_err("NULL pointer provided for value, obj_name %s, key %s", obj_name, key);
        return 0;
    }
    const json_t *member = json_object_get(obj, key);
    if (!member) {
        log_debug("no obj for obj_name %s, key %s", obj_name, key);
        return 0;
    }
    if (json_is_string(member)) {
        const char *text = json_string_value(member);
        if (!*text) {
            log_debug("no string for obj_name %s, key %s", obj_name, key);
            return 0;
        }
        if (sscanf(text, "%i", value) == 1)
            return 1;
        log_debug("invalid integer '%s' in object %s, key %s", text, obj_name, key);
        return 0;
    }
    if (!json_is_integer(member)) {
        log_debug("JSON object is of type %d, not a string or integer, obj_name %s, key %s", int(json_typeof(member)),
                  obj_name, key);
        return 0;
    }
    if (!accept_integer) {
        log_debug("JSON object as integer is not acceptable, obj_name %s, key %s", obj_name, key);
        return 0;
    }
    *value = int(json_integer_value(member));
    return 2;
}

extern "C" json_t *mac_str_to_oui_json_string(const char *mac)
{
    unsigned char b[6];
    if (!mac || sscanf(mac, "%hhx:%hhx:%hhx:%hhx:%hhx:%hhx", &b[0], &b[1], &b[2], &b[3], &b[4], &b[5]) < 3)
        return nullptr;
    return json_sprintf("%02x%02x%02x", b[0], b[1], b[2]);
}

extern "C" int json_object_load_file_base64(json_t *obj, const char *key, FILE *stream)
{
    const unique_text text{load_file_base64(stream)};
    const int stored = json_object_set_new(obj, key, json_string(text ? text.get() : ""));
    return text ? stored : -1;
}
