// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <sys/stat.h>
#include <unistd.h>

namespace {

const std::string folder = "/var/run/guest/portal/";

struct portals : guest_portal_set {
    portals() { guest_portal_set_init(this); }
    ~portals() { guest_portal_set_clear(this); }
    portals(const portals &) = delete;
    portals &operator=(const portals &) = delete;
};

struct portal : guest_portal {
    explicit portal(const char *of)
    {
        guest_portal_init(this);
        guest_portal_read(this, of);
    }
    ~portal() { guest_portal_clear(this); }
    portal(const portal &) = delete;
    portal &operator=(const portal &) = delete;
};

std::string text_of(buffer *b)
{
    return b ? std::string(static_cast<const char *>(b->head(b)), b->len(b)) : "(none)";
}

} // namespace

TEST(guest_portal_is_auth, matches_whole_items_only)
{
    const struct {
        const char *why, *list, *item;
        int found;
    } rows[] = {
        {"the last one", "aa:bb:cc:dd:ee:01,aa:bb:cc:dd:ee:02", "aa:bb:cc:dd:ee:02", 1},
        {"only a beginning", "aa:bb:cc:dd:ee:01,aa:bb:cc:dd:ee:02", "aa:bb:cc:dd:ee:0", 0},
        {"only an end", "aa:bb:cc:dd:ee:01\n", "bb:cc:dd:ee:01", 0},
        {"case matters", "aa:bb\n", "AA:bb", 0},
        {"behind one that it ends", "xab\nab\ncd\n", "ab", 1},
        {"behind one that it begins", "abx,ab", "ab", 1},
        {"overlapping itself", "aaaaaa,aaa", "aaa", 1},
        {"nothing is no item", "a,,b\n", "", 0},
        {"blanks are no separators", "a b\n", "a", 0},
        {"a separator inside", "x,a,b\ny", "a,b", 1},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        the_device.put(folder + "p/authorized", row.list);
        const portal p{"p"};
        EXPECT_EQ(guest_portal_is_auth(&p, row.item), row.found);
    }
    EXPECT_EQ(guest_portal_is_auth(nullptr, "a") + guest_portal_has_device(nullptr, "a"), 0);
}

TEST(guest_portal_set_read, takes_what_the_directory_holds)
{
    const std::string long_name(60, 'n');
    the_device.put(folder + "lobby/devnames", "ra1\nrai1");
    the_device.put(folder + "lobby/vlans", "10,20\n");
    the_device.put(folder + "pool/vlans", "30\n10");
    the_device.put(folder + long_name + "/vlans", "40");
    the_device.put(folder + "file", "10");
    ASSERT_EQ(symlink("lobby", (folder + "link").c_str()), 0);
    the_device.put(folder + "inside/devnames", "");
    ASSERT_EQ(symlink("../lobby/vlans", (folder + "inside/vlans").c_str()), 0);
    ASSERT_EQ(mkfifo((folder + "inside/authorized").c_str(), 0600), 0);
    portals set;
    guest_portal_set_read(&set);
    EXPECT_EQ(guest_portal_set_count(&set), 6);

    const guest_portal *lobby = guest_portal_from_device(&set, "rai1");
    ASSERT_NE(lobby, nullptr);
    EXPECT_STREQ(lobby->name, "lobby");
    EXPECT_EQ(lobby->authorized, nullptr);
    EXPECT_EQ(guest_portal_from_device(&set, "ra"), nullptr);
    for (const char *empty : {"link", "file"}) {
        const guest_portal *p = guest_portal_from_name(&set, empty);
        ASSERT_NE(p, nullptr) << empty;
        EXPECT_EQ(text_of(p->vlans) + text_of(p->devnames), "(none)(none)") << empty;
    }
    const guest_portal *inside = guest_portal_from_name(&set, "inside");
    ASSERT_NE(inside, nullptr);
    EXPECT_EQ(text_of(inside->vlans) + "/" + text_of(inside->authorized), "(none)/");
    EXPECT_EQ(guest_portal_from_name(&set, long_name.c_str()), nullptr);
    EXPECT_EQ(guest_portal_from_vlan(&set, 40), guest_portal_from_name(&set, long_name.substr(0, 31).c_str()));
    EXPECT_EQ(guest_portal_from_vlan(&set, -1), nullptr);
    EXPECT_EQ(guest_portal_from_vlan(&set, 1), nullptr);
    portals late; // two of them in a known order
    for (const char *name : {"pool", "lobby"}) {
        auto *p = static_cast<guest_portal *>(malloc(sizeof(guest_portal)));
        guest_portal_init(p);
        guest_portal_read(p, name);
        guest_portal_set_add(&late, p);
    }
    EXPECT_STREQ(guest_portal_from_vlan(&late, 10)->name, "lobby");
    EXPECT_STREQ(guest_portal_from_vlan(&late, 30)->name, "pool");

    guest_portal_set_clear(&set);
    EXPECT_EQ(guest_portal_set_count(&set), 0);
}

TEST(guest_portal_read, stays_in_its_directory_and_says_what_is_missing)
{
    the_device.put("/var/run/guest/vlans", "1");
    the_device.put(folder + "vlans", "1");
    the_device.put(folder + "p/sub/vlans", "1");
    for (const char *name : {"..", ".", "p/sub", "../portal", ""}) {
        const portal p{name};
        EXPECT_EQ(p.vlans, nullptr) << name;
    }
    const captured_log log{8};
    const portal p{"p"};
    EXPECT_EQ(log.text(), "[debug] guest_portals.fill_portal_buffer_file(): Couldn't open " + folder +
                              "p/authorized\n[debug] guest_portals.fill_portal_buffer_file(): Couldn't open " + folder +
                              "p/devnames\n[debug] guest_portals.fill_portal_buffer_file(): Couldn't open " + folder +
                              "p/vlans\n");
}

TEST(guest_portal_set, holds_hundreds_of_large_lists)
{
    std::string list;
    for (int i = 0; i < 20'000; i++)
        list += "02:00:00:00:" + std::to_string(i) + (i % 3 ? "\n" : ",");
    constexpr int count = 300;
    for (int i = 0; i < count; i++) {
        the_device.put(folder + std::to_string(i) + "/authorized", i % 100 ? "" : list);
        the_device.put(folder + std::to_string(i) + "/devnames", "guest" + std::to_string(i));
    }
    portals set;
    guest_portal_set_read(&set);
    EXPECT_EQ(guest_portal_set_count(&set), count);
    const guest_portal *p = guest_portal_from_device(&set, "guest200");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(text_of(p->authorized), list);
    EXPECT_EQ(guest_portal_is_auth(p, "02:00:00:00:19999") + guest_portal_is_auth(p, "02:00:00:00:20000"), 1);
}
