// SPDX-License-Identifier: MIT
#include "sim/record/disguise.h"
#include "sim/record/recording.h"

#include <algorithm>
#include <cstdio>
#include <libvexa.h>
#include <memory>

namespace sim {

namespace {

std::string line_of_bytes(size_t at, std::string_view row)
{
    char piece[8];
    snprintf(piece, sizeof piece, "%04zx", at);
    std::string line = piece;
    for (const char byte : row) {
        snprintf(piece, sizeof piece, " %02x", unsigned(uint8_t(byte)));
        line += piece;
    }
    return line + '\n';
}

// "VEXA:MODEL:SERIAL:CODE": the serial number is the base address, the code is a secret.
std::string hide_label(disguise &names, const std::string &label)
{
    const size_t code = label.rfind(':');
    if (code == label.npos)
        return names.secret(label);
    const size_t serial = label.rfind(':', code - 1);
    if (code == 0 || serial == label.npos)
        return names.secret(label);
    return label.substr(0, serial + 1) + names.words(label.substr(serial + 1, code - serial - 1)) + ':' +
           names.secret(label.substr(code + 1));
}

} // namespace

// docs/eeprom.md tells what stands where.
void record_factory_data(disguise &names, const std::filesystem::path &file)
{
    constexpr size_t revision_at = 0x10, revision_size = 4, label_at = 0x20, label_size = 64;
    const std::unique_ptr<buffer, decltype(&buffer_destroy)> image{vexa_read_eeprom(), buffer_destroy};
    if (!image)
        return;
    const std::string_view bytes{static_cast<const char *>(image->head(image.get())), image->len(image.get())};
    driver::mac base{};
    std::copy_n(bytes.begin(), base.size(), base.begin());
    base = names.address(base);
    const std::string_view label = bytes.substr(label_at, label_size);
    std::string lines = line_of_bytes(0, {reinterpret_cast<const char *>(base.data()), base.size()}) +
                        line_of_bytes(revision_at, bytes.substr(revision_at, revision_size));
    if (const size_t end = label.find_first_of(std::string_view{"\0\xff", 2}); end != 0)
        lines += "0020 \"" + hide_label(names, std::string{label.substr(0, end)}) + "\"\n";
    write_file(file, "# Factory data: base address, hardware revision, QR code.\n" + lines);
}

} // namespace sim
