#include "tool/analysis/calls.hpp"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace ztdecode::tool {

namespace {

std::optional<std::int64_t> whole_number(const Values& values, FieldName name) {
    const NotedValue* const value = values.find(name);
    if (value == nullptr || value->meaning.kind != Kind::number) return std::nullopt;
    return value->meaning.number;
}

std::string_view when(const CapturedMessage& captured) {
    return captured.time.empty() ? captured.columns : captured.time;
}

}  // namespace

void Calls::message(const CapturedMessage& captured, std::uint32_t file, std::string_view terminal,
                    const Values& values) {
    const NotedMessage& noted = *values.part().noted;
    const bool starts = noted.name == "start_rtp";
    const bool stops = noted.name == "stop_rtp";
    if (noted.link != "ip" || (!starts && !stops && noted.name != "qos_ticket")) return;
    terminal_ = terminal;
    if (open_.size() >= most_terminals && !open_.contains(terminal_)) end();
    Open& open = open_[terminal_];
    if (starts) {
        start(captured, file, values, open);
    } else if (stops) {
        const std::int64_t channel = values.number("channel_number").value_or(0);
        for (Call& call : open) {
            if (call.channel != channel || call.stop != 0) continue;
            call.stop = captured.number;
            call.stopped = when(captured);
        }
        let_go(open, [](const Call& call) { return call.stop != 0 && call.ticket != 0; });
    } else {
        ticket(captured, values, open);
    }
}

void Calls::start(const CapturedMessage& captured, std::uint32_t file, const Values& values, Open& open) {
    Call call;
    call.file = file;
    call.start = captured.number;
    call.started = when(captured);
    call.channel = values.number("channel_number").value_or(0);
    call.codec = values.shown("codec");
    call.remote_address = values.shown("remote_ip");
    call.remote_port = values.shown("remote_udp_port");
    call.local_port = values.shown("local_udp_port");
    let_go(open, [&](const Call& other) {
        return other.remote_address == call.remote_address ||
               (other.channel == call.channel && other.stop == 0);
    });
    if (open.size() == most_open) let_go(open, [&](const Call& other) { return &other == &open.front(); });
    open.push_back(std::move(call));
}

void Calls::ticket(const CapturedMessage& captured, const Values& values, Open& open) {
    const std::string_view remote = values.shown("remote_ip");
    const auto call = std::find_if(open.begin(), open.end(), [&](const Call& one) {
        return one.ticket == 0 && !remote.empty() && one.remote_address == remote;
    });
    if (call == open.end()) return;
    call->ticket = captured.number;
    call->local_id = values.shown("local_id");
    call->distant_id = values.shown("distant_id");
    call->duration = whole_number(values, "call_duration");
    call->received = whole_number(values, "packets_received");
    call->lost = whole_number(values, "packets_lost");
    call->longest_delay = whole_number(values, "maximum_delay");
    let_go(open, [](const Call& one) { return one.stop != 0 && one.ticket != 0; });
}

void Calls::let_go(Open& open, const std::function<bool(const Call&)>& which) {
    std::size_t kept = 0;
    for (std::size_t k = 0; k < open.size(); ++k) {
        if (which(open[k])) {
            take_(open[k]);
        } else {
            if (kept != k) open[kept] = std::move(open[k]);
            ++kept;
        }
    }
    open.resize(kept);
}

void Calls::end() {
    std::vector<Call> left;
    for (auto& [terminal, open] : open_) {
        left.insert(left.end(), std::make_move_iterator(open.begin()), std::make_move_iterator(open.end()));
    }
    open_.clear();
    std::stable_sort(left.begin(), left.end(), [](const Call& a, const Call& b) {
        return std::tie(a.file, a.start) < std::tie(b.file, b.start);
    });
    for (const Call& call : left) take_(call);
}

}  // namespace ztdecode::tool
