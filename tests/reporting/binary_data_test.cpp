// SPDX-License-Identifier: MIT
#include "tests/reporting/firmware.h"
#include "tests/support/captured_log.h"
#include "tests/support/cloud.h"

using testing::HasSubstr;

TEST(send_crash_binary_data, uploads_what_may_go_out)
{
    const struct {
        const char *why;
        std::string manners;
        const char *coredump;
        int kind, data_len, result;
        const char *type, *line;
        size_t requests;
    } rows[] = {
        {"a dump", "normal", "1\n", 0, 4, 0, "core-dump", "", 2},
        {"its owner says no", "normal", "0\n", 1, 4, 0, "app-crash", "Binary dump upload disabled by system settings",
         1},
        {"no dump", "normal", "1\n", 2, 0, 0, "oom-kill", "", 1},
        {"a negative length", "normal", "1\n", 9, -5, 0, "unknown", "", 1},
        {"RAM", "normal", "1\n", 3, 4, 0, "ram-dump", "", 2},
        {"no answer", "reset", "1\n", 0, 4, -1, "core-dump", "crash.post_crash(): POST 'https://", 1},
        {"no JSON", "body {", "1\n", 0, 4, -1, "core-dump", "Failed to parse response: ", 1},
        {"JSON beyond 2048 bytes", "body [" + std::string(3000, ' ') + "]", "1\n", 0, 4, -1, "core-dump",
         "Failed to parse response: ", 1},
        {"nested too deeply", "body " + std::string(200, '[') + std::string(200, ']'), "1\n", 0, 4, -1, "core-dump",
         "Failed to parse response: nested too deeply at line -1, column -1\n", 1},
        {"no address", "body []", "1\n", 0, 4, 0, "core-dump", "[warn ] crash.send_crash_binary_data(): No upload_url",
         1},
        {"no text", "body {\"upload_url\": 7}", "1\n", 0, 4, 0, "core-dump", "No upload_url in response", 1},
        {"another protocol", "body {\"upload_url\": \"file:///tmp/x\"}", "1\n", 0, 4, -1, "core-dump",
         "crash.upload_file(): PUT 'file:///tmp/x' failed: [1] ", 1},
        {"the dump is refused", "at upload.vexa.example status 403 no", "1\n", 0, 4, -1, "core-dump",
         "/dumps/3' failed: [403] no\n", 2},
    };
    the_device.put("/var/log/messages", "hostapd[812]: secret=word\nhostapd[813]: other\n");
    const cloud services;
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        services.tell("normal");
        services.tell(row.manners);
        the_device.put("/var/run/system.analytics.coredump", row.coredump);
        const size_t before = services.requests();
        const captured_log log{4};
        EXPECT_EQ(send_crash_binary_data("hostapd", 812, 11, 2, 60, "dump", row.data_len, row.kind), row.result);
        EXPECT_THAT(log.text(), HasSubstr(row.line));
        ASSERT_EQ(services.requests(), before + row.requests);
        const json_ref body = body_of(*services.journal(), before);
        const json_t *report = body.get();
        EXPECT_EQ(text_of(report, "type"), row.type);
        EXPECT_EQ(json_is_true(json_object_get(report, "upload")), row.data_len > 0 && *row.coredump == '1');
        EXPECT_EQ(text_of(report, row.kind == 3 ? "dump_type" : "cmd"), "hostapd");
        EXPECT_EQ(text_of(report, "process_stdout"), row.kind == 3 ? "(none)" : "hostapd[812]: secret=***\n");
        EXPECT_EQ(text_of(report, "system_cfg") != "(none)", row.kind == 3);
    }
    EXPECT_EQ(the_device.text("/tmp/vexa-cloud/dumps/1"), "dump");

    const char name[] = "a\"$(oopsdump)`oopsdump`\\\"\n\xff";
    services.tell("normal");
    EXPECT_EQ(send_crash_binary_data(name, 1, 0, 0, 0, nullptr, 0, 0), 0);
    EXPECT_EQ(text_of(body_of(*services.journal(), services.requests() - 1).get(), "cmd"),
              "a\"$(oopsdump)`oopsdump`\\\"\n\xef\xbf\xbd");
    EXPECT_FALSE(the_device.exists("/tmp/oopsdump.log")) << "nothing is run by a name";
    the_device.remove("/var/run/ntp.ready");
    EXPECT_EQ(send_ram_dump("dump", nullptr, 0), -1);
}
