// SPDX-License-Identifier: MIT
#include "sim/tree.h"

#include "sim/error.h"

#include <algorithm>
#include <fcntl.h>
#include <fstream>
#include <ftw.h>
#include <set>
#include <sys/stat.h>

namespace sim {

namespace fs = std::filesystem;

namespace {

constexpr char machine[] = ".real";    // in a covered folder: what it covers
constexpr char store_place[] = "/tmp"; // the tmpfs is mounted here; one of its folders covers it again

bool is_process(const std::string &name)
{
    return name.find_first_not_of("0123456789") == name.npos;
}

descriptor open_folder(const path &folder)
{
    descriptor opened{open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)};
    if (!opened)
        fail<error>("cannot open " + folder.string());
    return opened;
}

std::string flat(const path &folder)
{
    std::string name = folder.string();
    std::replace(name.begin(), name.end(), '/', ':');
    return name;
}

struct stat stat_of(const path &entry)
{
    struct stat st {};
    (void)stat(entry.c_str(), &st);
    return st;
}

mode_t mode_of(const descriptor &folder)
{
    struct stat st {};
    (void)fstat(folder.get(), &st);
    return st.st_mode & 07777;
}

void make_link(const path &link, const path &target)
{
    if (symlink(target.c_str(), link.c_str()) != 0 && errno != EEXIST)
        fail<error>("cannot make the link " + link.string());
}

// What a link in the place of an entry of the machine must say: the same as a link of the machine, which may lead out
// of its folder. (In /proc they are no texts: each process has its own.)
path link_text(const fs::directory_entry &real, const path &folder)
{
    const bool is_text = real.is_symlink() && real.path().native().rfind("/proc/", 0) != 0;
    return is_text ? fs::read_symlink(real) : folder / real.path().filename();
}

bool is_untouched(const fs::directory_entry &entry)
{
    const path real = entry.path().parent_path() / machine / entry.path().filename();
    return entry.is_symlink() && fs::exists(fs::symlink_status(real)) &&
           fs::read_symlink(entry) == link_text(fs::directory_entry(real), machine);
}

bool leads_into_machine(const path &target)
{
    return std::find(target.begin(), target.end(), machine) != target.end();
}

struct kept_entry {
    path entry;
    descriptor copy;
    bool is_folder;
};

// the entries of `folder` that lead to the paths
std::vector<kept_entry> copies_below(const path &folder, const descriptor &opened, const std::vector<path> &paths)
{
    std::set<path> names;
    for (const path &p : paths)
        if (const path relative = p.lexically_relative(folder); !relative.empty() && *relative.begin() != "..")
            names.insert(*relative.begin());
    std::vector<kept_entry> copies;
    for (const path &name : names) {
        struct stat st {};
        if (name != "." && fstatat(opened.get(), name.c_str(), &st, 0) == 0)
            copies.push_back({folder / name, mounts::copy_of(opened, name), S_ISDIR(st.st_mode)});
    }
    return copies;
}

void place(const kept_entry &kept)
{
    if (kept.is_folder)
        fs::create_directory(kept.entry);
    else
        std::ofstream(kept.entry).flush();
    mounts::attach(kept.copy, kept.entry);
}

int remove_entry(const char *name, const struct stat *, int, struct FTW *)
{
    (void)::remove(name); // what is a mount stays
    return 0;
}

} // namespace

tree::tree(std::vector<path> kept) : kept_{std::move(kept)}, machine_tmp_{open_folder(store_place)}
{
    if (!mounts::mount_new("tmpfs", store_place, "mode=755"))
        fail<refused>("the kernel refuses a tmpfs");
    store_ = open_folder(store_place);
    device_ = stat_of(store_place).st_dev;
}

bool tree::owns(const path &folder) const
{
    return stat_of(folder).st_dev == device_;
}

bool tree::link_into_machine(const path &entry) const
{
    struct stat st {};
    return lstat(entry.c_str(), &st) == 0 && S_ISLNK(st.st_mode) && st.st_dev == device_ && !owns(entry);
}

