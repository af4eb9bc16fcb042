#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tool/analysis/findings.hpp"
#include "tool/analysis/heard.hpp"

// What each family of rules remembers of one speaker: a terminal on one link, a set behind a hub, a module
// behind a set.

namespace ztdecode::tool {

// How long something may take that has no limit of its own: an answer, a last segment.
inline constexpr std::int64_t patience_time = 10 * 1000000;  // microseconds, where times are known;
inline constexpr std::uint64_t patience_messages = 50;       // of the same speaker, where not

inline bool too_late(const Moment& since, const Moment& now) noexcept {
    if (since.time && now.time) return *now.time - *since.time > patience_time;
    return now.number - since.number > patience_messages;
}

// One message as the rules hear it.
struct Heard {
    Values values;
    Standing standing;
    Moment moment;            // among the messages of its speaker
    bool knows_system;        // messages from the system are in the trace
    bool knows_past;          // the speaker has been heard for longer than `patience`
    std::string_view module;  // type of the module that speaks, or is spoken to; none: the terminal itself

    std::string_view name() const noexcept { return standing.message; }
    std::string_view link() const noexcept { return standing.link; }
    bool to_system() const noexcept { return standing.direction == to_dhs; }
    bool server() const noexcept { return link() == "call_server" || link() == "presentation_server"; }
    // A terminal or a module says that it has started.
    bool starts() const noexcept { return to_system() && (name() == "reset" || name() == "init"); }
    // The system makes it start anew.
    bool restarts() const noexcept;
};

// "0x1d"
std::string as_code(std::int64_t code);

// Where findings go.
class Found {
  public:
    explicit Found(std::vector<Finding>& findings) noexcept : findings_(findings) {}
    // `code` is a rule's.
    void add(std::string_view code, const Standing& at, std::vector<Standing> on, std::string words);
    void add(std::string_view code, const Standing& at, std::string words) {
        add(code, at, {at}, std::move(words));
    }

  private:
    std::vector<Finding>& findings_;
};

struct SaidAt {
    Standing standing;
    Moment moment;
};

// Messages that are findings by themselves.
void look_at_contents(const Heard& heard, Found& found);
void look_at_ticket(const Heard& heard, const Findings::Limits& limits, Found& found);

// The last commands that a terminal got, for what it refuses of them.
class Commands {
  public:
    void message(const Heard& heard, Found& found);

  private:
    struct Command {
        Standing standing;
        std::uint32_t code;
        std::optional<std::int64_t> object_class;
        std::optional<std::int64_t> object;
    };
    void refused(const Heard& heard, Found& found) const;
    void object_error(const Heard& heard, Found& found) const;
    // The last one for which `matches` holds; null where there is none.
    template <class Matches>
    const Command* last(Matches matches) const;

    static constexpr std::size_t most = 32;
    std::vector<Command> commands_;  // a ring
    std::size_t count_ = 0;
};

class Resets {
  public:
    void message(const Heard& heard, Found& found);

  private:
    static constexpr std::size_t repeated = 3;
    static constexpr std::int64_t within_time = std::int64_t{600} * 1000000;
    static constexpr std::uint64_t within_messages = 200;

    void started(const Heard& heard, Found& found);

    static bool too_old(const Moment& then, const Moment& now) noexcept;

    bool running_ = false;
    std::optional<Moment> told_to_;  // by the system
    std::vector<SaidAt> last_;
};

class Inquiries {
  public:
    void message(const Heard& heard, const Findings::Limits& limits, Found& found);
    void look(const Moment& now, Found& found);

  private:
    struct Asked {
        SaidAt said;
        std::size_t pair;
        bool late;
    };
    void answered(const Heard& heard, std::size_t pair, const Findings::Limits& limits, Found& found);

    static constexpr std::size_t most = 64;
    std::vector<Asked> asked_;
};

class Streams {
  public:
    void message(const Heard& heard, Found& found);
    void look(const Moment& now, Found& found);
    void end(const Moment& now, Found& found);

  private:
    struct Stream {
        std::int64_t channel;
        SaidAt start;
        std::string remote;
        std::optional<SaidAt> ticket;
    };
    void start(const Heard& heard, Found& found);
    void ticket(const Heard& heard);
    static void not_stopped(const Stream& stream, Found& found);

    static constexpr std::size_t most = 64;
    std::vector<Stream> running_;
};

class Downloads {
  public:
    void message(const Heard& heard, Found& found);

  private:
    std::optional<SaidAt> begun_;
    SaidAt last_;
    std::uint64_t packets_ = 0;
};

// A series of segments in one direction. They count down to 0.
class Segments {
  public:
    void message(const Heard& heard, Found& found);
    void look(const Moment& now, Found& found);
    void end(Found& found);

  private:
    static constexpr std::size_t most = 128;
    struct Series {
        bool known = false;  // its first segment was heard
        bool open = false;
        std::size_t segments = 0;
        std::size_t last = 0;  // still to come behind the last one
        std::bitset<most> heard;
        SaidAt first;
        SaidAt latest;
    };
    static void take(Series& series, const Heard& heard, std::size_t to_come, bool first, Found& found);
    static void close(Series& series, Found& found);

    std::array<Series, 2> series_;
};

// Objects of the object protocol.
class Objects {
  public:
    void message(const Heard& heard, Found& found);

  private:
    using Id = std::pair<std::int64_t, std::int64_t>;  // class, number
    void changed(const Heard& heard, const Id& id, Found& found);
    void created(const Id& id);
    void deleted(const Heard& heard, const Id& id);
    void forget();

    static constexpr std::size_t most = 4096;
    bool all_known_ = false;  // since the terminal started
    Standing started_;
    std::set<Id> objects_;
    std::set<std::int64_t> classes_;  // of which some were created
    std::map<Id, Standing> deleted_;
};

// All of one speaker.
struct Speaker {
    std::uint64_t messages = 0;
    Moment first;
    Commands commands;
    Resets resets;
    Inquiries inquiries;
    Streams streams;
    Downloads downloads;
    Segments segments;
    Objects objects;
};

}  // namespace ztdecode::tool
