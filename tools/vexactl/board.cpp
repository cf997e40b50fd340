// SPDX-License-Identifier: MIT
#include "board.h"

#include "message.h"
#include "text.h"

#include <algorithm>
#include <cstring>
#include <libvexa.h>
#include <span>

namespace {

constexpr char board_file[] = "/proc/vexahal/board";
constexpr uint32_t no_bom_revision = UINT32_MAX;

json_t *serial_number()
{
    char serial[64] = "";
    if (get_boardsn(board_file, serial, sizeof serial) < 0)
        return json_null();
    serial[strcspn(serial, "\n")] = '\0';
    return text(serial);
}

json_t *firmware_version()
{
    const char *version = nullptr;
    return get_version(&version) == 0 ? text(version) : json_null();
}

json_t *board_revision()
{
    const int revision = get_boardrevision(board_file);
    return revision < 0 ? json_null() : number(revision);
}

json_t *bom_revision()
{
    const uint32_t revision = corvo_get_bomrev();
    return revision == no_bom_revision ? json_null() : text(format("%x", revision));
}

json_t *cpu_mac(const board *b)
{
    static constexpr uint8_t none[sizeof b->cpu_mac] = {};
    return memcmp(b->cpu_mac, none, sizeof none) == 0 ? json_null() : text(mac_text(b->cpu_mac));
}

json_t *code_of(const struct device *model)
{
    return model ? text(model->code) : json_null();
}

std::span<const board_port_group> groups_of(const board *b)
{
    return {b->eth_groups, std::min<size_t>(b->eth_group_count, std::size(b->eth_groups))};
}

std::span<const board_port> ports_of(const board_port_group &group)
{
    return {group.ports, std::min<size_t>(group.port_count, std::size(group.ports))};
}

json_t *poe_of(const board_port &port)
{
    if (port.poe_in)
        return text("in");
    return port.flags & VEXA_PORT_POE_OUT ? text("out") : json_null();
}

json_t *name_or_null(const char *name)
{
    return text_or_null(name && *name ? name : nullptr);
}

json_t *ids_text(uint16_t vendor, uint16_t id)
{
    return text(format("%04x:%04x", vendor, id));
}

json_t *bands_of(const board_radio &radio)
{
    static constexpr const char *bands[] = {nullptr, "2.4 GHz", "5 GHz", "2.4 and 5 GHz", "6 GHz"};
    return text_or_null(bands[radio.bands % std::size(bands)]);
}

json_t *min_firmware(const board *b)
{
    const uint32_t version = b->min_fw_version;
    if (corvo_board_is_beta_firmware(b))
        return text("beta");
    return text(format("%u.%u.%u", version >> 16, version >> 8 & 0xff, version & 0xff));
}

json_t *model_row(uint16_t system_id, const board *b, const struct device *model)
{
    size_t port_count = 0;
    for (size_t i = 0; b && i < groups_of(b).size(); i++)
        port_count += b->eth_groups[i].port_count;
    return object({{"system_id", text(format("%04x", system_id))},
                   {"name", text(b ? b->name : model->name)},
                   {"code", code_of(model)},
                   {"platform", b ? text(b->platform) : json_null()},
                   {"ethernet_ports", b ? number(int64_t(port_count)) : json_null()},
                   {"radios", b ? number(b->radio_count) : json_null()},
                   {"min_firmware", b ? min_firmware(b) : json_null()}});
}

struct predicate {
    const char *name;
    int (*of_device)();
    int (*of_board)(const board *) = nullptr;
};

constexpr predicate predicates[] = {
    {"is_gen1", is_gen1},
    {"is_gen2", is_gen2},
    {"is_gen3_HB", is_gen3_HB},
    {"is_single_5ghz_gen3", is_single_5ghz_gen3},
    {"is_gen3", is_gen3},
    {"is_zel5", is_zel5},
    {"is_zel6", is_zel6},
    {"is_zel6_enterprise", is_zel6_enterprise},
    {"is_zel6_tamar_iw", is_zel6_tamar_iw},
    {"is_zel6_lr_aqr112c", is_zel6_lr_aqr112c},
    {"is_zelac_iw", is_zelac_iw},
    {"is_qca_ap", is_qca_ap},
    {"is_wifi_only", is_wifi_only},
    {"is_force_detect_loop", is_force_detect_loop},
    {"is_qm", is_qm},
    {"is_router_to_mesh", is_router_to_mesh},
    {"is_qm_setup_complete", is_qm_setup_complete},
    {"is_wul_supported", is_wul_supported},
    {"corvo_board_is_beta_firmware", nullptr, corvo_board_is_beta_firmware},
    {"zel_is_supported_by_old_wifi", nullptr, zel_is_supported_by_old_wifi},
    {"zel_is_supported_ble_fast_adopt", nullptr, zel_is_supported_ble_fast_adopt},
};

bool holds(const predicate &p)
{
    return (p.of_device ? p.of_device() : p.of_board(board_identify())) != 0;
}

} // namespace

