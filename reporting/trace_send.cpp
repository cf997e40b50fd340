// SPDX-License-Identifier: MIT
#include "core/format.h"
#include "core/log.h"
#include "reporting/gate.h"
#include "reporting/response.h"
#include "reporting/service_url.h"
#include "reporting/trace_backoff.h"
#include "reporting/trace_meta.h"

#include <curl/curl.h>

namespace {

constexpr char log_tag[] = "trace";
constexpr size_t answer_size = 1024;
constexpr size_t url_size = 256;
constexpr long http_accepted = 202;

enum result { sent = 0, not_accepted = 1, held_back = 2, given_up = 3, switched_off = 4, failed = -1 };

// The caller's traces and meta are shared, not copied.
json_ref trace_envelope_object(json_t *traces, json_t *meta)
{
    json_ref message{json_object()};
    if (!message) {
        log_debug("Failed to init envelope");
        return nullptr;
    }
    json_ref outer = trace_outer_meta_object(meta);
    if (!outer) {
        log_debug("Failed to create outer meta");
        return nullptr;
    }
    if (json_object_set_new(message.get(), "meta", outer.release()) != 0 ||
        json_object_set(message.get(), "traces", traces) != 0)
        return nullptr;
    return message;
}

int put_trace(const char *address, const json_ref &message)
{
    const unique_response response{curl_simple_response_init(answer_size)};
    if (!response) {
        log_debug("Failed to allocate curl response");
        return failed;
    }
    const auto code = CURLcode(curl_simple_put_json(address, 0, message.get(), response.get()));
    const bool first_failure = note_attempt(code == CURLE_OK);
    if (code != CURLE_OK) {
        if (first_failure)
            log_warn("PUT '%s' failed: [%d] %s", address, int(code), curl_easy_strerror(code));
        return not_accepted;
    }
    if (response->code == http_accepted)
        return sent;
    const std::string_view body = body_of(*response);
    log_debug("PUT '%s' failed: [%ld] %.*s", address, response->code, int(body.size()), body.data());
    return not_accepted;
}

int do_send_trace(const json_ref &message)
{
    char address[url_size];
    if (!format_whole(address, sizeof address, "%s/traces", trace_service())) {
        log_debug("Url truncated");
        return failed;
    }
    return put_trace(address, message);
}

} // namespace

extern "C" int send_traces(json_t *array, json_t *meta)
{
    if (!analytics_mode())
        return switched_off;
    if (has_given_up())
        return given_up;
    if (holds_back())
        return held_back;
    if (!json_is_array(array)) {
        log_debug("Traces must be an array");
        return failed;
    }
    const json_ref message = trace_envelope_object(array, meta);
    if (!message) {
        log_debug("Failed to create envelope");
        return failed;
    }
    return do_send_trace(message);
}

extern "C" int send_trace_with_meta(json_t *trace, json_t *meta)
{
    const json_ref array{json_array()};
    const bool wrapped = json_array_append(array.get(), trace) == 0;
    return send_traces(wrapped ? array.get() : nullptr, meta);
}

extern "C" int send_trace_simple(const char *namespace_name, const char *type, json_t *payload)
{
    const json_ref trace{trace_object()};
    if (!trace) {
        json_decref(payload);
        return failed;
    }
    (void)trace_object_set_payload_new(trace.get(), payload);
    (void)trace_object_set_type_new(trace.get(), json_string(type));
    (void)trace_object_set_namespace_new(trace.get(), json_string(namespace_name));
    return send_trace_with_meta(trace.get(), nullptr);
}