void tree::cover(const path &folder, shows content)
{
    const descriptor covered_folder = folder == store_place ? std::move(machine_tmp_) : open_folder(folder);
    const std::vector<kept_entry> kept = copies_below(folder, covered_folder, kept_);
    const descriptor entries = mounts::copy_of(covered_folder, ""); // before there is a mount on it
    const mode_t mode = mode_of(covered_folder);
    const std::string name = flat(folder);
    if (mkdirat(store_.get(), name.c_str(), mode) != 0)
        fail<error>("cannot cover " + folder.string());
    mounts::attach(mounts::copy_of(store_, name), folder);
    (void)chmod(folder.c_str(), mode);
    if (content == shows::nothing) {
        for (const kept_entry &k : kept)
            place(k);
    } else {
        fs::create_directory(folder / machine);
        mounts::attach(entries, folder / machine);
    }
    covers_.push_back({folder, content});
    fill(covers_.back());
}

void tree::fill(const covered &c)
{
    if (c.content == shows::nothing)
        return;
    const bool without_processes = c.folder == "/proc";
    for (const fs::directory_entry &real : fs::directory_iterator(c.folder / machine)) {
        const path name = real.path().filename();
        const path entry = c.folder / name;
        if (without_processes && is_process(name))
            continue;
        if (c.content == shows::links || real.is_symlink() || !real.is_directory())
            make_link(entry, link_text(real, machine));
        else if (fs::create_directory(entry))
            mounts::attach(mounts::copy_of(real.path()), entry);
    }
}

// A link to a folder of the machine becomes a folder of links to its entries.
void tree::expand(const path &link)
{
    const path target = fs::read_symlink(link);
    const path from_inside = target.is_absolute() ? target : ".." / target;
    std::vector<std::pair<path, path>> links;
    for (const fs::directory_entry &real : fs::directory_iterator(link))
        links.emplace_back(real.path(), link_text(real, from_inside));
    fs::remove(link);
    fs::create_directory(link);
    for (const auto &[entry, text] : links)
        make_link(entry, text);
}

void tree::own(const path &folder)
{
    path reached = "/";
    for (const path &step : folder.relative_path()) {
        reached /= step;
        if (link_into_machine(reached) && fs::is_directory(reached))
            expand(reached);
    }
    if (!fs::exists(folder)) {
        own(folder.parent_path());
        fs::create_directory(folder);
        return;
    }
    if (owns(folder))
        return;
    const path real = fs::canonical(folder);
    if (real == "/")
        throw error("a device cannot add entries to /");
    cover(real, real == "/usr" ? shows::mounts : shows::links);
}

void tree::put(const path &file, std::string_view text, mode_t mode)
{
    own(file.parent_path());
    (void)unlink(file.c_str());
    const descriptor out{open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode)};
    if (!out || write(out.get(), text.data(), text.size()) != ssize_t(text.size()) || fchmod(out.get(), mode) != 0)
        fail<error>("cannot write " + file.string());
}

void tree::put_link(const path &link, const path &target)
{
    own(link.parent_path());
    (void)unlink(link.c_str());
    make_link(link, target);
}

void tree::remove_all(const path &entry) const
{
    constexpr int open_folders = 16;
    struct stat st {};
    // never into a mount: there the machine begins
    if (lstat(entry.c_str(), &st) == 0 && st.st_dev == device_)
        (void)nftw(entry.c_str(), remove_entry, open_folders, FTW_DEPTH | FTW_PHYS | FTW_MOUNT);
}

void tree::remove(const path &entry)
{
    own(entry.parent_path());
    remove_all(entry);
    if (fs::symlink_status(entry).type() != fs::file_type::not_found)
        throw error("cannot remove " + entry.string());
}

std::map<path, device_file> tree::files() const
{
    std::map<path, device_file> found;
    for (const covered &c : covers_)
        for (auto entry = fs::recursive_directory_iterator(c.folder); entry != fs::end(entry); ++entry) {
            struct stat st {};
            const bool own = lstat(entry->path().c_str(), &st) == 0 && st.st_dev == device_;
            if (!own || entry->path().filename() == machine)
                entry.disable_recursion_pending();
            else if (S_ISREG(st.st_mode))
                found[entry->path()] = {entry->path(), read_file(entry->path()), st.st_mode & 07777, false};
            else if (S_ISLNK(st.st_mode) && !leads_into_machine(fs::read_symlink(*entry)))
                found[entry->path()] = {entry->path(), fs::read_symlink(*entry), 0777, true};
        }
    return found;
}

void tree::clear()
{
    for (const covered &c : covers_) {
        for (const fs::directory_entry &entry : fs::directory_iterator(c.folder))
            if (!is_untouched(entry))
                remove_all(entry.path());
        fill(c);
    }
}

} // namespace sim
