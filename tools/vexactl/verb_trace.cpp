// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "output.h"

#include <libvexa.h>

namespace {

constexpr int analytics_off = 4; // of send_traces()

// An object out of an argument; otherwise what is wrong with it.
std::string read_object(const char *what, const char *argument, json_ref &out)
{
    json_error_t error;
    out.reset(json_loads(argument, JSON_DECODE_ANY, &error));
    if (!out)
        return std::string{"trace send: "} + what + " is no JSON: " + error.text;
    return json_is_object(out.get()) ? "" : std::string{"trace send: "} + what + " is no JSON object";
}

int trace_send(const arguments &args, output &out)
{
    json_ref payload, meta;
    std::string wrong = read_object("the payload", args.operand(2), payload);
    if (wrong.empty() && args.has("meta"))
        wrong = read_object("--meta", args.value("meta"), meta);
    if (!wrong.empty())
        return out.fail(status_usage, wrong);
    const json_ref trace{trace_object()};
    if (trace_object_set_namespace_new(trace.get(), json_string(args.operand(0))) != 0 ||
        trace_object_set_type_new(trace.get(), json_string(args.operand(1))) != 0)
        return out.fail(status_usage, "trace send: NAMESPACE and TYPE must be UTF-8");
    if (trace_object_set_payload_new(trace.get(), payload.release()) != 0)
        return out.fail(status_unavailable, "the trace cannot be made; -vv shows why");
    const int result = send_trace_with_meta(trace.get(), meta.get());
    if (result == analytics_off)
        return out.fail(status_negative, "analytics are switched off");
    if (result != 0)
        return out.fail(status_unavailable, "the service did not accept the trace; -vv shows why");
    return out.for_people() ? out.write("accepted\n") : out.show({json_ref{object({{"accepted", flag(true)}})}, {}});
}

constexpr verb verbs[] = {
    {.name = "trace send",
     .operands = "NAMESPACE TYPE JSON",
     .summary = "send a telemetry event; its payload is a JSON object",
     .options = {{{"meta", "JSON", "what the envelope says: an object {timestamp, type, meta, source}"}}},
     .example = "vexactl trace send radio channel-change '{\"from\":36,\"to\":52}'",
     .run = trace_send},
};

} // namespace

const verb_family trace_family = verbs;
