// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>
#include <event2/event.h>
#include <memory>

struct free_base {
    void operator()(event_base *base) const { event_base_free(base); }
};
using unique_loop = std::unique_ptr<event_base, free_base>;

struct free_event {
    void operator()(event *e) const { event_free(e); }
};
using unique_event = std::unique_ptr<event, free_event>;

// Ends the loop at SIGINT or SIGTERM, and after so many seconds unless they are 0.
class loop_end {
public:
    loop_end(event_base *loop, unsigned seconds)
        : interrupt_{event_new(loop, SIGINT, EV_SIGNAL, end, loop)},
          termination_{event_new(loop, SIGTERM, EV_SIGNAL, end, loop)}, patience_{event_new(loop, -1, 0, end, loop)}
    {
        const timeval timeout{long(seconds), 0};
        event_add(interrupt_.get(), nullptr);
        event_add(termination_.get(), nullptr);
        if (seconds > 0)
            event_add(patience_.get(), &timeout);
    }

private:
    static void end(evutil_socket_t, short, void *loop)
    {
        event_base_loopexit(static_cast<event_base *>(loop), nullptr);
    }

    unique_event interrupt_, termination_, patience_;
};
