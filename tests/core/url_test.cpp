// SPDX-License-Identifier: MIT
#include "core/url.h"

#include "tests/support/captured_log.h"
#include "tests/support/device.h"

static unique_url parsed(const std::string &text)
{
    return unique_url{url_parse(text.c_str())};
}

TEST(url_parse, takes_a_url_apart_and_puts_it_together_again)
{
    constexpr std::tuple<const char *, const char *, const char *, int, bool> rows[] = {
        {"h/a", "http://h/a", "h", 80, false},
        {"wss://h:8443", "wss://h:8443/", "h", 8443, false},
        {"HTTPS://h:443/x", "https://h/x", "h", 443, false},
        {"ws://a:b@c@h?q", "ws://a:b@c@h?q", "h", 80, false},
        {"stun://@h;p/:1", "stun://@h;p/:1", "h", 3478, false},
        {"http://[fe80::1]:8080/", "http://[fe80::1]:8080/", "fe80::1", 8080, true},
        {"http://[fe80::1%eth0]", "http://[fe80::1%eth0]/", "fe80::1%eth0", 80, true},
        {"http://192.0.2.1:81", "http://192.0.2.1:81/", "192.0.2.1", 81, false},
        {"http://2001:db8::7", "http://[2001:db8::7]/", "2001:db8::7", 80, true},
        {"http://::ffff:192.0.2.1", "http://[::ffff:192.0.2.1]/", "::ffff:192.0.2.1", 80, true},
        {"cafe", "http://[cafe]/", "cafe", 80, true},
        {"http://h:65534/", "http://h:65534/", "h", 65534, false},
        {"http://h:65535/", "http://h/", "h", 80, false},
        {"http://h:0/", "http://h/", "h", 80, false},
        {"https://h:000081/", "https://h/", "h", 443, false},
        {"http://h:+81/", "http://h/", "h", 80, false},
        {"http://[::1]:/", "http://[::1]/", "::1", 80, true}};
    for (const auto &[text, normalized, host, port, v6] : rows) {
        const unique_url u = parsed(text);
        ASSERT_TRUE(u) << text;
        EXPECT_STREQ(u->normalized, normalized) << text;
        EXPECT_STREQ(u->host, host) << text;
        EXPECT_EQ(std::tie(u->port, u->is_ipv6, u->original), std::tuple(port, v6, std::string{text})) << text;
    }
    const unique_url u = parsed("https://me@h");
    EXPECT_STREQ(u->userinfo, "me");
    EXPECT_TRUE(u->is_https && u->path == std::string{"/"} && u->scheme == std::string{"https"});
    EXPECT_EQ(parsed("http://h")->userinfo, nullptr);
}

TEST(url_parse, rejects_what_would_be_read_in_two_ways)
{
    for (const char *text : {"", "ftp://h", "://h", "h:80", "http://", "http:///x", "http://me@/", "http://[fe80::1",
                             "http://[]", "http://[::1]x", "http://x[::1]", "http://[[::1]", "http://::1]",
                             "http://h/a b", "http://h\n", "http://h/\x7f", "\thttp://h"})
        EXPECT_FALSE(parsed(text)) << text;
    EXPECT_FALSE(url_parse(nullptr));
    EXPECT_TRUE(parsed(std::string(1024, 'x')));
    EXPECT_FALSE(parsed(std::string(1025, 'x')));
}

TEST(url_resolve, keeps_the_last_address_in_the_record)
{
    the_device.put("/etc/nsswitch.conf", "hosts: files\n");
    the_device.put("/etc/host.conf", "multi on\n");
    the_device.put("/etc/hosts", "192.0.2.1 two.example\n192.0.2.2 two.example\n2001:db8::1 six.example\n");
    const auto resolved = [](const char *text, int family) {
        const unique_url u = parsed(text);
        addrinfo hints = {};
        hints.ai_family = family;
        hints.ai_socktype = SOCK_STREAM;
        hints.ai_flags = AI_CANONNAME;
        if (const int error = url_resolve(u.get(), family ? &hints : nullptr))
            return std::to_string(error);
        const unique_url copy{url_copy(u.get())};
        EXPECT_EQ(copy->addr.ai_addr, &copy->sockaddr.any);
        EXPECT_TRUE(!u->addr.ai_next && !u->addr.ai_canonname && u->addr.ai_socktype == SOCK_STREAM);
        char address[64];
        return std::string{url_addr_ntop(copy->addr.ai_addr, address, sizeof address)};
    };
    EXPECT_EQ(resolved("http://two.example:8080", AF_UNSPEC), "192.0.2.2:8080");
    EXPECT_EQ(resolved("https://six.example", AF_INET6), "[2001:db8::1]:443");
    EXPECT_EQ(resolved("http://[2001:db8::7]", AF_INET6), "[2001:db8::7]:80");
    EXPECT_EQ(resolved("http://six.example", AF_UNSPEC), std::to_string(EAI_NONAME)) << "IPv4 unless asked";
    EXPECT_EQ(url_resolve(nullptr, nullptr), -1);

    const captured_log log;
    resolved("http://192.0.2.1", AF_UNSPEC);
    resolved("http://none.example", AF_UNSPEC);
    EXPECT_EQ(log.text(), "[debug] libvexa.url_resolve(): url: http://192.0.2.1/\n"
                          "[debug] libvexa.dump_addrinfo(): 192.0.2.1:80 family 2 type 1 protocol 6 flags 0x0\n"
                          "[debug] libvexa.url_resolve(): url: http://none.example/\n"
                          "[debug] libvexa.url_resolve(): failed to resolve URL : Name or service not known\n");
}

TEST(url_replace, copies_before_it_releases)
{
    url *target = url_parse("http://me@h:81/p");
    EXPECT_EQ(url_replace(&target, target), target);
    EXPECT_STREQ(target->normalized, "http://me@h:81/p");
    EXPECT_STREQ(target->original, "http://me@h:81/p");
    EXPECT_EQ(url_replace(&target, nullptr), nullptr);
    EXPECT_EQ(target, nullptr);
}
