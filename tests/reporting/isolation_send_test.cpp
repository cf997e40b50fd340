// SPDX-License-Identifier: MIT
#include "tests/reporting/firmware.h"
#include "tests/support/captured_log.h"
#include "tests/support/cloud.h"

#include <sys/wait.h>

using testing::HasSubstr;

namespace {

json_ref meta_of(const std::string &name)
{
    return file_json(metas + name);
}

} // namespace

TEST(check_vwire_disconnect_logs, gives_a_log_up_after_five_failures)
{
    put_log("log");
    const cloud services;
    services.tell("status 500");
    EXPECT_EQ(check_vwire_disconnect_logs("uplink-model", 0), 0);
    const std::string saved = "/etc/syswrapper.sh save-config\n";
    EXPECT_EQ(the_device.text("/tmp/syswrapper.log"), saved);
    the_device.put("/var/run/system.analytics.mode", "0\n");
    EXPECT_EQ(check_vwire_disconnect_logs("another", 1), 0);
    EXPECT_EQ(services.requests(), 0u) << "the gate is closed";
    the_device.remove("/var/run/system.analytics.mode");
    for (int attempt = 1; attempt <= 6; attempt++) {
        SCOPED_TRACE(attempt);
        const captured_log log{4};
        EXPECT_EQ(check_vwire_disconnect_logs(nullptr, 1), 0);
        const json_ref meta = meta_of("log");
        EXPECT_EQ(json_integer_value(json_object_get(meta.get(), "send_attempts")), std::min(attempt, 5));
        EXPECT_EQ(json_is_true(json_object_get(meta.get(), "sent_to_analytics")), attempt >= 5);
        EXPECT_EQ(text_of(json_object_get(meta.get(), "payload"), "crash_log"), "(none)");
        EXPECT_EQ(services.requests(), size_t(std::min(attempt, 5)));
        EXPECT_THAT(log.text(), attempt < 5 ? HasSubstr("Recording vwire_disconnect log log failed\n\n")
                                : attempt == 5
                                    ? HasSubstr("Failed to record vwire_disconnect log log after 5 attempts\n")
                                    : HasSubstr(""));
    }
    const json_ref body = body_of(*services.journal(), 0);
    const json_t *report = body.get();
    EXPECT_EQ(text_of(report, "crash_log"), "said by <log> secret=***\n");
    EXPECT_EQ(text_of(report, "type"), "vwire_disconnect");
    EXPECT_EQ(text_of(report, "uplink_model"), "uplink-model");
    EXPECT_EQ(the_device.text("/tmp/syswrapper.log"), saved + saved) << "retries are not worth a save";
}

TEST(check_vwire_disconnect_logs, posts_once_whenever_the_consumer_comes)
{
    const std::string names[] = {"plain_1.tgz", "with blank", "$(oopsdump)", "-n", "it's; oopsdump", "bytes \xff\xfe"};
    for (const std::string &name : names)
        put_log(name);
    const cloud services;
    EXPECT_EQ(mark_crash_log_finished("plain_1.tgz"), 1) << "is finished first, and then never posted";
    const captured_log log;
    const pid_t other = fork();
    if (other == 0)
        _exit(check_vwire_disconnect_logs("model", 1));
    EXPECT_EQ(check_vwire_disconnect_logs("model", 1), 0);
    int status;
    EXPECT_EQ(waitpid(other, &status, 0), other);
    std::multiset<std::string> said, expected;
    for (const std::string &name : names)
        if (name != names[0])
            expected.insert("said by <" + (name.front() == 'b' ? "bytes \xef\xbf\xbd\xef\xbf\xbd" : name) +
                            "> secret=***\n");
    const auto journal = services.journal();
    for (size_t i = 0; i < json_array_size(journal.get()); i++)
        said.insert(text_of(body_of(*journal, i).get(), "crash_log"));
    EXPECT_EQ(said, expected) << "each once, by one of the processes";
    EXPECT_EQ(check_vwire_disconnect_logs("model", 1), 0);
    EXPECT_EQ(services.requests(), expected.size());
    EXPECT_EQ(has_crash_logs(), 1) << "the consumer may take a log that was posted";
    EXPECT_EQ(mark_crash_log_finished("-n"), 1);
    EXPECT_FALSE(the_device.exists("/tmp/oopsdump.log")) << "nothing is run by a name";
}
