// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "loop.h"
#include "message.h"
#include "output.h"
#include "text.h"

#include <cerrno>
#include <cstring>
#include <libvexa.h>
#include <sys/stat.h>

namespace {

constexpr uint16_t send_timeout_s = 3;

// Closes what was opened, which removes its file, too.
struct endpoint : uds_sock {
    endpoint(const char *path, bool server) { uds_socket_create(path, this, server); }
    endpoint(const endpoint &) = delete;
    ~endpoint() { uds_sock_close(this); }
};

struct frame : sk_msg {
    explicit frame(int32_t of_type = 0, std::string_view payload = {}) : sk_msg{}
    {
        type = of_type;
        data = buffer_create();
        if (!data || (len = data->write(data, payload.data(), payload.size())) != int(payload.size()))
            out_of_memory();
    }
    frame(const frame &) = delete;
    ~frame() { buffer_destroy(data); }
    std::string_view text() const { return {static_cast<const char *>(data->head(data)), data->len(data)}; }
};

struct choice {
    const char *path;
    std::optional<int32_t> type;
    uint16_t seconds;
};

std::string read_choice(const arguments &args, uint16_t seconds, choice &out)
{
    const std::string name = args.command()->name;
    const auto type = number32(args, "type", 0);
    const auto timeout = number16(args, "timeout", seconds);
    out.path = args.value("socket");
    if (!out.path)
        return name + ": --socket is missing";
    if (strlen(out.path) > sizeof(sockaddr_un::sun_path))
        return name + ": the path of a socket has at most " + std::to_string(sizeof(sockaddr_un::sun_path)) + " bytes";
    if (!type || !timeout)
        return name + ": --type takes a number of 32 bits, --timeout one from 0 to 65535";
    if (args.has("type"))
        out.type = type;
    out.seconds = *timeout;
    return "";
}

int msg_send(const arguments &args, output &out)
{
    choice to;
    std::string payload, wrong = read_choice(args, send_timeout_s, to);
    if (wrong.empty() && !to.type)
        wrong = "msg send: --type is missing";
    if (wrong.empty())
        wrong = read_payload(args, 0, payload);
    if (!wrong.empty())
        return out.fail(status_usage, wrong);
    const endpoint own{to.path, false};
    if (own.fd < 0)
        return out.fail(status_unavailable, std::string{to.path} + ": " + strerror(errno));
    frame message{*to.type, payload};
    const int sent = sk_msg_send(own.fd, &message, to.seconds);
    if (sent < 0)
        return out.fail(status_unavailable, "the message was not sent; -v shows why");
    if (out.for_people())
        return out.write(format("%d bytes sent\n", sent));
    return out.show({json_ref{object({{"type", number(message.type)}, {"bytes", number(sent)}})}, {}});
}

// A server's endpoint takes the place of whatever is there.
std::string obstacle(const char *path)
{
    struct stat found;
    if (lstat(path, &found) != 0)
        return "";
    if (!S_ISSOCK(found.st_mode))
        return std::string{path} + " is no socket";
    return endpoint{path, false}.fd < 0 ? "" : std::string{"another program listens at "} + path;
}

struct receiving {
    const choice &wanted;
    output &out;
    int fd;
    event_base *loop;
    int status;
};

int show_frame(output &out, const frame &message, const sockaddr_un &sender)
{
    const std::string from{sender.sun_path, strnlen(sender.sun_path, sizeof sender.sun_path)};
    if (out.for_people())
        return out.write(format("type %d  ", message.type) + visible(message.text()) + '\n');
    return out.show({json_ref{object({{"type", number(message.type)},
                                      {"from", text(from)},
                                      {"text", text(message.text())},
                                      {"hex", text(hex_of(message.text()))}})},
                     {}});
}

void take_frame(evutil_socket_t, short, void *context)
{
    auto &now = *static_cast<receiving *>(context);
    frame message;
    sockaddr_un sender{};
    socklen_t length = sizeof sender;
    const int got = sk_msg_recvfrom(now.fd, &message, reinterpret_cast<sockaddr *>(&sender), &length);
    if (got < 0 || (now.wanted.type && *now.wanted.type != message.type))
        return;
    now.status = show_frame(now.out, message, sender);
    event_base_loopbreak(now.loop);
}

int msg_recv(const arguments &args, output &out)
{
    choice at;
    std::string wrong = read_choice(args, 0, at);
    if (!wrong.empty())
        return out.fail(status_usage, wrong);
    wrong = obstacle(at.path);
    if (!wrong.empty())
        return out.fail(status_unavailable, wrong);
    const unique_loop loop{event_base_new()};
    const loop_end ends{loop.get(), at.seconds};
    const endpoint own{at.path, true};
    if (own.fd < 0)
        return out.fail(status_unavailable, std::string{at.path} + ": " + strerror(errno));
    receiving now{at, out, own.fd, loop.get(), -1};
    const unique_event readable{event_new(loop.get(), own.fd, EV_READ | EV_PERSIST, take_frame, &now)};
    event_add(readable.get(), nullptr);
    event_base_dispatch(loop.get());
    return now.status < 0 ? out.fail(status_negative, "no message came") : now.status;
}

constexpr option place = {"socket", "PATH", "where the receiver listens"};

constexpr verb verbs[] = {
    {.name = "msg send",
     .operands = "[TEXT]",
     .summary = "send a framed message to a program on this device",
     .options = {{place,
                  {"type", "N", "what the receiver tells messages apart by"},
                  {"hex", "BYTES", "send these instead of a text"},
                  {"timeout", "SECONDS", "how long each part may take; default 3"}}},
     .example = "vexactl msg send --socket /var/run/helper.sock --type 7 hello",
     .run = msg_send},
    {.name = "msg recv",
     .summary = "listen at a socket and show the first framed message",
     .options = {{place,
                  {"type", "N", "drop messages of other types"},
                  {"timeout", "SECONDS", "give up after so long, with status 1"}}},
     .example = "vexactl msg recv --socket /var/run/helper.sock --timeout 10 --json",
     .run = msg_recv},
};

} // namespace

const verb_family msg_family = verbs;
