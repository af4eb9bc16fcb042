#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tool/analysis/heard.hpp"

namespace ztdecode::tool {

// The voice of a call: a start on a channel, with the first stop of that channel before the next start there,
// and the first ticket for its address before the next start to that. Words are as the trace shows them,
// empty where it does not.
struct Call {
    std::uint32_t file = 0;   // number of the trace
    std::uint64_t start = 0;  // lines; 0: not in the trace
    std::uint64_t stop = 0;
    std::uint64_t ticket = 0;
    std::string started;  // times, or the columns in front of the messages
    std::string stopped;
    std::int64_t channel = 0;
    std::string codec;
    std::string remote_address;
    std::string remote_port;
    std::string local_port;
    std::string local_id;
    std::string distant_id;
    std::optional<std::int64_t> duration;  // as the ticket has it
    std::optional<std::int64_t> received;
    std::optional<std::int64_t> lost;
    std::optional<std::int64_t> longest_delay;  // milliseconds
};

class Calls {
  public:
    // Gets each call when nothing more can come of it.
    using Take = std::function<void(const Call&)>;
    explicit Calls(Take take) : take_(std::move(take)) {}

    // `terminal`: what tells it apart from others.
    void message(const CapturedMessage& captured, std::uint32_t file, std::string_view terminal,
                 const Values& values);
    // The trace is done.
    void end();

  private:
    // Of a terminal, and terminals; beyond these the oldest call, or all, are let go.
    static constexpr std::size_t most_open = 64;
    static constexpr std::size_t most_terminals = 10000;

    using Open = std::vector<Call>;
    void let_go(Open& open, const std::function<bool(const Call&)>& which);
    void start(const CapturedMessage& captured, std::uint32_t file, const Values& values, Open& open);
    void ticket(const CapturedMessage& captured, const Values& values, Open& open);

    Take take_;
    std::unordered_map<std::string, Open> open_;
    std::string terminal_;
};

}  // namespace ztdecode::tool
