// SPDX-License-Identifier: MIT
#include "device/portal.h"

#include "core/log.h"
#include "core/piece_reader.h"
#include "core/text.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr char log_tag[] = "guest_portals";
constexpr size_t piece_size = 128; // zero included

static_assert(offsetof(guest_portal, name) == 2 * sizeof(void *));
static_assert(offsetof(guest_portal, authorized) == 2 * sizeof(void *) + 32);
static_assert(sizeof(guest_portal) == 5 * sizeof(void *) + 32);

constexpr struct {
    const char *file;
    buffer *guest_portal::*text;
} lists[] = {
    {"authorized", &guest_portal::authorized},
    {"devnames", &guest_portal::devnames},
    {"vlans", &guest_portal::vlans},
};

// A portal is an entry of the directory itself: links are not followed, and a name is no path.
unique_fd open_portal(const char *name)
{
    constexpr int folder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    if (strchr(name, '/') || strcmp(name, ".") == 0 || strcmp(name, "..") == 0)
        return unique_fd{};
    const unique_fd portals{open(path_guest_portals, folder)};
    return unique_fd{portals ? openat(portals.get(), name, folder | O_NOFOLLOW) : -1};
}

unique_fd open_list(const unique_fd &portal, const char *file)
{
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    return unique_fd{portal ? openat(portal.get(), file, flags) : -1};
}

bool is_regular(const unique_fd &fd)
{
    struct stat info {};
    return fstat(fd.get(), &info) == 0 && S_ISREG(info.st_mode);
}

unique_buffer fill_portal_buffer_file(const unique_fd &portal, const char *name, const char *file)
{
    unique_fd fd = open_list(portal, file);
    if (!fd) {
        log_debug("Couldn't open %s/%s/%s", path_guest_portals, name, file);
        return nullptr;
    }
    unique_buffer list{buffer_create()};
    if (!list) {
        log_err("Not enough memory for buffer: %s/%s/%s", path_guest_portals, name, file);
        return nullptr;
    }
    if (!is_regular(fd))
        return list; // there is nothing to wait for
    piece_reader pieces{std::move(fd), piece_size};
    std::string_view piece;
    while (pieces.next(piece)) {
        if (!piece.empty() && list->printf(list.get(), "%.*s", int(piece.size()), piece.data()) == 0) {
            log_err("Couldn't read all of %s/%s/%s. Only have %d bytes", path_guest_portals, name, file,
                    int(list->len(list.get())));
            break;
        }
    }
    return list;
}

constexpr bool is_separator(char c)
{
    return c == '\n' || c == ',';
}

} // namespace

bool list_has_item(buffer *list, std::string_view item)
{
    if (!list || item.empty())
        return false;
    const char *const text = static_cast<const char *>(list->head(list));
    const char *const end = text + list->len(list);
    const char *at = text;
    while (const void *found = memmem(at, size_t(end - at), item.data(), item.size())) {
        const char *first = static_cast<const char *>(found);
        const char *behind = first + item.size();
        if ((first == text || is_separator(first[-1])) && (behind == end || is_separator(*behind)))
            return true;
        at = std::find_if(first, end, is_separator); // the next item begins behind it
        if (at == end)
            return false;
        at++;
    }
    return false;
}

extern "C" void guest_portal_init(guest_portal *p)
{
    *p = {};
}

extern "C" void guest_portal_clear(guest_portal *p)
{
    for (const auto &list : lists)
        buffer_destroy(std::exchange(p->*list.text, nullptr));
}

extern "C" void guest_portal_read(guest_portal *p, const char *name)
{
    guest_portal_clear(p);
    copy_text(p->name, sizeof p->name, name);
    const unique_fd portal = open_portal(name);
    for (const auto &list : lists)
        p->*list.text = fill_portal_buffer_file(portal, name, list.file).release();
}

extern "C" int guest_portal_is_auth(const guest_portal *p, const char *mac)
{
    return p && list_has_item(p->authorized, mac);
}

extern "C" int guest_portal_has_device(const guest_portal *p, const char *dev)
{
    return p && list_has_item(p->devnames, dev);
}
