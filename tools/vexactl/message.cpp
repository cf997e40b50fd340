// SPDX-License-Identifier: MIT
#include "message.h"

#include "arguments.h"
#include "text.h"

#include <charconv>
#include <libvexa.h>

std::optional<std::string> bytes_of_hex(std::string_view digits)
{
    if (digits.size() % 2 || digits.find_first_not_of("0123456789abcdefABCDEF") != digits.npos)
        return {};
    std::string bytes(digits.size() / 2, '\0');
    hex2uchar(std::string{digits}.c_str(), reinterpret_cast<unsigned char *>(bytes.data()), bytes.size());
    return bytes;
}

std::string hex_of(std::string_view bytes)
{
    std::string digits(2 * bytes.size() + 1, '\0');
    uchar2lowerhex(reinterpret_cast<const unsigned char *>(bytes.data()), bytes.size(), digits.data(), digits.size());
    digits.pop_back();
    return digits;
}

std::string mac_text(const uint8_t mac[6])
{
    return format("%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
}

bool read_mac(std::string_view text, uint8_t (&mac)[6])
{
    return strtomac(std::string{text}.c_str(), mac) == 0 && mac_text(mac) == lower_case(text);
}

namespace {

template <typename T>
std::optional<T> number_after(const arguments &args, const char *option, T otherwise)
{
    const char *given = args.value(option);
    if (!given)
        return otherwise;
    const std::string_view digits = given;
    T value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return error == std::errc{} && end == digits.data() + digits.size() ? std::optional{value} : std::nullopt;
}

} // namespace

std::optional<uint16_t> number16(const arguments &args, const char *option, uint16_t otherwise)
{
    return number_after(args, option, otherwise);
}

std::optional<int32_t> number32(const arguments &args, const char *option, int32_t otherwise)
{
    return number_after(args, option, otherwise);
}

std::string read_payload(const arguments &args, size_t index, std::string &out)
{
    const std::string name = args.command()->name;
    const char *text = args.operand(index), *hex = args.value("hex");
    if (!text == !hex)
        return name + ": either TEXT or --hex is needed";
    const std::optional<std::string> payload = hex ? bytes_of_hex(hex) : std::string{text};
    if (!payload)
        return name + ": --hex takes pairs of hexadecimal digits";
    out = *payload;
    return "";
}

std::string read_message(const arguments &args, size_t index, message &out)
{
    const auto method = number16(args, "method", 0), type = number16(args, "type", 0);
    if (!method || !type)
        return std::string{args.command()->name} + ": --method and --type take numbers from 0 to 65535";
    out.method = *method;
    out.type = *type;
    return read_payload(args, index, out.payload);
}
