// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/open_file.h"

#include <cstring>
#include <sys/stat.h>

// What was last sent, for people who look into a device.

namespace {

constexpr char log_tag[] = "crash";
constexpr char path_payload[] = "/var/run/report_payload.txt";
constexpr char path_command[] = "/var/run/report_payload_cmd.txt";
constexpr size_t largest_payload = 512000;
constexpr mode_t private_mode = 0600; // reports tell of the device's configuration and its users

// False, with nothing written, when the file cannot be opened; @written tells of the rest.
bool write_line(const char *path, const char *text, bool &written)
{
    unique_fd fd = open_writable(path, O_WRONLY | O_TRUNC, private_mode);
    if (fd && fchmod(fd.get(), private_mode) != 0) // of an earlier one, too
        fd.reset();
    unique_file file = stream_of(std::move(fd), "w");
    if (!file)
        return false;
    fprintf(file.get(), "%s\n", text);
    written = close_written(std::move(file));
    return true;
}

} // namespace

extern "C" void save_crash_payload(json_t *payload)
{
    const unique_text text{json_dumps(payload, JSON_INDENT(2))};
    if (!text) {
        log_err("Invalid payload");
        return;
    }
    const size_t length = strlen(text.get());
    if (length > largest_payload) {
        log_info("Skipped saving crash report payload because it was > %d (%d)", int(largest_payload), int(length));
        return;
    }
    bool written = false;
    if (!write_line(path_payload, text.get(), written))
        log_err("Failed opening file for saving crash report payload");
    else if (written)
        log_info("Saved crash report payload of %d bytes", int(length));
}

extern "C" void save_crash_payload_cmd(const char *cmd)
{
    bool written = false;
    if (!write_line(path_command, cmd, written))
        log_err("Failed opening file for saving crash report payload command");
}
