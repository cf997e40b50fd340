// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"

// The setters take their value over, also when they refuse it.

namespace {

constexpr char log_tag[] = "trace";

bool holds_only_strings(json_t *object)
{
    const char *key;
    json_t *value;
    json_object_foreach(object, key, value) if (!json_is_string(value)) return false;
    return json_is_object(object);
}

// What goes out is text, whatever becomes of the caller's object afterwards.
json_ref as_text(const json_t *payload)
{
    const unique_text text{json_is_object(payload) ? json_dumps(payload, JSON_COMPACT) : nullptr};
    json_ref wrapped{text ? json_object() : nullptr};
    if (!wrapped || json_object_set_new(wrapped.get(), "contentType", json_string("application/json")) != 0 ||
        json_object_set_new(wrapped.get(), "data", json_string(text.get())) != 0)
        wrapped.reset();
    return wrapped;
}

} // namespace

extern "C" json_t *trace_object(void)
{
    return json_object();
}

extern "C" json_t *trace_array(void)
{
    return json_array();
}

extern "C" int trace_array_append_new(json_t *array, json_t *trace)
{
    return json_array_append_new(array, trace);
}

extern "C" void trace_decref(json_t *json)
{
    json_decref(json);
}

extern "C" int trace_object_set_payload_new(json_t *trace, json_t *payload)
{
    const json_ref taken{payload};
    json_ref wrapped = as_text(payload);
    if (!wrapped) {
        log_debug("Failed to create payload object");
        return -1;
    }
    return json_object_set_new(trace, "payload", wrapped.release());
}

extern "C" int trace_object_set_timestamp_new(json_t *trace, json_t *value)
{
    json_ref taken{value};
    if (!json_is_integer(value)) {
        log_debug("Trace timestamp must be an integer");
        return -1;
    }
    return json_object_set_new(trace, "timestamp", taken.release());
}

extern "C" int trace_object_set_type_new(json_t *trace, json_t *value)
{
    json_ref taken{value};
    if (!json_is_string(value)) {
        log_debug("Trace type must be a string");
        return -1;
    }
    return json_object_set_new(trace, "type", taken.release());
}

extern "C" int trace_object_set_namespace_new(json_t *trace, json_t *value)
{
    json_ref taken{value};
    if (!json_is_string(value)) {
        log_debug("Trace namespace must be a string");
        return -1;
    }
    return json_object_set_new(trace, "namespace", taken.release());
}

extern "C" int trace_object_set_source_new(json_t *trace, json_t *value)
{
    json_ref taken{value};
    if (!holds_only_strings(value)) {
        log_debug("Trace source must be an object containing only string values");
        return -1;
    }
    return json_object_set_new(trace, "source", taken.release());
}

extern "C" int trace_object_set_meta_new(json_t *trace, json_t *value)
{
    json_ref taken{value};
    if (!holds_only_strings(value)) {
        log_debug("Trace meta must be an object containing only string values");
        return -1;
    }
    return json_object_set_new(trace, "meta", taken.release());
}
