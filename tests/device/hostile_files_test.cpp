// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "tests/support/bytes.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <sys/stat.h>
#include <unistd.h>

namespace {

uint16_t id;
unsigned age, port;
char mac[18];
dev_status st;
pci_dev dev;
vexa_meminfo memory;

void ignore(void *, const uint8_t *, const char *)
{}

int host_count()
{
    conntrack_hosts *hosts = get_top_conntrack_hosts();
    const int count = hosts ? int(hosts->count) : 0;
    free_conntrack_hosts(hosts);
    return count;
}

int is_portal()
{
    guest_portal portal;
    guest_portal_init(&portal);
    guest_portal_read(&portal, "p");
    const int answer = guest_portal_has_device(&portal, "ra0");
    guest_portal_clear(&portal);
    return answer;
}

// Nothing above 0 when the file tells nothing.
const struct {
    const char *file;
    int (*read)();
} readers[] = {
    {"/proc/vexahal/system.info", [] { return std::max(board_identify_ids(&id, &id), int(get_manufid())); }},
    {"/proc/vexahal/board", [] { return int(corvo_get_bomrev()); }},
    {"/proc/mtd", [] { return unique_buffer{vexa_read_eeprom()} ? 1 : 0; }},
    {"/dev/mtd2", [] { return corvo_board_has_qrcode() - 1; }}, // bytes of any value may be one
    {"/proc/bus/pci/devices", [] { return pci_detect(&dev, 1, 0x168c); }},
    {"/sys/bus/i2c/devices/1-0018/iio:device0/in_accel_x_raw",
     [] { return json_is_object(json_ref{prepare_accelerometer_status()}.get()) - 1; }},
    {"/sys/class/net/br0/brforward", [] { return get_mac_brinfo("br0", "02:00:00:00:00:00", &age, &port); }},
    {"/sys/class/net/br7/brforward", [] { return get_mac_brinfo("br7", "02:00:00:00:00:00", &age, &port); }},
    {"/sys/class/net/br7/brif/p1/port_no", [] { return fdb_foreach("br", nullptr, ignore, nullptr); }},
    {"/sys/class/net/br7/brif/p1/state", [] { return get_br_port_state("br7", "p1"); }},
    {"/proc/net/dev", [] { return fill_dev_status("eth0", &st); }},
    {"/proc/net/arp", [] { return get_mac_by_ip(nullptr, mac, sizeof mac); }},
    {"/proc/net/tcp", system_is_ssh},
    {"/proc/net/nf_conntrack", host_count},
    {"/proc/meminfo", [] { return meminfo(&memory); }},
    {"/proc/uptime", [] { return int(get_uptime_from_proc()); }},
    {"/tmp/system.cfg", [] { return (fill_services(&st), st.dhcpc); }},
    {"/var/run/dhcpc.last_state", system_dhcp_status},
    {"/var/run/system.internet", system_internet_status},
    {"/var/run/guest/portal/p/devnames", is_portal},
    {"/etc/persistent/cfg/mgmt", [] { return is_qm_setup_complete() + get_trel_env(); }},
};

std::string any_bytes()
{
    const bytes noise = random_bytes(100'000);
    return {noise.begin(), noise.end()};
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
    {"any bytes", [](const char *file) { the_device.put(file, any_bytes()); }},
    {"a FIFO that nobody writes to", [](const char *file) { ASSERT_EQ(mkfifo(file, 0600), 0); }},
};

} // namespace

TEST(hostile_files, are_answered_as_if_they_said_nothing)
{
    for (const auto &kind : hostile) {
        for (const auto &[file, read] : readers) {
            the_device.put(file, ""); // with the folders above it
            the_device.remove(file);
            kind.make(file);
        }
        const captured_log none{0}; // there would be a line for each piece
        for (const auto &[file, read] : readers)
            EXPECT_LE(read(), 0) << file << ": " << kind.name;
        the_device.restore();
    }
}
