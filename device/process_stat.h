// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <string_view>

// What "/proc/PID/stat" says. The name is a view into the text that was read.
struct process_stat {
    std::string_view comm;
    char state;
    int32_t ppid;
    unsigned long vsz; // KiB
    long rss;          // KiB
};

// The bits between KiB and the pages that the kernel counts in.
unsigned page_shift();

// False when the text is no such line.
bool parse_process_stat(std::string_view text, unsigned shift, process_stat &out);

// The command line with blanks between its words; null for a process without one.
unique_text fread_cmdline(int proc, int32_t pid);

// "PID/ENTRY", for openat() below "/proc".
struct process_path {
    process_path(int32_t pid, std::string_view entry);
    char text[32];
};
