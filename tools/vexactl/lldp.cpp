// SPDX-License-Identifier: MIT
#include "lldp.h"

#include <fcntl.h>
#include <libvexa.h>
#include <unistd.h>

namespace {

// The client complains on standard error, which is for one line of this program unless it is told to be verbose.
class quiet_client {
public:
    quiet_client() : error_{libvexa_log_level == 0 ? fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1) : -1}
    {
        const int nowhere = error_ < 0 ? -1 : open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (nowhere >= 0) {
            (void)dup2(nowhere, STDERR_FILENO);
            (void)close(nowhere);
        }
    }
    quiet_client(const quiet_client &) = delete;
    quiet_client &operator=(const quiet_client &) = delete;
    ~quiet_client()
    {
        if (error_ >= 0) {
            (void)dup2(error_, STDERR_FILENO);
            (void)close(error_);
        }
    }

private:
    int error_;
};

json_t *described(const char *words)
{
    return *words ? text(words) : json_null();
}

} // namespace

json_ref neighbour_documents()
{
    const quiet_client quiet;
    return json_ref{vexa_get_lldp_json()};
}

json_ref switch_document()
{
    const quiet_client quiet;
    char description[256], vendor[7], uplink[256];
    uint8_t is_wireless = 0;
    if (vexa_get_lldp_report(description, sizeof description, vendor, sizeof vendor, &is_wireless, uplink,
                             sizeof uplink) != 0)
        return nullptr;
    return json_ref{object({{"description", described(description)},
                            {"vendor", described(vendor)},
                            {"wireless_uplink", flag(is_wireless != 0)},
                            {"uplink_description", described(uplink)}})};
}
