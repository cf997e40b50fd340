// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <jansson.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char *files[] = {
    "/proc/vexahal/system.info",
    "/proc/vexahal/board",
    "/proc/mtd",
    "/dev/mtd2",
    "/proc/bus/pci/devices",
    "/sys/bus/i2c/devices/1-0018/iio:device0/in_accel_x_raw",
    "/sys/class/net/br0/brforward",
    "/sys/class/net/br7/brforward",
    "/sys/class/net/br7/brif/p1/port_no",
    "/sys/class/net/br7/brif/p1/state",
    "/proc/net/dev",
    "/proc/net/arp",
    "/proc/net/tcp",
    "/proc/net/nf_conntrack",
    "/proc/meminfo",
    "/proc/uptime",
    "/tmp/system.cfg",
    "/var/run/dhcpc.last_state",
    "/var/run/system.internet",
    "/var/run/guest/portal/p/devnames",
    "/etc/persistent/cfg/mgmt",
};

// What each reader answers; nothing above 0 when the files tell nothing.
std::vector<int> read_all()
{
    const captured_log none{0}; // there would be a line for each piece
    uint16_t id;
    unsigned age, port;
    char mac[18];
    dev_status st{};
    pci_dev dev;
    vexa_meminfo memory;
    guest_portal portal;
    json_decref(prepare_accelerometer_status());
    (void)corvo_board_has_qrcode(); // bytes of any value may be one
    conntrack_hosts *hosts = get_top_conntrack_hosts();
    const int host_count = hosts ? int(hosts->count) : 0;
    free_conntrack_hosts(hosts);
    guest_portal_init(&portal);
    guest_portal_read(&portal, "p");
    const int is_portal = guest_portal_has_device(&portal, "ra0");
    guest_portal_clear(&portal);
    fill_services(&st);
    return {board_identify_ids(&id, &id),
            int(corvo_get_bomrev()),
            int(get_manufid()),
            pci_detect(&dev, 1, 0x168c),
            get_mac_brinfo("br0", "02:00:00:00:00:00", &age, &port),
            get_br_port_state("br7", "p1"),
            fdb_foreach(
                "br", nullptr, [](void *, const uint8_t *, const char *) {}, nullptr),
            fill_dev_status("eth0", &st),
            st.dhcpc,
            get_mac_by_ip(nullptr, mac, sizeof mac),
            system_is_ssh(),
            system_dhcp_status(),
            system_internet_status(),
            int(get_uptime_from_proc()),
            host_count,
            meminfo(&memory),
            is_portal,
            is_qm_setup_complete(),
            get_trel_env()};
}

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
    for (const auto &kind : hostile) {
        for (const char *file : files) {
            the_device.put(file, ""); // with the folders above it
            the_device.remove(file);
            kind.make(file);
        }
        EXPECT_THAT(read_all(), testing::Each(testing::Le(0))) << kind.name;
        the_device.restore();
    }
}
