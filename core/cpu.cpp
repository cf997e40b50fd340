// SPDX-License-Identifier: MIT
#include "core/log.h"

#include <algorithm>
#include <sched.h>
#include <unistd.h>

namespace {

constexpr char log_tag[] = "libvexa_util";
constexpr int most_cpus = 1024;
static_assert(sizeof(cpu_set_t) * 8 == most_cpus);

} // namespace

extern "C" int vexa_force_cpu(pid_t pid, int cpu)
{
    cpu_set_t set;
    CPU_ZERO(&set);
    if (cpu >= 0 && cpu < most_cpus)
        CPU_SET(size_t(cpu), &set); // else the set stays empty, and the kernel refuses it
    return sched_setaffinity(pid, sizeof set, &set);
}

extern "C" void vexa_show_cpu_mask(pid_t pid)
{
    cpu_set_t set;
    CPU_ZERO(&set);
    (void)sched_getaffinity(pid, sizeof set, &set);
    const int online = int(sysconf(_SC_NPROCESSORS_ONLN));
    char text[2 * most_cpus + 1];
    char *end = text;
    for (int i = 0; i < std::min(online, most_cpus); i++) {
        *end++ = CPU_ISSET(size_t(i), &set) ? '1' : '0';
        *end++ = ' ';
    }
    *end = '\0';
    log_debug("force pid[%d] nproc[%d] with cpu_mask=%s", pid, online, text);
}
