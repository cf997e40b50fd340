// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "core/text.h"

#include <cstring>
#include <net/if.h>

namespace {

struct text_field {
    char *text;
    uint32_t size;
};

void clear(text_field field)
{
    copy_text(field.text, field.size, "");
}

// Switches write a list: the model comes first.
void copy_to_comma(text_field field, const char *text)
{
    if (field.size > 0 && text)
        (void)snprintf(field.text, field.size, "%.*s", int(strcspn(text, ",")), text);
}

void write_vendor(text_field field, const char *chassis)
{
    unsigned char b[6];
    constexpr uint32_t digits = 6;
    if (field.size > digits && chassis &&
        sscanf(chassis, "%hhx:%hhx:%hhx:%hhx:%hhx:%hhx", &b[0], &b[1], &b[2], &b[3], &b[4], &b[5]) == 6)
        (void)snprintf(field.text, field.size, "%02x%02x%02x", b[0], b[1], b[2]);
}

bool find_uplink(char (&name)[IFNAMSIZ])
{
    name[0] = '\0'; // stays so when no interface is found
    return get_uplink_device(name, sizeof name) == 0 && name[0] != '\0';
}

} // namespace

extern "C" int vexa_get_lldp_report(char *chassis_descr, uint32_t chassis_descr_size, char *oui, uint32_t oui_size,
                                    uint8_t *is_wireless_uplink, char *uplink_descr, uint32_t uplink_descr_size)
{
    const text_field chassis{chassis_descr, chassis_descr_size};
    const text_field vendor{oui, oui_size};
    const text_field peer{uplink_descr, uplink_descr_size};
    for (const text_field field : {chassis, vendor, peer})
        clear(field);
    *is_wireless_uplink = 0;

    const int main_port = get_main_phy_port_id();
    char uplink[IFNAMSIZ];
    if (!find_uplink(uplink))
        return -1;
    const bool wireless = !begins_with(uplink, "eth") && !begins_with(uplink, "bond");
    *is_wireless_uplink = wireless;

    const json_ref neighbours{vexa_get_lldp_json()};
    if (!neighbours)
        return -ENOENT;
    for (size_t i = 0; i < json_array_size(neighbours.get()); i++) {
        json_t *neighbour = json_array_get(neighbours.get(), i);
        const char *descr = vexa_json_get_str(neighbour, "chassis_descr", nullptr);
        if (main_port >= 0 && vexa_json_read_i64(neighbour, "local_port_idx", -1) == main_port) {
            write_vendor(vendor, vexa_json_get_str(neighbour, "chassis_id", nullptr));
            copy_to_comma(chassis, descr);
        } else if (wireless && strcmp(vexa_json_get_str(neighbour, "local_port_name", ""), uplink) == 0) {
            copy_to_comma(peer, descr);
        }
    }
    return 0;
}
