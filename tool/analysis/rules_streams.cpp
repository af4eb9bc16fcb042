#include <algorithm>
#include <string>

#include "tool/analysis/rules.hpp"

// Voice streams of an IP set, by their channels. A stop whose start is not in the trace belongs to a stream
// that ran before it.

namespace ztdecode::tool {

namespace {

// A stream that runs on for so long behind its start was forgotten.
constexpr std::int64_t longest_time = std::int64_t{4} * 3600 * 1000000;
constexpr std::uint64_t longest_messages = 500;

// No address at all, everybody's, or the terminal's own.
bool goes_nowhere(std::string_view address) {
    if (address.empty()) return false;
    return address.find_first_not_of("0:.") == std::string_view::npos || address == "255.255.255.255" ||
           address.starts_with("127.");
}

std::string destination(const Values& values) {
    const std::string_view address = values.shown("remote_ip");
    const std::string_view port = values.shown("remote_udp_port");
    if (address.empty()) return "port " + std::string(port);
    return std::string(address) + (port.empty() ? "" : " port " + std::string(port));
}

std::string on_channel(std::int64_t channel) {
    return channel == 0 ? "" : " on channel " + std::to_string(channel);
}

void look_at_destination(const Heard& heard, Found& found) {
    const auto port = heard.values.number("remote_udp_port");
    if (!goes_nowhere(heard.values.shown("remote_ip")) && (!port || *port != 0)) return;
    found.add("stream-to-nowhere", heard.standing,
              std::string(heard.name()) + " to " + destination(heard.values));
}

std::int64_t channel_of(const Heard& heard) { return heard.values.number("channel_number").value_or(0); }

}  // namespace

void Streams::message(const Heard& heard, Found& found) {
    const std::string_view name = heard.name();
    if (heard.starts() || heard.restarts()) {
        running_.clear();
    } else if (name == "start_rtp") {
        look_at_destination(heard, found);
        start(heard, found);
    } else if (name == "redirect_rtp") {
        look_at_destination(heard, found);
    } else if (name == "stop_rtp") {
        const std::int64_t channel = channel_of(heard);
        std::erase_if(running_, [&](const Stream& stream) { return stream.channel == channel; });
    } else if (name == "qos_ticket") {
        ticket(heard);
    }
}

void Streams::start(const Heard& heard, Found& found) {
    const std::int64_t channel = channel_of(heard);
    const auto running = std::find_if(running_.begin(), running_.end(),
                                      [&](const Stream& stream) { return stream.channel == channel; });
    if (running != running_.end()) {
        found.add("stream-started-twice", heard.standing, {running->start.standing, heard.standing},
                  "start_rtp to " + destination(heard.values) + on_channel(channel) +
                      " while the stream to " + running->remote + " runs");
        running_.erase(running);
    }
    if (running_.size() == most) running_.erase(running_.begin());
    running_.push_back({channel, {heard.standing, heard.moment}, destination(heard.values), std::nullopt});
}

// The call is over; the stop may come behind its ticket.
void Streams::ticket(const Heard& heard) {
    const std::string_view remote = heard.values.shown("remote_ip");
    for (Stream& stream : running_) {
        const std::string_view address = std::string_view(stream.remote).substr(0, stream.remote.find(' '));
        if (!remote.empty() && address == remote && !stream.ticket)
            stream.ticket = SaidAt{heard.standing, heard.moment};
    }
}

void Streams::not_stopped(const Stream& stream, Found& found) {
    std::vector<Standing> on = {stream.start.standing};
    if (stream.ticket) on.push_back(stream.ticket->standing);
    found.add("stream-not-stopped", stream.start.standing, std::move(on),
              "the stream to " + stream.remote + on_channel(stream.channel) +
                  (stream.ticket ? " runs on behind its ticket" : " is not stopped"));
}

void Streams::look(const Moment& now, Found& found) {
    std::erase_if(running_, [&](const Stream& stream) {
        if (!stream.ticket || !too_late(stream.ticket->moment, now)) return false;
        not_stopped(stream, found);
        return true;
    });
}

void Streams::end(const Moment& now, Found& found) {
    look(now, found);
    for (const Stream& stream : running_) {
        const Moment& start = stream.start.moment;
        const bool forgotten = start.time && now.time ? *now.time - *start.time > longest_time
                                                      : now.number - start.number > longest_messages;
        if (forgotten) not_stopped(stream, found);
    }
}

}  // namespace ztdecode::tool