json_t *identity_document()
{
    const board *b = board_identify();
    return object({{"model", text(map_board_name(b))},
                   {"platform", text(b->platform)},
                   {"code", code_of(device_identify_by_sysid(b->system_id))},
                   {"system_id", text(format("%04x", b->system_id))},
                   {"firmware", firmware_version()},
                   {"serial", serial_number()},
                   {"board_revision", board_revision()},
                   {"hardware_revision", number(b->hw_rev)},
                   {"bom_revision", bom_revision()},
                   {"mac", text(get_main_mac_str())},
                   {"cpu_mac", cpu_mac(b)},
                   {"ethernet_ports", number(get_num_of_eth_ports())},
                   {"radios", number(b->radio_count)},
                   {"poe_budget_w", number(board_get_poe_budget())},
                   {"qr_code", flag(corvo_board_has_qrcode() != 0)},
                   {"accelerometer", flag(has_accelerometer() != 0)}});
}

json_ref port_documents()
{
    json_ref rows{list()};
    int64_t group_number = 0;
    for (const board_port_group &group : groups_of(board_identify())) {
        group_number++;
        for (const board_port &port : ports_of(group))
            append(rows.get(), object({{"group", number(group_number)},
                                       {"phy_idx", number(port.phy_idx)},
                                       {"port_id", number(port.port_id)},
                                       {"main", flag(&port == get_main_phy())},
                                       {"poe", poe_of(port)},
                                       {"label", text_or_null(port.label)}}));
    }
    return rows;
}

json_ref radio_documents()
{
    json_ref rows{list()};
    const board *b = board_identify();
    for (const board_radio &radio : std::span{b->radios}.first(std::min<size_t>(b->radio_count, std::size(b->radios))))
        append(rows.get(), object({{"ifname", name_or_null(radio.ifname)},
                                   {"chip", text_or_null(radio.chip)},
                                   {"bus_id", ids_text(radio.bus_vendor_id, radio.bus_device_id)},
                                   {"subsystem", ids_text(radio.subsystem_vendor_id, radio.subsystem_id)},
                                   {"bands", bands_of(radio)},
                                   {"tx_chains", number(radio.tx_chains)},
                                   {"rx_chains", number(radio.rx_chains)}}));
    return rows;
}

json_ref model_table_documents(bool all)
{
    json_ref rows{list()};
    for (unsigned id = 1; id <= UINT16_MAX; id++) {
        const auto system_id = static_cast<uint16_t>(id);
        const board *b = corvo_get_board(system_id);
        const struct device *model = b || all ? corvo_get_device(system_id) : nullptr;
        if (b || model)
            append(rows.get(), model_row(system_id, b, model));
    }
    return rows;
}

json_ref predicate_documents()
{
    json_ref rows{list()};
    for (const bool wanted : {true, false})
        for (const predicate &p : predicates)
            if (holds(p) == wanted)
                append(rows.get(), object({{"predicate", text(p.name)}, {"holds", flag(wanted)}}));
    return rows;
}
