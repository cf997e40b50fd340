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
    guest_portal *add(const char *name)
    {
        auto *p = static_cast<guest_portal *>(malloc(sizeof(guest_portal)));
        guest_portal_init(p);
        guest_portal_read(p, name);
        guest_portal_set_add(this, p);
        return p;
    }
};

std::string text_of(buffer *b)
{
    return b ? std::string(static_cast<const char *>(b->head(b)), b->len(b)) : "(none)";
}

int is_auth(const char *list, const char *item)
{
    portals set;
    the_device.put(folder + "p/authorized", list);
    return guest_portal_is_auth(set.add("p"), item);
}

} // namespace

TEST(guest_portal_is_auth, matches_whole_items_only)
{
    EXPECT_EQ(is_auth("aa:bb:cc:dd:ee:01,aa:bb:cc:dd:ee:02", "aa:bb:cc:dd:ee:02"), 1) << "the last one";
    EXPECT_EQ(is_auth("aa:bb:cc:dd:ee:01,aa:bb:cc:dd:ee:02", "aa:bb:cc:dd:ee:0"), 0) << "only a beginning";
    EXPECT_EQ(is_auth("aa:bb:cc:dd:ee:01\n", "bb:cc:dd:ee:01"), 0) << "only an end";
    EXPECT_EQ(is_auth("aa:bb\n", "AA:bb"), 0) << "case matters";
    EXPECT_EQ(is_auth("xab\nab\ncd\n", "ab"), 1) << "behind one that it ends";
    EXPECT_EQ(is_auth("abx,ab", "ab"), 1) << "behind one that it begins";
    EXPECT_EQ(is_auth("aaaaaa,aaa", "aaa"), 1) << "overlapping itself";
    EXPECT_EQ(is_auth("a,,b\n", ""), 0) << "nothing is no item";
    EXPECT_EQ(is_auth("a b\n", "a"), 0) << "blanks are no separators";
    EXPECT_EQ(is_auth("x,a,b\ny", "a,b"), 1) << "a separator inside";
    EXPECT_EQ(guest_portal_is_auth(nullptr, "a") + guest_portal_has_device(nullptr, "a"), 0);
}

TEST(guest_portal_set_read, takes_what_the_directory_holds)
{
    const std::string long_name(60, 'n');
    the_device.put(folder + "lobby/devnames", "ra1\nrai1");
    the_device.put(folder + "lobby/vlans", "10,20\n");
    the_device.put(folder + long_name + "/vlans", "40");
    the_device.put(folder + "file", "10");
    the_device.put(folder + "inside/devnames", "");
    ASSERT_EQ(symlink("lobby", (folder + "link").c_str()), 0);
    ASSERT_EQ(symlink("../lobby/vlans", (folder + "inside/vlans").c_str()), 0);
    ASSERT_EQ(mkfifo((folder + "inside/authorized").c_str(), 0600), 0);
    portals set;
    guest_portal_set_read(&set);
    EXPECT_EQ(guest_portal_set_count(&set), 5);
    const std::pair<std::string, const char *> rows[] = {{"lobby", "(none)/10,20\n"},
                                                         {"link", "(none)/(none)"},
                                                         {"file", "(none)/(none)"},
                                                         {"inside", "/(none)"},
                                                         {long_name.substr(0, 31), "(none)/40"}};
    for (const auto &[name, lists] : rows) {
        const guest_portal *p = guest_portal_from_name(&set, name.c_str());
        ASSERT_NE(p, nullptr) << name;
        EXPECT_EQ(text_of(p->authorized) + "/" + text_of(p->vlans), lists) << name;
    }
    const guest_portal *lobby = guest_portal_from_name(&set, "lobby");
    EXPECT_EQ(guest_portal_from_device(&set, "rai1"), lobby);
    EXPECT_EQ(guest_portal_from_device(&set, "ra"), nullptr);
    EXPECT_EQ(guest_portal_from_vlan(&set, 10), lobby);
    for (const int none : {-1, 1})
        EXPECT_EQ(guest_portal_from_vlan(&set, none), nullptr) << none;
    const guest_portal *late = set.add("lobby");
    EXPECT_EQ(guest_portal_from_vlan(&set, 10), late) << "the last one holds";
}

TEST(guest_portal_read, stays_in_its_directory_and_says_what_is_missing)
{
    for (const char *file : {"../vlans", "vlans", "p/sub/vlans"})
        the_device.put(folder + file, "1");
    portals set;
    for (const char *name : {"..", ".", "p/sub", "../portal", ""})
        EXPECT_EQ(set.add(name)->vlans, nullptr) << name;
    const captured_log log{8};
    set.add("p");
    EXPECT_THAT(log.text(), testing::StartsWith("[debug] guest_portals.fill_portal_buffer_file(): Couldn't open " +
                                                folder + "p/authorized\n"));
}

TEST(guest_portal_set, holds_hundreds_of_large_lists)
{
    std::string list;
    for (int i = 0; i < 20'000; i++)
        list += "02:00:00:00:" + std::to_string(i) + (i % 3 ? "\n" : ",");
    for (int i = 0; i < 300; i++) {
        the_device.put(folder + std::to_string(i) + "/authorized", i % 100 ? "" : list);
        the_device.put(folder + std::to_string(i) + "/devnames", "guest" + std::to_string(i));
    }
    portals set;
    guest_portal_set_read(&set);
    const guest_portal *p = guest_portal_from_device(&set, "guest200");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(text_of(p->authorized), list);
    EXPECT_EQ(guest_portal_is_auth(p, "02:00:00:00:19999") + guest_portal_is_auth(p, "02:00:00:00:20000"), 1);
}
