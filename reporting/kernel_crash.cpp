// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"
#include "device/touch_file.h"
#include "reporting/crash_payload.h"
#include "reporting/gate.h"
#include "reporting/post_crash.h"
#include "reporting/service_url.h"

#include <unistd.h>

namespace {

constexpr char log_tag[] = "crash";
constexpr char path_sent[] = "/var/run/last-crashlog.sent";
constexpr char capture_command[] = "syswrapper.sh read-crash-log | syswrapper.sh sensitive-data-filter";

} // namespace

extern "C" int send_kernel_crash(void)
{
    if (!has_oops()) {
        log_err("Tried processing a crash when no crash was found");
        return -1;
    }
    if (!reporting_allowed())
        return -ENOENT;
    if (access(path_sent, F_OK) == 0) {
        log_debug("Kernel crashlog already sent to analytics");
        return 0;
    }
    log_info("Processing kernel crash");
    char address[crash_url_size];
    if (!crash_url("kernel-crash", address)) {
        log_err("URL truncated");
        return -ESRCH;
    }
    const json_ref payload = crash_payload(capture_command, true);
    if (!payload) {
        log_err("Failed to generate kernel crash payload(MTK)");
        return -EINTR;
    }
    (void)json_object_set_new(payload.get(), "source", json_string("oopsdump"));
    (void)json_object_set_new(payload.get(), "sender", json_string("firmware"));
    if (const int result = post_crash(address, payload.get(), nullptr); result != 0) {
        log_warn("Failed to process kernel crash: %d", result);
        return -EIO;
    }
    (void)touch_mark(path_sent, 0644);
    return 0;
}
