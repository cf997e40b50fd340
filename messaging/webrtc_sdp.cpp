// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"

#include <cstring>

static_assert(sizeof(webrtc_inform) == 4 * sizeof(char *) && offsetof(webrtc_inform, turn_creds) == 3 * sizeof(char *));

namespace {

constexpr char log_tag[] = "libvexa_webrtc";
constexpr int timeout_s = 5;
constexpr int answer_type = 1;

} // namespace

extern "C" int sdp_offer_recv(int fd, webrtc_inform *out)
{
    if (!out)
        return -1;
    const unique_buffer data{buffer_create()};
    if (!data) {
        log_err("buffer_create failed.");
        return -1;
    }
    sk_msg msg{0, 0, data.get()};
    if (sk_msg_recv(fd, &msg, timeout_s) < 0) {
        log_err("Recv failed, exit");
        return -1;
    }
    free(out->offer);
    out->offer = strndup(static_cast<const char *>(data->head(data.get())), data->len(data.get()));
    return out->offer ? 0 : -1;
}

extern "C" int sdp_answer_send(int fd, const char *answer)
{
    if (!answer)
        return -1;
    const unique_buffer data{buffer_create()};
    const size_t length = strlen(answer);
    if (!data || size_t(data->write(data.get(), answer, length)) != length) {
        log_err("buffer_create failed.");
        return -1;
    }
    sk_msg msg{answer_type, int(length), data.get()};
    (void)sk_msg_send(fd, &msg, timeout_s); // logged; what the listener replies tells whether it got the answer
    return 0;
}

extern "C" void free_webrtc_inform(webrtc_inform *p)
{
    if (!p)
        return;
    free(p->offer);
    free(p->uuid);
    free(p->reserved);
    free(p->turn_creds);
    *p = {};
}
