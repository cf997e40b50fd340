// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "configuration.h"
#include "output.h"
#include "text.h"

#include <optional>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace {

constexpr struct {
    const char *name, *path;
} locks[] = {{"report", "/var/run/report"}, {"inform profile", "/var/run/inform-profile.lock"}};

// The process that holds a lock (0 when it is out of sight), nothing when none does. The kernel's list is read, since
// trying to take a lock would be in the way of those who need it.
std::optional<int64_t> holder(const char *path, std::string_view kernel_locks)
{
    struct stat st {};
    if (stat(path, &st) < 0)
        return {};
    const std::string file =
        format(" %02x:%02x:%llu ", major(st.st_dev), minor(st.st_dev), static_cast<unsigned long long>(st.st_ino));
    for (const std::string &line : split(kernel_locks, '\n')) {
        const std::vector<std::string> words = split(line, ' '); // "1: FLOCK ADVISORY WRITE 742 fe:00:1234 0 EOF"
        if (words.size() > 5 && words[1] == "FLOCK" && line.find(file) != line.npos)
            return strtoll(words[4].c_str(), nullptr, 10);
    }
    return {};
}

json_t *holder_name(int64_t pid)
{
    std::string name;
    if (!load(format("/proc/%lld/comm", static_cast<long long>(pid)).c_str(), name).empty() || name.empty())
        return json_null();
    name.pop_back(); // line feed
    return text(name);
}

int lock_status(const arguments &, output &out)
{
    static constexpr column columns[] = {
        {"lock", "Lock"}, {"path", "Path"}, {"held", "Held"}, {"pid", "Process", kind::number}, {"name", "Name"}};
    std::string kernel_locks;
    const std::string trouble = load("/proc/locks", kernel_locks);
    if (!trouble.empty())
        return out.fail(status_unavailable, trouble);
    answer found{json_ref{list()}, columns};
    for (const auto &lock : locks) {
        const std::optional<int64_t> held = holder(lock.path, kernel_locks);
        const int64_t pid = held.value_or(0);
        append(found.document.get(), object({{"lock", text(lock.name)},
                                             {"path", text(lock.path)},
                                             {"held", flag(held.has_value())},
                                             {"pid", pid ? number(pid) : json_null()},
                                             {"name", pid ? holder_name(pid) : json_null()}}));
    }
    return out.show(found);
}

constexpr verb verbs[] = {
    {.name = "lock status",
     .summary = "which process holds the locks of the device",
     .options = {},
     .example = "vexactl lock status",
     .run = lock_status},
};

} // namespace

const verb_family lock_family = verbs;
