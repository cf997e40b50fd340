// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "loop.h"
#include "satisfaction.h"
#include "screen.h"
#include "text.h"
#include "wireless.h"

#include <cstring>
#include <unistd.h>

namespace {

constexpr timeval cycle{1, 0};

struct view {
    output &out;
    event_base *loop;
    satisfaction scores;
    screen terminal;

    void end() { event_base_loopexit(loop, nullptr); }
};

std::string heading(const satisfaction_cycle &now)
{
    const size_t clients = json_array_size(now.clients.get());
    std::string line = clients == 1 ? "1 client" : std::to_string(clients) + " clients";
    if (now.score >= 0)
        line += ", access point " + std::to_string(now.score);
    return line + "   (q quits)\n\n";
}

// A client takes one line: of several anomalies the first is named.
void shorten(json_t *clients)
{
    for (size_t i = 0; i < json_array_size(clients); i++) {
        json_t *row = json_array_get(clients, i);
        const json_t *anomalies = json_object_get(row, "anomalies");
        if (const size_t count = json_array_size(anomalies); count > 1)
            json_object_set_new(
                row, "anomalies",
                text(std::string{bytes_of(json_array_get(anomalies, 0))} + " +" + std::to_string(count - 1)));
    }
}

void refresh(evutil_socket_t, short, void *context)
{
    view &v = *static_cast<view *>(context);
    satisfaction_cycle now = v.scores.next();
    const std::string first = heading(now);
    shorten(now.clients.get());
    if (!v.terminal.draw(first + v.out.rendered({std::move(now.clients), client_columns, "no clients"})))
        v.end();
}

void read_keys(evutil_socket_t fd, short, void *context)
{
    view &v = *static_cast<view *>(context);
    char keys[64];
    const ssize_t count = read(fd, keys, sizeof keys);
    if (count <= 0 || memchr(keys, 'q', static_cast<size_t>(count)) || memchr(keys, 'Q', static_cast<size_t>(count)))
        v.end();
}

void end(evutil_socket_t, short, void *context)
{
    static_cast<view *>(context)->end();
}

// The shell gets its terminal back while this is stopped.
void stop(evutil_socket_t, short, void *context)
{
    view &v = *static_cast<view *>(context);
    v.terminal.leave();
    raise(SIGSTOP);
    v.terminal.enter();
    refresh(-1, 0, context);
}

constexpr struct {
    int number;
    event_callback_fn handler;
} signals[] = {{SIGINT, end}, {SIGTERM, end}, {SIGHUP, end}, {SIGQUIT, end}, {SIGTSTP, stop}, {SIGWINCH, refresh}};

int watch(output &out)
{
    const unique_loop loop{event_base_new()};
    std::vector<unique_event> events; // outlive the view: no signal may end us before the terminal is given back
    view v{out, loop.get(), {}, {}};
    const auto add = [&](int fd, short what, event_callback_fn handler, const timeval *timeout = nullptr) {
        events.emplace_back(event_new(loop.get(), fd, static_cast<short>(what | EV_PERSIST), handler, &v));
        event_add(events.back().get(), timeout);
    };
    for (const auto &s : signals)
        add(s.number, EV_SIGNAL, s.handler);
    add(STDIN_FILENO, EV_READ, read_keys);
    add(-1, 0, refresh, &cycle);
    v.terminal.enter();
    refresh(-1, 0, &v);
    event_base_dispatch(loop.get());
    return status_ok;
}

int satisfied(const arguments &args, output &out)
{
    if (!args.has("watch")) {
        satisfaction_cycle now = satisfaction{}.next();
        const int shown = out.show({std::move(now.clients), client_columns, "no clients"});
        return now.silent.empty() ? shown : no_stations(out, now.silent);
    }
    if (!out.for_people())
        return out.fail(status_usage, "satisfaction: --watch is for people; programs ask again");
    if (!screen::is_there())
        return out.fail(status_usage, "satisfaction: --watch needs a terminal");
    return watch(out);
}

constexpr verb verbs[] = {
    {.name = "satisfaction",
     .summary = "how well each client is served, and by what it is held back, worst first",
     .options = {{{"watch", nullptr, "follow it on the terminal; q quits"}}},
     .example = "vexactl satisfaction --watch",
     .run = satisfied},
};

} // namespace

const verb_family satisfaction_family = verbs;
