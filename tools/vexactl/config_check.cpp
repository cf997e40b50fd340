// SPDX-License-Identifier: MIT
#include "config_check.h"

#include "text.h"

#include <algorithm>
#include <arpa/inet.h>
#include <unordered_map>

namespace {

constexpr size_t longest_line = 1023; // what readers with a fixed buffer take in
constexpr size_t site_key_digits = 32;

std::string_view trimmed(std::string_view text)
{
    const size_t first = text.find_first_not_of(" \t");
    return first == text.npos ? text.substr(0, 0) : text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

bool is_digit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool is_multicast(const std::string &text)
{
    in_addr address{};
    return inet_pton(AF_INET, text.c_str(), &address) == 1 && IN_MULTICAST(ntohl(address.s_addr));
}

class checker {
public:
    void line(std::string_view content, bool complete);
    std::vector<finding> findings();

private:
    void entry(std::string_view raw_key, std::string_view value, bool complete);
    void check_key(std::string_view raw_key, std::string_view key);
    void check_value(const std::string &key, std::string_view value, bool complete);
    void check_known(const std::string &key, const std::string &value);
    void found(const char *problem, std::string_view key, std::string text)
    {
        findings_.push_back({line_, problem, std::string{key}, std::move(text)});
    }

    std::vector<finding> findings_;
    std::unordered_map<std::string, size_t> first_line_; // of each key, in lower case
    size_t line_ = 0;
    size_t returns_ = 0, first_return_ = 0; // lines that end in a carriage return, and the place of the first finding
    bool in_misc_ = false;
};

void checker::line(std::string_view content, bool complete)
{
    line_++;
    if (content.rfind('#', 0) == 0) {
        in_misc_ = in_misc_ || content.rfind("# misc", 0) == 0;
        return;
    }
    if (content.empty() || content[0] == '\r')
        return;
    if (content.size() > longest_line)
        found("long-line", "", format("%zu bytes long; some readers stop at %zu", content.size(), longest_line));
    const size_t equals = content.find('=');
    if (equals == content.npos)
        return found("no-equals", "", "no \"=\": passed over: " + std::string{content.substr(0, 40)});
    entry(content.substr(0, equals), content.substr(equals + 1), complete);
}

void checker::entry(std::string_view raw_key, std::string_view value, bool complete)
{
    const std::string_view key = trimmed(raw_key.substr(0, raw_key.find('\0')));
    check_key(raw_key, key);
    const auto [first, is_new] = first_line_.insert({lower_case(key), line_});
    if (!is_new && !in_misc_)
        found("duplicate-key", key, format("again; the value of line %zu holds", first->second));
    check_value(first->first, value, complete);
}

void checker::check_key(std::string_view raw_key, std::string_view key)
{
    if (raw_key.find('\0') != raw_key.npos)
        found("zero-byte", key, "a zero byte ends the key");
    if (key.empty())
        found("empty-key", key, "nothing before the \"=\"");
    if (key.find_first_of(" \t") != key.npos)
        found("blank-in-key", key, "a blank inside the key");
}

void checker::check_value(const std::string &key, std::string_view value, bool complete)
{
    if (!complete)
        found("no-line-feed", key, "no line feed: the last character is lost");
    if (value.find('\0') != value.npos)
        found("zero-byte", key, "a zero byte ends the value");
    if (!value.empty() && value.back() == '\r') {
        if (returns_++ == 0) {
            first_return_ = findings_.size();
            found("carriage-return", key, "a carriage return is kept in the value");
        }
        value.remove_suffix(1);
    }
    if (std::any_of(value.begin(), value.end(), [](char c) { return c > 0 && c < ' ' && c != '\t'; }))
        found("control-character", key, "a control character in the value");
    check_known(key, std::string{value.substr(0, value.find('\0'))});
}

void checker::check_known(const std::string &key, const std::string &value)
{
    if (key == "corvo.key" && value.size() != site_key_digits)
        found("site-key", key, format("%zu characters instead of %zu", value.size(), site_key_digits));
    else if (key == "corvo.key" && !std::all_of(value.begin(), value.end(), is_digit))
        found("site-key", key, "not all hexadecimal: the key ends at the first other pair");
    if (key == "corvo.mcip" && !is_multicast(value))
        found("group", key, "no multicast address: " + value.substr(0, 40));
}

std::vector<finding> checker::findings()
{
    if (returns_ > 1)
        findings_[first_return_].text += format(", and in %zu more", returns_ - 1);
    return std::move(findings_);
}

} // namespace

std::vector<finding> check_configuration(std::string_view bytes)
{
    checker c;
    while (!bytes.empty()) {
        const size_t end = bytes.find('\n');
        c.line(bytes.substr(0, end), end != bytes.npos);
        bytes.remove_prefix(end == bytes.npos ? bytes.size() : end + 1);
    }
    return c.findings();
}
