// SPDX-License-Identifier: MIT
#include "sim/record/disguise.h"

#include <algorithm>
#include <cctype>
#include <random>

namespace sim {

namespace {

constexpr uint32_t low_half = 0xffffff, last_digit = 0xf;

enum class nature : uint8_t { plain, network, person, secret };

// What a value is, by the last word of its key.
constexpr struct {
    std::string_view word;
    nature is;
} natures[] = {
    {"ssid", nature::network},     {"essid", nature::network},   {"hostname", nature::person},
    {"comment", nature::person},   {"location", nature::person}, {"contact", nature::person},
    {"identity", nature::person},  {"username", nature::person}, {"psk", nature::secret},
    {"key", nature::secret},       {"password", nature::secret}, {"passphrase", nature::secret},
    {"secret", nature::secret},    {"authkey", nature::secret},  {"token", nature::secret},
    {"community", nature::secret},
};

constexpr std::string_view switches[] = {"", "*", "enabled", "disabled", "true", "false", "none", "0", "1"};

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

bool is_hexadecimal(char c)
{
    return isxdigit(static_cast<unsigned char>(c)) != 0;
}

// "network.1.psk2" ends in "psk", "sshd.auth.key.1.value" in "key".
nature nature_of(std::string_view key)
{
    constexpr std::string_view value = ".value";
    if (key.ends_with(value)) {
        key.remove_suffix(value.size());
        while (!key.empty() && (is_digit(key.back()) || key.back() == '.'))
            key.remove_suffix(1);
    }
    while (!key.empty() && is_digit(key.back()))
        key.remove_suffix(1);
    const size_t before = key.find_last_of("._-");
    const std::string_view last = key.substr(before == key.npos ? 0 : before + 1);
    const auto *found = std::ranges::find(natures, last, [](const auto &n) { return n.word; });
    return found == std::end(natures) ? nature::plain : found->is;
}

bool is_switch(std::string_view value)
{
    return std::ranges::find(switches, value) != std::end(switches);
}

bool is_in_word(char c)
{
    return isalnum(static_cast<unsigned char>(c)) || c == ':' || c == '-';
}

// The digits of "02:57:00:00:00:01", "02-57-00-00-00-01" or "025700000001"; empty for any other word.
std::string address_digits(std::string_view word)
{
    constexpr size_t digits = 12, with_signs = 17;
    std::string out;
    if (word.size() != digits && word.size() != with_signs)
        return {};
    for (size_t i = 0; i < word.size(); i++) {
        const bool sign = word.size() == with_signs && i % 3 == 2;
        if (sign ? word[i] != word[2] || is_hexadecimal(word[i]) : !is_hexadecimal(word[i]))
            return {};
        if (!sign)
            out += word[i];
    }
    return out;
}

// "11111111-2222-4333-8444-555555555555"
bool is_identifier(std::string_view word)
{
    constexpr size_t length = 36, signs[] = {8, 13, 18, 23};
    if (word.size() != length)
        return false;
    for (size_t i = 0; i < length; i++)
        if (std::ranges::find(signs, i) != std::end(signs) ? word[i] != '-' : !is_hexadecimal(word[i]))
            return false;
    return true;
}

driver::mac mac_of_digits(const std::string &digits)
{
    driver::mac address{};
    for (size_t i = 0; i < address.size(); i++)
        address[i] = uint8_t(std::stoul(digits.substr(2 * i, 2), nullptr, 16));
    return address;
}

} // namespace

driver::mac disguise::address(driver::mac a)
{
    constexpr uint8_t group = 1;
    const uint32_t low = uint32_t{a[3]} << 16 | uint32_t{a[4]} << 8 | a[5];
    if ((a[0] & group) || a == driver::mac{})
        return a;
    const auto block = blocks_.try_emplace((low & low_half) / (last_digit + 1), uint32_t(blocks_.size() + 1)).first;
    const uint32_t other = block->second * (last_digit + 1) | (low & last_digit);
    for (size_t i = 0; i < 3; i++)
        a[3 + i] = uint8_t(other >> (16 - 8 * i));
    return a;
}

std::string disguise::numbered(table &known, const std::string &kind, std::string_view name)
{
    if (name.empty())
        return {};
    return known.try_emplace(std::string{name}, kind + std::to_string(known.size() + 1)).first->second;
}

// Of the same length and made of the same kinds of characters, so that it serves where the other did.
std::string disguise::secret(std::string_view text)
{
    const auto [known, is_new] = secrets_.try_emplace(std::string{text}, text);
    if (!is_new)
        return known->second;
    std::mt19937 dice{unsigned(secrets_.size())};
    const bool hexadecimal = std::ranges::all_of(text, [](char c) { return is_hexadecimal(c) || c == '-'; });
    for (char &c : known->second) {
        const auto one_of = [&](char first, unsigned count) { return char(first + char(dice() % count)); };
        if (is_digit(c))
            c = one_of('0', 10);
        else if (isupper(static_cast<unsigned char>(c)))
            c = one_of('A', hexadecimal ? 6 : 26);
        else if (isalpha(static_cast<unsigned char>(c)) || static_cast<unsigned char>(c) > 0x7e)
            c = one_of('a', hexadecimal ? 6 : 26);
    }
    return known->second;
}

std::string disguise::word(std::string_view text)
{
    if (is_identifier(text))
        return secret(text);
    const std::string digits = address_digits(text);
    if (digits.empty())
        return std::string{text};
    std::string out = driver::text_of(address(mac_of_digits(digits)));
    const bool capital = std::ranges::any_of(text, [](char c) { return c >= 'A' && c <= 'F'; });
    if (text.size() == digits.size())
        std::erase(out, ':');
    else
        std::ranges::replace(out, ':', text[2]);
    if (capital)
        std::ranges::transform(out, out.begin(), [](char c) { return char(toupper(c)); });
    return out;
}

std::string disguise::words(std::string_view text)
{
    std::string out;
    for (size_t at = 0; at < text.size();) {
        const auto *end = std::find_if_not(text.begin() + at, text.end(), is_in_word);
        const size_t length = size_t(end - text.begin()) - at;
        out += length ? word(text.substr(at, length)) : std::string{text[at]};
        at += std::max<size_t>(length, 1);
    }
    return out;
}

std::string disguise::line(std::string_view text)
{
    const size_t equals = text.find('=');
    if (equals == text.npos)
        return words(text);
    const std::string_view value = text.substr(equals + 1);
    std::string out{text.substr(0, equals + 1)};
    if (is_switch(value))
        return out += value;
    switch (nature_of(text.substr(0, equals))) {
    case nature::network:
        return out += network(value);
    case nature::person:
        return out += person(value);
    case nature::secret:
        return out += secret(value);
    case nature::plain:
        break;
    }
    for (const table *known : {&networks_, &people_}) // under another key
        if (const auto name = known->find(value); name != known->end())
            return out += name->second;
    return out += words(value);
}

std::string disguise::text(std::string_view content)
{
    std::string out;
    while (!content.empty()) {
        const size_t end = std::min(content.find('\n'), content.size());
        out += line(content.substr(0, end));
        if (end < content.size())
            out += '\n';
        content.remove_prefix(std::min(end + 1, content.size()));
    }
    return out;
}

} // namespace sim
