// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <termios.h>

// The terminal as a page that is drawn again and again: the other screen, without cursor and wrapping, and keys that
// come at once and unseen. After leave(), or the end of this, it is as it was before enter().
class screen {
public:
    static bool is_there(); // standard input and output are a terminal that can do so

    screen() = default;
    screen(const screen &) = delete;
    screen &operator=(const screen &) = delete;
    ~screen() { leave(); }

    void enter();
    void leave();
    bool draw(const std::string &lines); // as many as there is room for; false when the terminal is gone

private:
    bool entered_ = false;
    termios before_{};
};
