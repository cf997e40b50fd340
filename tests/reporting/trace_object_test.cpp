// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

TEST(trace_object, setters_take_over_what_they_are_given)
{
    json_t *const cyclic = json_object();
    json_object_set(cyclic, "self", cyclic); // refused by jansson, so that a longer way round is taken
    json_object_set_new(cyclic, "list", json_pack("[O]", cyclic));
    const struct {
        int (*set)(json_t *, json_t *);
        const char *good, *bad, *line;
    } rows[] = {
        {trace_object_set_payload_new, R"({"a": 1})", "[1]", "Failed to create payload object"},
        {trace_object_set_timestamp_new, "1700000000000", "\"1\"", "Trace timestamp must be an integer"},
        {trace_object_set_type_new, "\"event\"", "1", "Trace type must be a string"},
        {trace_object_set_namespace_new, "\"wifi\"", "{}", "Trace namespace must be a string"},
        {trace_object_set_source_new, R"({"a": "b"})", R"({"a": "b", "c": 1})",
         "Trace source must be an object containing only string values"},
        {trace_object_set_meta_new, "{}", "[]", "Trace meta must be an object containing only string values"},
    };
    const json_ref trace{trace_object()};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line);
        const captured_log log;
        const json_ref good{json_loads(row.good, JSON_DECODE_ANY, nullptr)};
        const json_ref bad{json_loads(row.bad, JSON_DECODE_ANY, nullptr)};
        EXPECT_EQ(row.set(trace.get(), json_incref(bad.get())), -1);
        EXPECT_THAT(log.text(), testing::EndsWith(std::string("(): ") + row.line + "\n"));
        EXPECT_EQ(row.set(nullptr, json_incref(good.get())), -1) << "no trace";
        EXPECT_EQ(good->refcount, 1u) << "released";
        EXPECT_EQ(bad->refcount, 1u) << "released";
        EXPECT_EQ(row.set(trace.get(), json_incref(good.get())), 0);
        EXPECT_EQ(row.set(trace.get(), nullptr), -1);
    }
    EXPECT_STREQ(unique_text{json_dumps(trace.get(), JSON_COMPACT)}.get(),
                 R"({"payload":{"contentType":"application/json","data":"{\"a\":1}"},"timestamp":1700000000000,)"
                 R"("type":"event","namespace":"wifi","source":{"a":"b"},"meta":{}})");
    EXPECT_EQ(trace_object_set_payload_new(trace.get(), json_incref(cyclic)), -1);

    const captured_log log;
    dump_refcount(cyclic);
    EXPECT_EQ(log.text(), "[info ] trace.dump_refcount(): refcount=2\n[info ] trace.dump_refcount(): list:\n"
                          "[info ] trace.dump_refcount(): refcount=1\n[info ] trace.dump_refcount(): [0]:\n"
                          "[info ] trace.dump_refcount(): refcount=2\n");
    json_object_clear(cyclic);
    trace_decref(cyclic);
    trace_decref(nullptr);
}
