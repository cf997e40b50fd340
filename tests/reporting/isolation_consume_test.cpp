// SPDX-License-Identifier: MIT
#include "tests/reporting/firmware.h"
#include "tests/support/captured_log.h"

#include <sys/file.h>
#include <sys/mount.h>
#include <sys/wait.h>

using testing::HasSubstr;

TEST(get_next_crash_log, hands_out_each_log_until_it_is_finished)
{
    EXPECT_EQ(has_crash_logs(), 0) << "no directory";
    std::map<std::string, std::string> left; // name in JSON, name of the file
    for (const char *name : {"plain.tgz", "with blank", "$(oopsdump)", "-n", "it's \"quoted\""})
        left[name] = name;
    left["not UTF-8 \xef\xbf\xbd"] = "not UTF-8 \xff";
    for (const auto &[shown, name] : left)
        put_log(name);
    put_log("of yesterday");
    the_device.put(finished_logs + "of yesterday", "");
    std::filesystem::create_symlink(logs + "plain.tgz", logs + "link");
    while (has_crash_logs()) {
        const json_ref next{get_next_crash_log()};
        const std::string shown = text_of(next.get(), "filename");
        ASSERT_EQ(left.count(shown), 1u) << shown;
        const std::string name = left[shown];
        const unique_file file{fopen((logs + name).c_str(), "r")};
        EXPECT_EQ(text_of(next.get(), "file_data"), unique_text{load_file_base64(file.get())}.get());
        EXPECT_EQ(text_of(json_object_get(next.get(), "payload"), "uplink_model"), "unknown");
        EXPECT_EQ(mark_crash_log_finished(shown.c_str()), 1);
        EXPECT_TRUE(the_device.exists(finished_logs + name));
        EXPECT_TRUE(json_is_true(json_object_get(file_json(metas + name).get(), "sent_to_net")));
        left.erase(shown);
    }
    EXPECT_TRUE(left.empty());
    EXPECT_EQ(get_next_crash_log(), nullptr);
    EXPECT_EQ(mark_crash_log_finished("plain.tgz"), 0) << "is never visited again";
    EXPECT_FALSE(the_device.exists(metas + "link"));
    EXPECT_THAT(the_device.text("/tmp/syswrapper.log"), HasSubstr("/etc/syswrapper.sh save-config\n"));
    EXPECT_FALSE(the_device.exists("/tmp/oopsdump.log")) << "nothing is run by a name";
}

TEST(isolation_meta, recovers_from_what_cannot_be_used)
{
    const std::string deep = "{\"payload\":" + std::string(100000, '[') + std::string(100000, ']') + "}";
    const std::string generate = "Failed to generate vwire_disconnect meta: No data available\n";
    const struct {
        const char *why, *meta;
        std::string line;
        int found;
    } rows[] = {
        {"empty, as after a full disk", "", "", 1},
        {"cut off", "{\"filename\": \"lo", "", 1},
        {"nested too deeply", deep.c_str(), "", 1},
        {"no object", "[1, 2]", generate, 0},
        {"no payload", "{\"filename\": \"log\"}", generate, 0},
        {"payload of another type", "{\"payload\": \"text\"}", generate, 0},
    };
    put_log("log");
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        the_device.put(metas + "log", row.meta);
        const captured_log log{4};
        EXPECT_EQ(has_crash_logs(), row.found);
        EXPECT_THAT(log.text(), HasSubstr(row.line));
        if (row.found)
            EXPECT_EQ(text_of(file_json(metas + "log").get(), "filename"), "log");
        else
            EXPECT_THAT(log.text(), HasSubstr("[warn ] crash.finish_crash_meta(): Couldn't process log: No data"));
    }
    std::filesystem::remove(metas + "log");
    std::filesystem::create_symlink("/etc/persistent/cfg/planted", metas + "log");
    const captured_log log{4};
    EXPECT_EQ(has_crash_logs(), 0);
    EXPECT_EQ(mark_crash_log_finished(nullptr), 0);
    EXPECT_THAT(log.text(), HasSubstr("Couldn't open " + metas + "log Too many levels of symbolic links\n"));
    EXPECT_FALSE(the_device.exists("/etc/persistent/cfg/planted"));
}

TEST(isolation_meta, outlives_a_full_disk)
{
    put_log("log");
    ASSERT_EQ(has_crash_logs(), 1);
    const json_ref meta = file_json(metas + "log");
    ASSERT_EQ(mount("small", metas.c_str(), "tmpfs", 0, "size=4k"), 0);
    const size_t room = 4096 - strlen(unique_text{json_dumps(meta.get(), 0)}.get()) - strlen(", \"fill\": \"\"") - 1;
    json_object_set_new(meta.get(), "fill", json_string(std::string(room, 'x').c_str()));
    json_dump_file(meta.get(), (metas + "log").c_str(), 0); // all but a byte of the disk
    const std::string before = the_device.text(metas + "log");
    const captured_log log{4};
    EXPECT_EQ(check_vwire_disconnect_logs(nullptr, 1), 0);
    EXPECT_EQ(log.text(), "[warn ] crash.finish_crash_meta(): Couldn't process log: No space left on device\n")
        << "nothing is sent";
    EXPECT_EQ(mark_crash_log_finished("log"), 1);
    EXPECT_THAT(log.text(), HasSubstr("Cannot save vwire_disconnect " + metas + "log meta file\n"));
    EXPECT_EQ(the_device.text(metas + "log"), before);
    umount(metas.c_str());
}

TEST(isolation_meta, is_worked_on_by_one_process_at_a_time)
{
    put_log("log");
    ASSERT_EQ(has_crash_logs(), 1);
    const unique_fd held{open((metas + "log").c_str(), O_RDWR)};
    ASSERT_EQ(flock(held.get(), LOCK_EX), 0);
    const pid_t patient = fork();
    if (patient == 0)
        _exit(mark_crash_log_finished("log"));
    const captured_log log{4};
    EXPECT_EQ(has_crash_logs(), 0) << "nothing is known of a log that stays locked";
    EXPECT_THAT(log.text(), HasSubstr("Couldn't process log: Device or resource busy\n"));
    int status;
    EXPECT_EQ(waitpid(patient, &status, 0), patient);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    const pid_t lucky = fork();
    if (lucky == 0)
        _exit(mark_crash_log_finished("log"));
    flock(held.get(), LOCK_UN);
    EXPECT_EQ(waitpid(lucky, &status, 0), lucky);
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_TRUE(the_device.exists(finished_logs + "log"));
}
