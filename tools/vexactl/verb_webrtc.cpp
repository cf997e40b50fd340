// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "message.h"
#include "output.h"
#include "progress.h"

#include <cerrno>
#include <cstring>
#include <libvexa.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr char listener[] = "IPC_WEBRTC_LISTENER"; // in the abstract namespace
constexpr char not_sent[] = "the request could not be sent; -v shows why";
constexpr size_t list_size = 548;

// Asked beforehand, since the library by itself writes on standard error when nobody does.
bool someone_listens()
{
    sockaddr_un address{AF_UNIX, ""};
    memcpy(address.sun_path + 1, listener, sizeof listener);
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const bool found = connect(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    close(fd);
    return found;
}

int fail_without_listener(output &out)
{
    return out.fail(status_unavailable, std::string{"nobody listens at "} + listener);
}

struct offered : webrtc_inform {
    offered() : webrtc_inform{} {}
    offered(const offered &) = delete;
    ~offered() { free_webrtc_inform(this); }
};

struct block_option {
    const char *name;
    char *field;
    size_t size;
};

std::string read_block(const arguments &args, request_block &out)
{
    const auto query = number32(args, "turn-query", 0);
    if (!query)
        return "webrtc offer: --turn-query takes a number of 32 bits";
    out.turn_query = *query;
    for (const block_option &o : {block_option{"turn", out.turn, sizeof out.turn},
                                  {"stun", out.stun, sizeof out.stun},
                                  {"user", out.username, sizeof out.username},
                                  {"register", out.reg_url, sizeof out.reg_url},
                                  {"credentials", out.creds_url, sizeof out.creds_url}}) {
        const char *given = args.value(o.name, "");
        if (strlen(given) > o.size)
            return "webrtc offer: --" + std::string{o.name} + " takes at most " + std::to_string(o.size) + " bytes";
        memcpy(o.field, given, strlen(given));
    }
    return "";
}

int next_offer(const char *uuid, const request_block &block, offered &out)
{
    const progress waiting{"waiting for an offer"};
    return get_next_sdp_offer(uuid, &block, &out);
}

int webrtc_offer(const arguments &args, output &out)
{
    request_block block{};
    const std::string wrong = read_block(args, block);
    if (!wrong.empty())
        return out.fail(status_usage, wrong);
    if (!someone_listens())
        return fail_without_listener(out);
    offered got;
    const int result = next_offer(args.operand(0), block, got);
    if (result == -ENOENT)
        return out.fail(status_negative, "no offer came");
    if (result != 0)
        return out.fail(status_unavailable, "the offer did not come over; -v shows why");
    static constexpr column labels[] = {{"uuid", "Session"}, {"turn_creds", "TURN"}, {"offer", "Offer"}};
    return out.show({json_ref{object({{"uuid", text_or_null(got.uuid)},
                                      {"turn_creds", text_or_null(got.turn_creds)},
                                      {"offer", text_or_null(got.offer)}})},
                     labels});
}

int webrtc_answer(const arguments &args, output &out)
{
    if (!someone_listens())
        return fail_without_listener(out);
    char *accepted = nullptr;
    if (set_sdp_answer(args.operand(0), args.operand(1), &accepted) != 0)
        return out.fail(status_unavailable, not_sent);
    if (!accepted)
        return out.fail(status_negative, "the answer was not accepted; -v shows why");
    const json_ref document{object({{"uuid", text(accepted)}})};
    free(accepted);
    return out.for_people() ? int(status_ok) : out.show({json_ref{json_incref(document.get())}, {}});
}

int webrtc_sessions(const arguments &, output &out)
{
    if (!someone_listens())
        return fail_without_listener(out);
    char list[list_size] = "";
    const int count = get_all_sdp_sessions(list);
    if (count < 0)
        return out.fail(status_unavailable, not_sent);
    std::string entries(list + sizeof(int32_t), sizeof list - sizeof(int32_t));
    entries.resize(entries.find_last_not_of('\0') + 1);
    static constexpr column labels[] = {{"count", "Sessions", kind::number}, {"list", "List"}};
    return out.show({json_ref{object({{"count", number(count)}, {"list", text(hex_of(entries))}})}, labels});
}

int webrtc_close(const arguments &args, output &out)
{
    if (!someone_listens())
        return fail_without_listener(out);
    if (close_sdp_session(args.operand(0)) != 0)
        return out.fail(status_unavailable, not_sent);
    return out.for_people() ? int(status_ok) : out.show({json_ref{object({{"uuid", text(args.operand(0))}})}, {}});
}

constexpr verb verbs[] = {
    {.name = "webrtc offer",
     .operands = "UUID",
     .summary = "ask the WebRTC listener for a session's next offer",
     .options = {{{"stun", "SERVER", "for the listener, as are the others"},
                  {"turn", "SERVER", "TURN server"},
                  {"user", "NAME", "user name at the TURN server"},
                  {"turn-query", "N", "whether to ask for TURN credentials; default 0"},
                  {"register", "URL", "where to register"},
                  {"credentials", "URL", "where the credentials are"}}},
     .example = "vexactl webrtc offer 5f0c --stun stun.example --format kv",
     .run = webrtc_offer},
    {.name = "webrtc answer",
     .operands = "UUID SDP",
     .summary = "hand the answer to an offer to the WebRTC listener",
     .options = {},
     .example = "vexactl webrtc answer 5f0c \"$(cat answer.sdp)\"",
     .run = webrtc_answer},
    {.name = "webrtc sessions",
     .summary = "how many sessions are open, and the listener's list of them",
     .options = {},
     .example = "vexactl webrtc sessions --json",
     .run = webrtc_sessions},
    {.name = "webrtc close",
     .operands = "UUID",
     .summary = "ask the WebRTC listener to close a session",
     .options = {},
     .example = "vexactl webrtc close 5f0c",
     .run = webrtc_close},
};

} // namespace

const verb_family webrtc_family = verbs;
