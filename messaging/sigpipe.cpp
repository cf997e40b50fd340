// SPDX-License-Identifier: MIT
#include "messaging/sigpipe.h"

#include "core/owner.h"

#include <ctime>

namespace {

sigset_t only_sigpipe()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    return set;
}

bool is_pending()
{
    sigset_t pending;
    return sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
}

} // namespace

sigpipe_guard::sigpipe_guard() : was_pending_{is_pending()}
{
    const sigset_t set = only_sigpipe();
    (void)pthread_sigmask(SIG_BLOCK, &set, &before_);
}

sigpipe_guard::~sigpipe_guard()
{
    const keep_errno kept;
    const sigset_t set = only_sigpipe();
    constexpr timespec at_once{};
    if (!was_pending_ && is_pending())
        (void)sigtimedwait(&set, nullptr, &at_once);
    (void)pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}
