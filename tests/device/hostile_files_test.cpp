// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <jansson.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// A reader of a file, and all that it may answer when the file tells nothing.
struct reader {
    const char *name;
    std::vector<const char *> files;
    int (*read)();
    std::set<int> answers;
};

const reader readers[] = {
    {"board_identify_ids",
     {"/proc/vexahal/system.info"},
     [] {
         uint16_t id;
         return board_identify_ids(&id, &id);
     },
     {-1, -ENOENT}},
    {"corvo_get_bomrev", {"/proc/vexahal/board"}, [] { return int(corvo_get_bomrev()); }, {-1, 0}},
    {"get_manufid", {"/proc/vexahal/system.info"}, [] { return int(get_manufid()); }, {0}},
    {"vexa_read_eeprom", {"/proc/mtd", "/dev/mtd2"}, corvo_board_has_qrcode, {0, 1}},
    {"pci_detect",
     {"/proc/bus/pci/devices"},
     [] {
         pci_dev dev;
         return pci_detect(&dev, 1, 0x168c);
     },
     {-1, 0}},
    {"has_accelerometer",
     {"/sys/bus/i2c/devices/1-0018/iio:device0/in_accel_x_raw"},
     [] {
         json_decref(prepare_accelerometer_status());
         return 0;
     },
     {0}},
    {"get_mac_brinfo",
     {"/sys/class/net/br0/brforward"},
     [] {
         unsigned age, port;
         return get_mac_brinfo("br0", "02:00:00:00:00:00", &age, &port);
     },
     {0}},
    {"get_br_port_state", {"/sys/class/net/br7/brif/p1/state"}, [] { return get_br_port_state("br7", "p1"); }, {-1}},
    {"fdb_foreach",
     {"/sys/class/net/br7/brforward", "/sys/class/net/br7/brif/p1/port_no"},
     [] {
         return fdb_foreach(
             "br0", nullptr, [](void *, const uint8_t *, const char *) {}, nullptr);
     },
     {0}},
    {"fill_dev_status",
     {"/proc/net/dev"},
     [] {
         dev_status st{};
         return fill_dev_status("eth0", &st);
     },
     {0, -1, -ENOENT}},
    {"fill_services",
     {"/tmp/system.cfg"},
     [] {
         dev_status st{};
         fill_services(&st);
         return st.dhcpc;
     },
     {0}},
    {"get_mac_by_ip",
     {"/proc/net/arp"},
     [] {
         char mac[18];
         return get_mac_by_ip(nullptr, mac, sizeof mac);
     },
     {0}},
    {"system_is_ssh", {"/proc/net/tcp"}, system_is_ssh, {0}},
    {"system_dhcp_status", {"/var/run/dhcpc.last_state"}, system_dhcp_status, {0}},
    {"system_internet_status", {"/var/run/system.internet"}, system_internet_status, {-1, 0}},
    {"get_uptime_from_proc", {"/proc/uptime"}, [] { return int(get_uptime_from_proc()); }, {-1}},
    {"get_top_conntrack_hosts",
     {"/proc/net/nf_conntrack"},
     [] {
         conntrack_hosts *hosts = get_top_conntrack_hosts();
         const int count = hosts ? int(hosts->count) : 0;
         free_conntrack_hosts(hosts);
         return count;
     },
     {0}},
    {"meminfo",
     {"/proc/meminfo"},
     [] {
         const captured_log none{0}; // there would be a line for each piece
         vexa_meminfo m;
         return meminfo(&m);
     },
     {-1, 0}},
    {"guest_portal_has_device",
     {"/var/run/guest/portal/p/devnames"},
     [] {
         guest_portal p;
         guest_portal_init(&p);
         guest_portal_read(&p, "p");
         const int found = guest_portal_has_device(&p, "ra0");
         guest_portal_clear(&p);
         return found;
     },
     {0}},
    {"is_qm_setup_complete", {"/etc/persistent/cfg/mgmt"}, is_qm_setup_complete, {0}},
    {"get_trel_env", {"/tmp/system.cfg", "/etc/persistent/cfg/mgmt"}, get_trel_env, {0}},
};

const struct {
    const char *name;
    void (*make)(const char *file);
} hostile[] = {
    {"missing", [](const char *) {}},
    {"empty", [](const char *file) { the_device.put(file, ""); }},
    {"a folder", [](const char *file) { ASSERT_EQ(mkdir(file, 0755), 0); }},
    {"unreadable", [](const char *file) { ASSERT_EQ(symlink(file, file), 0); }},
    {"10 MB without a line feed", [](const char *file) { the_device.put(file, std::string(10'000'000, 'x')); }},
    {"zeros", [](const char *file) { the_device.put(file, std::string(100'000, '\0')); }},
    {"every byte",
     [](const char *file) {
         std::string bytes;
         for (int i = 0; i < 100'000; i++)
             bytes += char(i * 7 + i / 256);
         the_device.put(file, bytes);
     }},
    {"a FIFO that nobody writes to", [](const char *file) { ASSERT_EQ(mkfifo(file, 0600), 0); }},
};

} // namespace

TEST(hostile_files, are_answered_as_if_they_said_nothing)
{
    for (const reader &reader : readers)
        for (const auto &kind : hostile) {
            SCOPED_TRACE(std::string(reader.name) + ": " + kind.name);
            for (const char *file : reader.files) {
                the_device.put(file, ""); // with the folders above it
                the_device.remove(file);
                kind.make(file);
            }
            EXPECT_EQ(reader.answers.count(reader.read()), 1U);
            the_device.restore();
        }
}
