// SPDX-License-Identifier: MIT
#include "crash_logs.h"

#include "configuration.h"

#include <filesystem>
#include <set>

namespace {

using std::filesystem::path;

const path logs = "/etc/persistent/isolation_logs";
const path finished = "/etc/persistent/isolation_logs_sent";

std::set<path> names()
{
    std::set<path> found;
    std::error_code wrong;
    for (const auto &entry : std::filesystem::directory_iterator{logs, wrong})
        if (entry.symlink_status(wrong).type() == std::filesystem::file_type::regular)
            found.insert(entry.path().filename());
    return found;
}

bool is_finished(const path &name)
{
    std::error_code wrong;
    return std::filesystem::exists(std::filesystem::symlink_status(finished / name, wrong));
}

// NULL where there is none yet
json_ref meta_of(const path &name)
{
    std::string bytes;
    (void)load((logs / "meta" / name).c_str(), bytes);
    return json_ref{json_loadb(bytes.data(), bytes.size(), 0, nullptr)};
}

json_t *row(const path &name)
{
    std::error_code wrong;
    const json_ref meta = meta_of(name);
    const auto size = std::filesystem::file_size(logs / name, wrong);
    return object({{"name", text(name.native())},
                   {"bytes", number(wrong ? 0 : int64_t(size))},
                   {"posted", flag(vexa_json_get_bool(meta.get(), "sent_to_analytics", 0))},
                   {"attempts", number(vexa_json_read_i64(meta.get(), "send_attempts", 0))},
                   {"finished", flag(is_finished(name))}});
}

} // namespace

json_ref isolation_logs()
{
    json_ref rows{list()};
    for (const path &name : names())
        append(rows.get(), row(name));
    return rows;
}

size_t unfinished_logs()
{
    size_t count = 0;
    for (const path &name : names())
        count += !is_finished(name);
    return count;
}
