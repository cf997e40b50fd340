// SPDX-License-Identifier: MIT
#include "core/ascii.h"
#include "core/hex.h"
#include "core/url.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <syslog.h>

namespace {

using std::string_view;

constexpr size_t longest_text = 1024;
constexpr size_t longest_port = 5;
constexpr unsigned largest_port = 65534;

struct url_parts {
    const url_scheme *scheme = nullptr;
    string_view userinfo;
    bool has_userinfo = false;
    string_view host;
    bool is_ipv6 = false;
    string_view port;
    string_view path;
};

bool is_acceptable(const char *text)
{
    const size_t length = strnlen(text, longest_text + 1);
    for (size_t i = 0; i < length; i++)
        if (static_cast<unsigned char>(text[i]) <= ' ' || text[i] == 0x7f)
            return false;
    return length > 0 && length <= longest_text;
}

string_view before(string_view text, size_t at)
{
    return {text.data(), at};
}

string_view after(string_view text, size_t at)
{
    return {text.data() + at + 1, text.size() - at - 1};
}

// A ":" that begins the port; the host is what stands before it.
void split_port(string_view text, url_parts &out)
{
    const size_t colon = text.find(':');
    out.host = colon == text.npos ? text : before(text, colon);
    out.port = colon == text.npos ? string_view{} : after(text, colon);
}

bool is_name(string_view text)
{
    for (const char c : text)
        if (is_letter(c) && hex_value(c) < 0)
            return true;
    return false;
}

bool split_brackets(string_view text, url_parts &out)
{
    const size_t end = text.find(']');
    if (text.front() != '[' || end == text.npos)
        return false;
    const string_view rest = after(text, end);
    if (!rest.empty() && rest.front() != ':')
        return false;
    out.host = after(before(text, end), 0);
    out.port = rest.empty() ? rest : after(rest, 0);
    out.is_ipv6 = true;
    return true;
}

bool split_host(string_view text, url_parts &out)
{
    if (text.find('[') != text.npos) {
        if (!split_brackets(text, out))
            return false;
    } else if (is_name(text) || text.find('.') < text.find(':')) {
        split_port(text, out);
    } else {
        out.host = text;
        out.is_ipv6 = true;
    }
    return !out.host.empty() && out.host.find('[') == text.npos && out.host.find(']') == text.npos;
}

bool split(const char *text, url_parts &out)
{
    const char *colon = strchr(text, ':');
    if (colon && (colon[1] != '/' || colon[2] != '/'))
        return false;
    out.scheme = find_url_scheme(colon ? string_view{text, size_t(colon - text)} : "http");
    if (!out.scheme)
        return false;
    const char *start = colon ? colon + 3 : text;
    const size_t length = strcspn(start, "/?;");
    out.path = {start + length, strlen(start + length)};
    string_view authority{start, length};
    if (const size_t at = authority.rfind('@'); at != authority.npos) {
        out.has_userinfo = true;
        out.userinfo = before(authority, at);
        authority = after(authority, at);
    }
    return split_host(authority, out);
}

uint16_t port_of(const url_parts &parts)
{
    const char *end = parts.port.data() + parts.port.size();
    unsigned port = 0;
    const bool usable = !parts.port.empty() && parts.port.size() <= longest_port &&
                        std::from_chars(parts.port.data(), end, port).ptr == end && port > 0 && port <= largest_port;
    return usable ? uint16_t(port) : parts.scheme->port;
}

char *copy_of(string_view text)
{
    return strndup(text.data(), text.size());
}

char *normalize(const url &u, const url_scheme &scheme)
{
    char port[8] = "";
    if (u.port != scheme.port)
        snprintf(port, sizeof port, ":%u", u.port);
    return malloc_printf("%s://%s%s%s%s%s%s%s", u.scheme, u.userinfo ? u.userinfo : "", u.userinfo ? "@" : "",
                         u.is_ipv6 ? "[" : "", u.host, u.is_ipv6 ? "]" : "", port, u.path);
}

// False when memory runs out.
bool fill(url &u, const char *text, const url_parts &parts)
{
    u.original = strdup(text);
    u.scheme = copy_of(parts.scheme->name);
    u.userinfo = parts.has_userinfo ? copy_of(parts.userinfo) : nullptr;
    u.host = copy_of(parts.host);
    u.port = port_of(parts);
    u.path = copy_of(parts.path.empty() ? "/" : parts.path);
    u.is_https = parts.scheme->name == "https";
    u.is_ipv6 = parts.is_ipv6;
    if (!u.original || !u.scheme || (parts.has_userinfo && !u.userinfo) || !u.host || !u.path)
        return false;
    u.normalized = normalize(u, *parts.scheme);
    return u.normalized != nullptr;
}

} // namespace

extern "C" url *url_parse(const char *text)
{
    url_parts parts;
    if (!text || !is_acceptable(text) || !split(text, parts))
        return nullptr;
    unique_url u{static_cast<url *>(calloc(1, sizeof(url)))};
    if (!u || !fill(*u, text, parts)) {
        syslog(LOG_ERR, "%s:%d url oom\n", __func__, 1);
        return nullptr;
    }
    return u.release();
}
