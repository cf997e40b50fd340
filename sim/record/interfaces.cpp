// SPDX-License-Identifier: MIT
#include "sim/driver/places.h"
#include "sim/record/disguise.h"
#include "sim/record/recording.h"

#include <arpa/inet.h>
#include <bit>
#include <cstdlib>
#include <fstream>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <set>
#include <sstream>

namespace sim {

namespace fs = std::filesystem;

namespace {

const fs::path interfaces = "/sys/class/net";

std::string first_line(const fs::path &file)
{
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return line;
}

// The far ends of cables and radios belong to what the device is connected to.
bool is_recorded(const std::string &name)
{
    return name != "lo" && !name.starts_with("cable") && !name.starts_with("air-") &&
           !fs::exists("/var/run/vapusage." + name); // made with the radios
}

class interface_lines {
public:
    explicit interface_lines(disguise &names) : names_{names} {}

    void add(const std::string &name)
    {
        const fs::path folder = interfaces / name;
        const driver::mac address = driver::mac_of(first_line(folder / "address"));
        const std::string begin =
            "link add " + name + " address " + driver::text_of(names_.address(address)) + " type ";
        const bool up = strtoul(first_line(folder / "flags").c_str(), nullptr, 0) & IFF_UP;
        std::error_code none;
        if (fs::exists(folder / "bridge"))
            first_ += begin + "bridge\n";
        else
            first_ += begin + cable(first_line(folder / "carrier") == "1");
        if (const fs::path bridge = fs::read_symlink(folder / "master", none); !none)
            then_ += "link set " + name + " master " + bridge.filename().string() + '\n';
        if (up)
            then_ += "link set " + name + " up\n";
    }

    std::string text() const { return first_ + then_; }

private:
    // The other end has the address of nobody, and is up where something was plugged in.
    std::string cable(bool carrier)
    {
        const std::string far = "cable" + std::to_string(cables_);
        const driver::mac nobody{0x02, 0x57, 0xca, 0, 0, uint8_t(cables_++)};
        then_ += carrier ? "link set " + far + " up\n" : "";
        return "veth peer name " + far + " address " + driver::text_of(nobody) + '\n';
    }

    disguise &names_;
    std::string first_, then_;
    unsigned cables_ = 0;
};

std::string address_lines(const std::set<std::string> &recorded)
{
    ifaddrs *list = nullptr;
    std::string lines;
    if (getifaddrs(&list) != 0)
        return lines;
    for (const ifaddrs *entry = list; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || !entry->ifa_netmask || entry->ifa_addr->sa_family != AF_INET ||
            !recorded.contains(entry->ifa_name))
            continue;
        char text[INET_ADDRSTRLEN];
        const auto *address = reinterpret_cast<const sockaddr_in *>(entry->ifa_addr);
        const auto *mask = reinterpret_cast<const sockaddr_in *>(entry->ifa_netmask);
        lines += std::string{"address add "} + inet_ntop(AF_INET, &address->sin_addr, text, sizeof text) + '/' +
                 std::to_string(std::popcount(mask->sin_addr.s_addr)) + " dev " + entry->ifa_name + '\n';
    }
    freeifaddrs(list);
    return lines;
}

// "br0 00000000 010200C0 ...": interface, destination and gateway as the kernel's words
std::string route_lines(const std::set<std::string> &recorded)
{
    std::ifstream routes("/proc/net/route");
    std::string lines;
    for (std::string line; std::getline(routes, line);) {
        std::istringstream words(line);
        std::string name, destination, gateway;
        words >> name >> destination >> gateway;
        if (!recorded.contains(name) || destination != "00000000")
            continue;
        char text[INET_ADDRSTRLEN];
        const in_addr address{in_addr_t(std::stoul(gateway, nullptr, 16))};
        lines += std::string{"route add default via "} + inet_ntop(AF_INET, &address, text, sizeof text) + " dev " +
                 name + '\n';
    }
    return lines;
}

} // namespace

void record_interfaces(disguise &names, const fs::path &file)
{
    std::set<std::string> recorded;
    for (const fs::directory_entry &entry : fs::directory_iterator(interfaces))
        if (const std::string name = entry.path().filename(); is_recorded(name))
            recorded.insert(name);
    interface_lines lines{names};
    for (const std::string &name : recorded)
        lines.add(name);
    write_file(file, "# Lines for `ip -batch`.\n" + lines.text() + address_lines(recorded) + route_lines(recorded));
}

} // namespace sim
