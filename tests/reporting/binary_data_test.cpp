// SPDX-License-Identifier: MIT
#include "tests/reporting/firmware.h"
#include "tests/support/captured_log.h"
#include "tests/support/cloud.h"

using testing::HasSubstr;

TEST(send_crash_binary_data, uploads_what_may_go_out)
{
    const struct {
        const char *why, *manners, *coredump;
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
        {"no address", "body []", "1\n", 0, 4, 0, "core-dump", "No upload_url in response", 1},
        {"the dump is refused", "at upload.vexa.example status 403 no", "1\n", 0, 4, -1, "core-dump",
         "crash.upload_file(): PUT 'https://", 2},
    };
    install_commands();
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

    const char name[] = "a\"$(oopsdump ran)`oopsdump`\\\"\n\xff";
    services.tell("normal");
    EXPECT_EQ(send_crash_binary_data(name, 1, 0, 0, 0, nullptr, 0, 0), 0);
    EXPECT_EQ(text_of(body_of(*services.journal(), services.requests() - 1).get(), "cmd"),
              "a\"$(oopsdump ran)`oopsdump`\\\"\n\xef\xbf\xbd");
    EXPECT_FALSE(the_device.exists("/tmp/commands")) << "nothing is run by a name";
    the_device.remove("/var/run/ntp.ready");
    EXPECT_EQ(send_ram_dump("dump", nullptr, 0), -1);
}
