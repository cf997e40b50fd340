// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/text.h"
#include "messaging/webrtc_channel.h"

#include <cstring>

static_assert(sizeof(request_block) == webrtc_data_size);
static_assert(offsetof(request_block, turn) == 4 && offsetof(request_block, stun) == 404);
static_assert(offsetof(request_block, username) == 804 && offsetof(request_block, turn_query) == 1004);
static_assert(offsetof(request_block, reg_url) == 1008 && offsetof(request_block, creds_url) == 1408);

namespace {

constexpr char log_tag[] = "libvexa_webrtc";
constexpr int offer_timeout_s = 60;
constexpr int answer_timeout_s = 5;
constexpr int sessions_timeout_s = 3;
constexpr size_t session_list_size = 548;

enum command { next_offer = 1, offer_reply = 2, set_answer = 3, all_sessions = 4, close_session = 5 };

webrtc_record request(command code, const char *uuid, size_t room)
{
    webrtc_record record{code, {}};
    copy_text(record.body, room, uuid);
    return record;
}

const char *data(const webrtc_record &record)
{
    return record.body + webrtc_uuid_size;
}

unique_text uuid_of(const webrtc_record &reply)
{
    return unique_text{strndup(reply.body, webrtc_uuid_size)};
}

const char *text_or_none(const char *text)
{
    return text ? text : "";
}

// Texts of the caller's block need no zero at their end.
#define FIELD(text) int(strnlen(text, sizeof(text))), text

void log_request(const char *func, const char *uuid, const request_block &req)
{
    log_info_as(func,
                "SDP request: uuid<%s>, stun<%.*s>, turn<%.*s>, username<%.*s>"
                " turn_query<%d>, reg_url<%.*s>, creds_url<%.*s>",
                uuid, FIELD(req.stun), FIELD(req.turn), FIELD(req.username), req.turn_query, FIELD(req.reg_url),
                FIELD(req.creds_url));
}

// Takes what the reply tells, and the offer that follows a complete one.
int take_offer(const char *func, const unique_fd &channel, const webrtc_record &reply, webrtc_inform &out)
{
    const bool complete = data(reply)[0] != 0;
    free_webrtc_inform(&out);
    out.uuid = uuid_of(reply).release();
    const int result = complete ? sdp_offer_recv(channel.get(), &out) : 0;
    out.turn_creds = strndup(data(reply) + 1, webrtc_data_size - 1);
    log_info_as(func, "Get SDP offer: uuid<%s>, complete<%s>, turn_creds: <%s>, offer<%s>", text_or_none(out.uuid),
                complete ? "true" : "false", text_or_none(out.turn_creds), text_or_none(out.offer));
    return result;
}

} // namespace

extern "C" int get_next_sdp_offer(const char *uuid, const request_block *req, webrtc_inform *out)
{
    if (!uuid || !req || !out)
        return -1;
    webrtc_record record = request(next_offer, uuid, webrtc_uuid_size);
    memcpy(record.body + webrtc_uuid_size, req, sizeof *req);
    const unique_fd channel = send_webrtc_request(__func__, record);
    if (!channel)
        return -1;
    log_request(__func__, uuid, *req);
    unique_text replied;
    while (receive_webrtc_record(channel, offer_timeout_s, record)) {
        if (record.code != offer_reply)
            continue;
        replied = uuid_of(record);
        const int result = take_offer(__func__, channel, record, *out);
        if (data(record)[0] != 0)
            return result;
    }
    log_warn("Get SDP offer: uuid<%s> TIMEOUT! errno:%d/%s", replied ? replied.get() : uuid, errno, strerror(errno));
    return -ENOENT;
}

extern "C" int set_sdp_answer(const char *uuid, const char *answer, char **out_uuid)
{
    if (!uuid || !answer || !out_uuid)
        return -1;
    webrtc_record record = request(set_answer, uuid, sizeof record.body);
    const unique_fd channel = send_webrtc_request(__func__, record);
    if (!channel)
        return -1;
    (void)sdp_answer_send(channel.get(), answer);
    log_info("Set SDP answer: uuid<%s>, answer<%s>", uuid, answer);
    // callers rely on 0 from here on: whether they get a uuid tells what became of the answer
    if (!receive_webrtc_record(channel, answer_timeout_s, record)) {
        log_warn("Set SDP answer: uuid<%s> TIMEOUT!", uuid);
    } else if (record.code == 0) {
        log_info("Set SDP success: uuid<%s>", uuid);
        *out_uuid = uuid_of(record).release();
    } else {
        log_err("Set SDP fail: uuid<%s>", uuid);
    }
    return 0;
}

extern "C" int get_all_sdp_sessions(void *out548)
{
    if (!out548)
        return -1;
    webrtc_record record{all_sessions, {}};
    const unique_fd channel = send_webrtc_request(__func__, record);
    if (!channel)
        return -1;
    if (!receive_webrtc_record(channel, sessions_timeout_s, record)) {
        log_warn("SDP get all sessions: TIMEOUT!");
        return 0;
    }
    int32_t count;
    memcpy(&count, data(record), sizeof count);
    if (record.code != 0 || count <= 0)
        return 0;
    memcpy(out548, data(record), session_list_size);
    return count;
}

extern "C" int close_sdp_session(const char *uuid)
{
    if (!uuid || !send_webrtc_request(__func__, request(close_session, uuid, sizeof(webrtc_record::body))))
        return -1;
    log_info("SDP closed: uuid<%s>", uuid);
    return 0;
}
