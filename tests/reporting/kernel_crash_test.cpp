// SPDX-License-Identifier: MIT
#include "tests/reporting/firmware.h"
#include "tests/support/captured_log.h"
#include "tests/support/cloud.h"

#include <sys/stat.h>
#include <sys/wait.h>

using testing::HasSubstr;

namespace {

std::string keys_of(json_t *object)
{
    std::string keys;
    const char *key;
    json_t *value;
    json_object_foreach(object, key, value) keys += std::string(key) + " ";
    return keys;
}

} // namespace

TEST(send_kernel_crash, reports_once)
{
    const cloud services;
    const captured_log log{8};
    const pid_t healthy = fork();
    if (healthy == 0)
        _exit(send_kernel_crash() == -1 && !has_oops() ? 0 : 1);
    int status;
    EXPECT_EQ(waitpid(healthy, &status, 0), healthy);
    EXPECT_EQ(status, 0);
    the_device.put("/tmp/oops", "Oops: secret=x\n");

    const struct {
        const char *file, *closed, *open; // what it holds; nullptr: it is not there
    } gate[] = {
        {"/var/run/ntp.ready", nullptr, ""},
        {"/var/run/ipready.br0", nullptr, "192.0.2.20\n"},
        {"/var/run/system.analytics.mode", "0\n", "1\n"},
    };
    const auto set = [](const char *file, const char *text) {
        text ? the_device.put(file, text) : the_device.remove(file);
    };
    for (const auto &row : gate) {
        set(row.file, row.closed);
        EXPECT_EQ(send_kernel_crash(), -ENOENT) << row.file;
        set(row.file, row.open);
    }
    EXPECT_EQ(services.requests(), 0u);

    services.tell("status 503");
    EXPECT_EQ(send_kernel_crash(), -EIO);
    EXPECT_THAT(log.text(), HasSubstr("/v1/kernel-crash' failed: [503] "));
    EXPECT_THAT(log.text(), HasSubstr("[warn ] crash.send_kernel_crash(): Failed to process kernel crash: -1\n"));
    services.tell("normal");
    EXPECT_EQ(send_kernel_crash(), 0);
    EXPECT_EQ(send_kernel_crash(), 0);
    EXPECT_THAT(log.text(), testing::EndsWith("Kernel crashlog already sent to analytics\n"));

    ASSERT_EQ(services.requests(), 2u) << "a refusal and a success";
    EXPECT_EQ(services.last("path"), "/v1/kernel-crash");
    const json_ref body = body_of(*services.journal(), 1);
    json_t *report = body.get();
    EXPECT_EQ(keys_of(report), "product_line anonymous_controller_id anonymous_site_id kernel_version architecture "
                               "bomrev manufacturer_id model version is_default uptime boot_time controller_version "
                               "system_time crash_log system_cfg source sender ");
    EXPECT_EQ(text_of(report, "manufacturer_id"), "31517");
    EXPECT_EQ(text_of(report, "version"), "6.6.77.15402");
    EXPECT_EQ(text_of(report, "crash_log"), "Oops: secret=***\n");
    EXPECT_THAT(text_of(report, "system_cfg"), HasSubstr("system.hostname=ap-lobby\n"));
    EXPECT_EQ(the_device.text("/var/run/report_payload.txt"),
              std::string(unique_text{json_dumps(report, JSON_INDENT(2))}.get()) + "\n");
    struct stat info;
    EXPECT_EQ(stat("/var/run/last-crashlog.sent", &info), 0);
    EXPECT_EQ(info.st_mode, 0100644u);

    std::filesystem::create_symlink("/tmp/elsewhere", "/var/run/last-crashlog.txt");
    EXPECT_EQ(oops_clear(), 0);
    EXPECT_EQ(has_oops(), 0);
    EXPECT_FALSE(the_device.exists("/tmp/elsewhere"));
    EXPECT_EQ(the_device.text("/var/run/last-crashlog.txt"), "Oops: secret=x\n");
    EXPECT_EQ(the_device.text("/tmp/oopsdump.log"),
              "oopsdump -e\noopsdump -e\noopsdump \noopsdump \noopsdump \noopsdump -c\n")
        << "asked once per process";
}

TEST(capture_commands, are_these)
{
    the_device.remove("/bin/syswrapper.sh"); // so that each fails, and is shown
    the_device.put("/tmp/oops", "");
    put_log("vwire_1.tgz");
    const cloud services;
    const captured_log log{2};
    EXPECT_EQ(send_kernel_crash(), 0);
    EXPECT_EQ(send_crash_binary_data("hostapd", 812, 0, 0, 0, nullptr, 0, 0), 0);
    EXPECT_EQ(send_ram_dump("firmware", nullptr, 0), 0);
    EXPECT_EQ(check_vwire_disconnect_logs(nullptr, 1), 0);
    for (const char *command : {
             "syswrapper.sh read-crash-log | syswrapper.sh sensitive-data-filter",
             "cat /tmp/system.cfg | syswrapper.sh systemcfg-sensitive-data-filter",
             "tail -n 100 /var/log/messages | syswrapper.sh sensitive-data-filter",
             "tail -n 100 /var/log/messages | grep -e \"hostapd\\[812\\]\" | syswrapper.sh sensitive-data-filter",
             "logread | grep -i \"collecting ramdump\" -B 200 | syswrapper.sh sensitive-data-filter",
             "tar -xOzf /etc/persistent/isolation_logs/vwire_1.tgz | syswrapper.sh sensitive-data-filter",
         })
        EXPECT_THAT(log.text(), HasSubstr(std::string{"popen_alloc_output(): '"} + command + "' returned rc="));
}
