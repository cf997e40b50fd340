// SPDX-License-Identifier: MIT
#include "sim/changes.h"

#include "sim/error.h"
#include "sim/program.h"

#include <cstdio>
#include <fstream>
#include <unistd.h>

namespace sim {

namespace fs = std::filesystem;

namespace {

bool is_same(const device_file &a, const device_file &b)
{
    return a.is_link == b.is_link && a.content == b.content;
}

void write_below(const fs::path &folder, const device_file &file)
{
    const fs::path copy = folder / file.place.relative_path();
    fs::create_directories(copy.parent_path());
    std::ofstream{copy, std::ios::binary} << (file.is_link ? "link to " : "") << file.content
                                          << (file.is_link ? "\n" : "");
}

// Copies what `others` has not, or has otherwise, and gives its places a mark: one when they are missing there.
void take_changed(const fs::path &folder, const device_state &some, const device_state &others, char missing,
                  std::map<fs::path, char> &marks)
{
    fs::create_directory(folder);
    for (const auto &[place, file] : some) {
        const auto other = others.find(place);
        if (other != others.end() && is_same(file, other->second))
            continue;
        marks[place] = other == others.end() ? missing : '~';
        write_below(folder, file);
    }
}

} // namespace

void show_changes(const device_state &before, const device_state &after)
{
    char folder[] = "/tmp/vexa-sim-XXXXXX";
    if (!mkdtemp(folder) || chdir(folder) != 0)
        fail<error>("cannot compare");
    std::map<fs::path, char> marks;
    take_changed("before", before, after, '-', marks);
    take_changed("after", after, before, '+', marks);
    for (const auto &[place, mark] : marks)
        printf("%c %s\n", mark, place.c_str());
    fflush(stdout);
    char name[] = "diff", options[] = "-urN", old_state[] = "before", new_state[] = "after";
    char *const diff[] = {name, options, old_state, new_state, nullptr};
    constexpr int trouble = 2;
    if (run_program(diff) >= trouble)
        throw error("diff did not end well");
}

} // namespace sim
