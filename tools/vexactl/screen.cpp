// SPDX-License-Identifier: MIT
#include "screen.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr char to_other_screen[] = "\033[?1049h\033[?25l\033[?7l"; // without cursor and wrapping
constexpr char back[] = "\033[?7h\033[?25h\033[?1049l";
constexpr char home[] = "\033[H";
constexpr char rest_of_line[] = "\033[K";
constexpr char rest_of_screen[] = "\033[J";

bool put(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            return false;
        if (written > 0)
            bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

size_t height()
{
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_row > 0 ? size.ws_row : 24;
}

} // namespace

bool screen::is_there()
{
    const char *terminal = getenv("TERM");
    return isatty(STDIN_FILENO) && isatty(STDOUT_FILENO) && terminal && *terminal && strcmp(terminal, "dumb") != 0;
}

void screen::enter()
{
    if (tcgetattr(STDIN_FILENO, &before_) != 0)
        return;
    termios now = before_;
    now.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    now.c_cc[VMIN] = 1;
    now.c_cc[VTIME] = 0;
    (void)tcsetattr(STDIN_FILENO, TCSANOW, &now);
    entered_ = true;
    (void)put(to_other_screen);
}

void screen::leave()
{
    if (!entered_)
        return;
    entered_ = false;
    (void)put(back);
    (void)tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_); // what was typed meanwhile is not for the shell
}

// The line that stands in each place is overwritten, so that nothing flickers.
bool screen::draw(const std::string &lines)
{
    std::string page = home;
    const size_t room = height();
    size_t at = 0;
    for (size_t row = 0; row < room && at < lines.size(); row++) {
        const size_t end = std::min(lines.find('\n', at), lines.size());
        page += (row > 0 ? "\r\n" : "") + lines.substr(at, end - at) + rest_of_line;
        at = end + 1;
    }
    return put(page + rest_of_screen);
}
