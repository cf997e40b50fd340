// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "message.h"
#include "wireless.h"

#include <charconv>
#include <cstring>

namespace {

constexpr int8_t phy_mode_40 = 14, phy_mode_80 = 19, phy_mode_160 = 20;

int no_vap(output &out, const char *name)
{
    return out.fail(status_negative, std::string{"no wireless interface '"} + name + "' is up");
}

int vaps(const arguments &, output &out)
{
    return out.show({vap_documents(), vap_columns, "no wireless interface is up"});
}

int radio(const arguments &args, output &out)
{
    static constexpr column labels[] = {
        {"name", "Interface"},
        {"ssid", "Network"},
        {"bssid", "BSSID"},
        {"mode", "Mode"},
        {"channel", "Channel"},
        {"frequency_mhz", "MHz"},
        {"width_mhz", "Width, MHz"},
        {"chains", "Chains"},
        {"max_mbit", "At most, Mbit/s"},
        {"power_dbm", "Power, dBm"},
        {"antenna_gain", "Antenna, dBi"},
        {"radar_check", "Radar check", kind::on_off},
        {"noise_dbm", "Noise, dBm"},
        {"busy", "Air busy, %"},
        {"busy_rx", "Receiving, %"},
        {"busy_tx", "Sending, %"},
        {"interference", "Others, %"},
        {"rx_packets", "Packets received"},
        {"rx_errors", "Receive errors"},
        {"tx_packets", "Packets sent"},
        {"tx_errors", "Send errors"},
        {"tx_retries", "Send retries"},
        {"tx_dropped", "Send drops"},
        {"beacons", "Beacons"},
    };
    answer found{radio_document(args.operand(0)), labels};
    if (!found.document)
        return out.fail(status_negative, std::string{"'"} + args.operand(0) + "' is no interface of a radio");
    found.side_by_side = true;
    return out.show(found);
}

int stations(const arguments &args, output &out)
{
    const char *name = args.operand(0);
    if (name && !find_vap(find_vaps(), name))
        return no_vap(out, name);
    std::string silent;
    const int shown = out.show({station_documents(name, silent), station_columns, "no stations"});
    return silent.empty() ? shown : no_stations(out, silent);
}

int station(const arguments &args, output &out)
{
    static constexpr column labels[] = {
        {"mac", "Station"},
        {"vap", "VAP"},
        {"name", "Name"},
        {"address", "Address"},
        {"identity", "Identity"},
        {"association_id", "Association"},
        {"vlan", "VLAN"},
        {"standard", "Wi-Fi"},
        {"frequency_mhz", "MHz"},
        {"width_mhz", "Width, MHz"},
        {"signal_dbm", "Signal, dBm"},
        {"noise_dbm", "Noise, dBm"},
        {"tx_mbit", "Sent at, Mbit/s"},
        {"rx_mbit", "Received at"},
        {"tx_efficiency", "Without retry, %"},
        {"uptime", "Here for, s"},
        {"idle", "Idle for, s"},
        {"rx_bytes", "Received", kind::bytes},
        {"tx_bytes", "Sent", kind::bytes},
        {"tx_attempts", "Frames sent"},
        {"tx_retries", "Retries"},
        {"tx_dropped", "Given up"},
        {"tx_latency_us", "Send latency, us"},
        {"tcp_rx_latency_ms", "TCP in, ms"},
        {"tcp_tx_latency_ms", "TCP out, ms"},
        {"has_address", "Has an address"},
        {"answers_arp", "Answers ARP"},
        {"dns_timeouts", "DNS time-outs"},
        {"dns_latency_ms", "DNS latency, ms"},
        {"round_trip_ms", "Round trip, ms"},
        {"disconnects", "Disconnects"},
    };
    uint8_t mac[6];
    if (!read_mac(args.operand(0), mac))
        return out.fail(status_usage, "station: a hardware address is like 02:56:58:00:00:01");
    answer found{station_document(mac), labels};
    if (!found.document)
        return out.fail(status_negative, std::string{"no station '"} + args.operand(0) + "'");
    found.side_by_side = true;
    return out.show(found);
}

int scan(const arguments &args, output &out)
{
    if (!find_vap(find_vaps(), args.operand(0)))
        return no_vap(out, args.operand(0));
    return out.show({network_documents(args.operand(0)), network_columns, "no networks"});
}

// of the wider channels that the frequency lies in: their arithmetic is that of 5 GHz
json_t *centre(uint32_t mhz, uint32_t channel, int8_t phy_mode)
{
    constexpr int band_5_ghz = 3;
    return qx_freq_to_band(mhz) == band_5_ghz ? number(get_center_freq(mhz, static_cast<uint16_t>(channel), phy_mode))
                                              : json_null();
}

int channel(const arguments &args, output &out)
{
    static constexpr const char *bands[] = {nullptr, "2.4 GHz", "4.9 GHz", "5 GHz", "6 GHz", "60 GHz"};
    static constexpr column labels[] = {
        {"frequency_mhz", "Frequency, MHz"}, {"channel", "Channel"},
        {"driver_channel", "The driver's"},  {"band", "Band"},
        {"configured_as", "Configured as"},  {"centre_40_mhz", "Centre of 40 MHz"},
        {"centre_80_mhz", "Of 80 MHz"},      {"centre_160_mhz", "Of 160 MHz"},
    };
    const std::string_view digits = args.operand(0);
    uint32_t mhz = 0;
    const auto [end, wrong] = std::from_chars(digits.data(), digits.data() + digits.size(), mhz);
    if (wrong != std::errc{} || end != digits.data() + digits.size())
        return out.fail(status_usage, "channel: a frequency is a number of MHz");
    const int band = qx_freq_to_band(mhz);
    if (band == 0)
        return out.fail(status_negative, "no channel lies at " + std::string{digits} + " MHz");
    const uint32_t found = qx_freq_to_channel(mhz);
    return out.show({json_ref{object({{"frequency_mhz", number(mhz)},
                                      {"channel", number(found)},
                                      {"driver_channel", number(ieee80211_mhz2ieee(mhz))},
                                      {"band", text(bands[band])},
                                      {"configured_as", text(get_band(static_cast<int32_t>(mhz)))},
                                      {"centre_40_mhz", centre(mhz, found, phy_mode_40)},
                                      {"centre_80_mhz", centre(mhz, found, phy_mode_80)},
                                      {"centre_160_mhz", centre(mhz, found, phy_mode_160)}})},
                     labels});
}

constexpr verb verbs[] = {
    {.name = "vaps",
     .summary = "the wireless interfaces that are up: networks, channels, stations",
     .options = {},
     .example = "vexactl vaps",
     .run = vaps},
    {.name = "radio",
     .operands = "VAP",
     .summary = "the radio of a wireless interface: channel, power, air time, counters",
     .options = {},
     .example = "vexactl radio ra0",
     .run = radio},
    {.name = "stations",
     .operands = "[VAP]",
     .summary = "the stations of a wireless interface, or of all",
     .options = {},
     .example = "vexactl stations ra0 --json",
     .run = stations},
    {.name = "station",
     .operands = "MAC",
     .summary = "all that is known of a station",
     .options = {},
     .example = "vexactl station 02:57:00:00:00:01",
     .run = station},
    {.name = "scan",
     .operands = "VAP",
     .summary = "the networks that its radio heard in the last scan",
     .options = {},
     .example = "vexactl scan ra0",
     .run = scan},
    {.name = "channel",
     .operands = "FREQ",
     .summary = "channel and band of a frequency in MHz",
     .options = {},
     .example = "vexactl channel 5180",
     .run = channel},
};

} // namespace

const verb_family wireless_family = verbs;
