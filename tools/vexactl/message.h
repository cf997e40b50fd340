// SPDX-License-Identifier: MIT
#pragma once

#include "document.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

class arguments;

// the bytes of pairs of hexadecimal digits; nothing when the text is anything else
std::optional<std::string> bytes_of_hex(std::string_view digits);
std::string hex_of(std::string_view bytes);

// "02:56:58:00:10:01"
std::string mac_text(const uint8_t mac[6]);

// false unless the whole text is one
bool read_mac(std::string_view text, uint8_t (&mac)[6]);

// a number from 0 to 65535 after an option; nothing when it is none
std::optional<uint16_t> number16(const arguments &args, const char *option, uint16_t otherwise);

// likewise, any that fits 32 bits with a sign
std::optional<int32_t> number32(const arguments &args, const char *option, int32_t otherwise);

// What is to be sent: the operand at `index`, or the bytes of --hex. Returns what is wrong with the command line, empty
// when nothing is.
std::string read_payload(const arguments &args, size_t index, std::string &out);

// A payload with method and type.
struct message {
    std::string payload;
    uint16_t method, type;
};

std::string read_message(const arguments &args, size_t index, message &out);
