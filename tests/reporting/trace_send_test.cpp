// SPDX-License-Identifier: MIT
#include "core/deployment.h"
#include "tests/reporting/firmware.h"
#include "tests/support/captured_log.h"
#include "tests/support/cloud.h"

#include <sys/syscall.h>

using testing::HasSubstr;

namespace {

constexpr int64_t day_s = 86400;
int64_t passed_s;  // by which the clock since the start is ahead in this program
bool clock_stands; // at what it showed last

} // namespace

extern "C" int clock_gettime(clockid_t clock, timespec *now) noexcept
{
    static timespec last;
    if (clock != CLOCK_MONOTONIC)
        return int(syscall(SYS_clock_gettime, clock, now));
    if (!clock_stands)
        syscall(SYS_clock_gettime, clock, &last);
    *now = {last.tv_sec + passed_s, last.tv_nsec};
    return 0;
}

TEST(send_traces, describes_the_device_in_the_callers_own_meta)
{
    the_device.put("/proc/vexahal/system.info", the_device.text("/proc/vexahal/system.info") + "mfgweek=2612\n");
    const cloud services;
    const json_ref own{json_pack("{s:s}", "mine", "kept")};
    const json_ref meta{json_pack("{s:i,s:s,s:O,s:{s:s}}", "timestamp", 7, "type", "batch", "meta", own.get(), "source",
                                  "daemon", "test")};
    const json_ref payload{json_pack("{s:i}", "channel", 36)};
    const json_ref trace{trace_object()};
    trace_object_set_payload_new(trace.get(), json_incref(payload.get()));
    EXPECT_EQ(send_trace_with_meta(trace.get(), meta.get()), 0);
    EXPECT_EQ(send_trace_simple("radio", "switch", json_incref(payload.get())), 0);
    EXPECT_EQ(payload->refcount, 1u);
    EXPECT_EQ(trace->refcount, 1u);
    EXPECT_EQ(own->refcount, 2u);
    const auto journal = services.journal();
    ASSERT_EQ(json_array_size(journal.get()), 2u);
    EXPECT_EQ(services.last("method") + services.last("path"), "PUT/traces");
    const json_ref first = body_of(*journal, 0), second = body_of(*journal, 1);
    EXPECT_TRUE(json_equal(json_object_get(first.get(), "meta"), meta.get())) << "it is the caller's own";
    EXPECT_STREQ(unique_text{json_dumps(own.get(), JSON_COMPACT)}.get(),
                 R"({"mine":"kept","model":"Jay 5 Long Range","version":"6.6.77.15402","board_rev":"0",)"
                 R"("manufacturer_id":"31517","controller.version":"9.1.120","is_default":"false","mfg_week":"2612",)"
                 R"("anonymous_controller_id":"11111111-2222-4333-8444-555555555555",)"
                 R"("anonymous_site_id":"66666666-7777-4888-8999-000000000000",)"
                 R"("anonymous_device_id":"0000000000000000"})");
    const json_t *simple = second.get();
    EXPECT_STREQ(unique_text{json_dumps(json_object_get(simple, "traces"), JSON_COMPACT)}.get(),
                 R"([{"payload":{"contentType":"application/json","data":"{\"channel\":36}"},)"
                 R"("type":"switch","namespace":"radio"}])");
    EXPECT_EQ(text_of(json_object_get(simple, "meta"), "type"), "event");
}

TEST(environments, have_services_of_their_own)
{
    const cloud services;
    const auto target = [&] { return "https://" + services.last("host") + services.last("path"); };
    for (const auto &[i, name] : {std::pair{0, "prod"}, {1, "stage"}, {2, "dev"}}) {
        the_device.put("/tmp/system.cfg", std::string{"mgmt.trel.env.force=1\nmgmt.trel.env="} + name + "\n");
        EXPECT_EQ(send_trace_simple("radio", "switch", json_object()), 0);
        EXPECT_EQ(target(), std::string{deployment::trace_url[i]} + "/traces");
        EXPECT_EQ(send_ram_dump("modem", nullptr, 0), 0);
        EXPECT_EQ(target(), std::string{deployment::crash_url[i]} + "/v1/crash");
        const json_ref report = body_of(*services.journal(), services.requests() - 1);
        EXPECT_EQ(text_of(report.get(), "controller_version"), "unknown");
        EXPECT_EQ(text_of(report.get(), "anonymous_site_id"), "(none)");
    }
}

TEST(send_traces, spares_a_service_that_cannot_be_reached)
{
    const json_ref traces{trace_array()};
    const json_ref other{json_object()};
    const captured_log log{8};
    EXPECT_EQ(send_traces(other.get(), nullptr), -1);
    const cloud services;
    const auto send_to = [&](const char *manners) {
        services.tell(manners);
        return send_traces(traces.get(), nullptr);
    };
    for (int failure = 1; failure <= 5; failure++)
        EXPECT_EQ(send_to("reset"), 1);
    EXPECT_EQ(send_to("reset"), 2);
    passed_s++;
    EXPECT_EQ(send_to("status 200"), 1);
    EXPECT_THAT(log.text(), HasSubstr("[debug] trace.put_trace(): PUT 'https://")) << "not accepted, but reached";
    for (int failure = 1; failure < 5; failure++)
        EXPECT_EQ(send_to("reset"), 1);
    for (int64_t wait_s = 1; wait_s <= 1 << 17; wait_s *= 2) {
        EXPECT_EQ(send_to("reset"), 1) << wait_s;
        if (wait_s > day_s)
            break;
        clock_stands = true;
        passed_s += wait_s - 1;
        EXPECT_EQ(send_traces(other.get(), nullptr), 2) << "before the arguments are looked at";
        passed_s++;
        clock_stands = false;
    }
    passed_s += 365 * day_s;
    EXPECT_EQ(send_traces(other.get(), nullptr), 3) << "for ever";
    the_device.put("/var/run/system.analytics.mode", "0\n");
    EXPECT_EQ(send_traces(nullptr, nullptr), 4);
    const std::string text = log.text(), warning = "[warn ] trace.put_trace(): PUT 'https://";
    EXPECT_NE(text.find(warning), text.npos);
    EXPECT_EQ(text.find(warning), text.rfind(warning)) << "once per process";
}
