// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"

#include "tests/support/memory_file.h"

#include <bit>
#include <cstdio>
#include <libvexa.h>
#include <unistd.h>

// What a sanitizer reports must not vanish with the log.
extern "C" void __sanitizer_set_report_fd(void *fd) __attribute__((weak));

namespace {

void send_reports_to(intptr_t fd)
{
    if (__sanitizer_set_report_fd)
        __sanitizer_set_report_fd(std::bit_cast<void *>(fd));
}

} // namespace

captured_log::captured_log(uint32_t level)
    : level_before_{libvexa_log_level}, syslog_before_{libvexa_log_use_syslog},
      error_before_{dup(STDERR_FILENO)}, memory_{memory_file()}
{
    libvexa_log_level = level;
    libvexa_log_use_syslog = 0;
    fflush(stderr);
    dup2(memory_, STDERR_FILENO);
    send_reports_to(error_before_);
}

captured_log::~captured_log()
{
    fflush(stderr);
    dup2(error_before_, STDERR_FILENO);
    send_reports_to(STDERR_FILENO);
    close(error_before_);
    close(memory_);
    libvexa_log_level = level_before_;
    libvexa_log_use_syslog = syslog_before_;
}

std::string captured_log::text() const
{
    const std::string prefix = program_invocation_short_name + ("[" + std::to_string(getpid()) + "]: ");
    std::string text = contents(memory_);
    for (size_t at = 0; (at = text.find(prefix, at)) != text.npos;)
        text.erase(at, prefix.size());
    return text;
}
