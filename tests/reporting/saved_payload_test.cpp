// SPDX-License-Identifier: MIT
#include "tests/reporting/firmware.h"
#include "tests/support/captured_log.h"

TEST(save_crash_payload, keeps_what_fits_to_itself)
{
    the_device.put("/var/run/report_payload.txt", "an earlier one", 0644);
    const captured_log log{4};
    const json_ref payload{json_pack("{ss}", "k", std::string(512000 - strlen("{\n  \"k\": \"\"\n}"), 'x').c_str())};
    save_crash_payload(payload.get());
    EXPECT_EQ(the_device.text("/var/run/report_payload.txt").size(), 512001u);
    EXPECT_EQ(std::filesystem::status("/var/run/report_payload.txt").permissions(), std::filesystem::perms{0600});
    json_object_set_new(payload.get(), "l", json_null());
    save_crash_payload(payload.get());
    std::filesystem::remove("/var/run/report_payload.txt");
    std::filesystem::create_symlink("/tmp/elsewhere", "/var/run/report_payload.txt");
    json_object_clear(payload.get());
    save_crash_payload(payload.get());
    save_crash_payload(nullptr);
    EXPECT_EQ(log.text(), "[info ] crash.save_crash_payload(): Saved crash report payload of 512000 bytes\n"
                          "[info ] crash.save_crash_payload(): Skipped saving crash report payload because it was > "
                          "512000 (512013)\n"
                          "[error] crash.save_crash_payload(): Failed opening file for saving crash report payload\n"
                          "[error] crash.save_crash_payload(): Invalid payload\n");
    EXPECT_FALSE(the_device.exists("/tmp/elsewhere"));
}
