// SPDX-License-Identifier: MIT
#include "core/open_file.h"
#include "core/paths.h"
#include "core/text.h"
#include "device/board_table.h"
#include "device/identity.h"
#include "device/processor.h"

#include <cstring>

namespace {

constexpr uint16_t no_vendor = 0xffff;
constexpr uint16_t atheros = 0x168c;

// All that is kept for the life of the process.
const board *answer; // of board_identify()
board *heap_copy;
board fallback;

bool refresh_copy(const board &record)
{
    if (!heap_copy)
        heap_copy = static_cast<board *>(malloc(sizeof *heap_copy));
    if (heap_copy)
        *heap_copy = record;
    return heap_copy != nullptr;
}

// A legacy board has no identity file; its radios are what the bus tells.
const board *make_fallback()
{
    board_radio radio{};
    radio.chip = "Unknown";
    radio.ifname = "";
    radio.bus_vendor_id = atheros;
    copy_text(fallback.name, sizeof fallback.name, "Unknown");
    fallback.mcu_image = "";
    fallback.radio_count = 0;
    (void)processor_family(); // so far all families get the same record
    pci_dev devices[std::size(fallback.radios)];
    const int found = pci_detect(devices, int(std::size(devices)), atheros);
    for (int i = 0; i < found; i++) {
        radio.subsystem_id = devices[i].subsystem_id;
        radio.subsystem_vendor_id = devices[i].subsystem_vendor_id;
        fallback.radios[fallback.radio_count++] = radio;
    }
    return &fallback;
}

} // namespace

extern "C" int board_identify_ids(uint16_t *vendor_id, uint16_t *system_id)
{
    const unique_file file = open_reader(path_system_info);
    if (!file)
        return -ENOENT;
    bool has_vendor = false;
    bool has_system = false;
    char line[256];
    while (fgets(line, sizeof line, file.get())) {
        unsigned id;
        if (sscanf(line, "vendorid=%x", &id) == 1) {
            *vendor_id = uint16_t(id);
            has_vendor = true;
        } else if (sscanf(line, "systemid=%x", &id) == 1) {
            *system_id = uint16_t(id);
            has_system = true;
        }
    }
    return has_vendor && has_system ? 0 : -1;
}

extern "C" board *get_board(void)
{
    uint16_t vendor_id = no_vendor;
    uint16_t system_id = 0;
    const bool known = board_identify_ids(&vendor_id, &system_id) == 0 && vendor_id == VEXA_VENDOR_ID;
    const board *record = known ? find_board(system_id) : nullptr;
    if (record && !refresh_copy(*record))
        return nullptr;
    if (heap_copy)
        complete_board(*heap_copy);
    return heap_copy;
}

extern "C" board *corvo_identify(void)
{
    return heap_copy ? heap_copy : get_board();
}

extern "C" const board *board_identify(void)
{
    if (!answer)
        answer = corvo_identify();
    if (!answer)
        answer = make_fallback();
    return answer;
}

extern "C" void update_cached_board(const board *b)
{
    answer = b;
}
