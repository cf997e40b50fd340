// SPDX-License-Identifier: MIT
#include "bench/conntrack_input.h"

#include <cmath>
#include <random>

namespace {

constexpr size_t line_size = 241; // line feed included
constexpr double hosts = 4000;
constexpr double skew = 3;

std::string address(std::mt19937 &random)
{
    const double share = std::uniform_real_distribution{}(random);
    const auto host = unsigned(hosts * std::pow(share, skew));
    return "10." + std::to_string(host % 7) + "." + std::to_string(host / 250 % 250) + "." +
           std::to_string(host % 250 + 1);
}

} // namespace

std::string conntrack_lines(size_t count)
{
    std::mt19937 random{48000};
    std::string text;
    text.reserve(count * line_size);
    for (size_t i = 1; i <= count; i++) {
        const std::string src = address(random), dst = address(random);
        const std::string ports = std::to_string(1024 + random() % 60000);
        text += "ipv4     2 tcp      6 431999 ESTABLISHED src=" + src + " dst=" + dst + " sport=" + ports +
                " dport=443 packets=17 bytes=4242 src=" + dst + " dst=" + src + " sport=443 dport=" + ports +
                " packets=12 bytes=9000 [ASSURED] mark=0 zone=0 use=2";
        text.resize(i * line_size - 1, ' ');
        text += '\n';
    }
    return text;
}
