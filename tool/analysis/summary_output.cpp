#include <algorithm>
#include <string>

#include "tool/analysis/summary.hpp"
#include "tool/output/control.hpp"
#include "tool/report/ndjson.hpp"

// The page, and the same as data.

namespace ztdecode::tool {

namespace {

constexpr std::size_t label_width = 27;

std::string with_noun(std::uint64_t n, std::string_view noun) {
    return std::to_string(n) + " " + std::string(noun) + (n == 1 ? "" : "s");
}

std::string_view word_of(std::uint32_t direction) { return direction == to_dhs ? "to" : "from"; }
std::string_view name_or_none(std::string_view name) { return name.empty() ? "without a name" : name; }

// "1:02:03.500" of microseconds
std::string span_of(std::int64_t microseconds) {
    const std::int64_t ms = microseconds / 1000;
    const auto two = [](std::int64_t n) { return (n < 10 ? "0" : "") + std::to_string(n); };
    const std::string fraction = std::to_string(ms % 1000 + 1000).substr(1);
    return std::to_string(ms / 3600000) + ":" + two(ms / 60000 % 60) + ":" + two(ms / 1000 % 60) + "." +
           fraction;
}

std::string percent_of(std::int64_t part, std::int64_t whole) {
    const std::int64_t hundredths = part * 10000 / whole;
    const std::int64_t below = hundredths % 100;
    return std::to_string(hundredths / 100) + (below < 10 ? ".0" : ".") + std::to_string(below) + " %";
}

std::size_t character_count(std::string_view words) {
    return static_cast<std::size_t>(
        std::count_if(words.begin(), words.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string quoted(std::string_view words) { return "\"" + std::string(words) + "\""; }

}  // namespace

// A label, and behind it what there is, broken between items where the page ends.
class SummaryPage {
  public:
    SummaryPage(const Summary& summary, std::size_t width, Output& out)
        : summary_(summary), width_(width), out_(out) {}

    void write() {
        write_head();
        write_terminals();
        write_messages();
        write_calls();
        write_findings();
    }

  private:
    void heading(std::string_view words) { out_.text.print("\n{-}\n"_cf, words); }

    // What is foreign in it stays in its line.
    void entry(std::string_view label, const std::vector<std::string>& items) {
        Text piece;
        add_escaped_name(label, piece);
        std::size_t at = character_count(piece.view());
        out_.text.add(piece.view());
        const auto indent = [&] {
            out_.text.add(std::string(label_width - std::min(at, label_width), ' '));
            at = label_width;
        };
        // A long label has its line for itself.
        if (at + 1 > label_width) {
            out_.text.add("\n");
            at = 0;
        }
        indent();
        for (std::size_t k = 0; k < items.size(); ++k) {
            piece.clear();
            add_escaped_name(items[k], piece);
            if (k + 1 < items.size()) piece.add(",");
            const std::size_t length = character_count(piece.view());
            const bool first = at == label_width;
            if (!first && at + 1 + length > width_) {
                out_.text.add("\n");
                at = 0;
                indent();
            } else if (!first) {
                out_.text.add(" ");
                ++at;
            }
            out_.text.add(piece.view());
            at += length;
        }
        out_.text.add("\n");
    }

    void write_head() {
        const auto shown = std::min<std::size_t>(summary_.files_.size(), Summary::most_files);
        std::vector<std::string> files(summary_.files_.begin(),
                                       summary_.files_.begin() + static_cast<std::ptrdiff_t>(shown));
        if (summary_.files_.size() > shown)
            files.push_back("and " + std::to_string(summary_.files_.size() - shown) + " more");
        entry(summary_.files_.size() == 1 ? "file" : "files", files);
        const LineTotals& lines = summary_.lines_;
        entry("lines",
              {std::to_string(lines.lines) + ": " + std::to_string(lines.with_messages()) + " with messages",
               std::to_string(lines.refused) + " refused",
               std::to_string(lines.no_trace_line) + " no trace line", std::to_string(lines.blank) + " blank",
               with_noun(lines.comment, "comment")});
        entry("messages", {std::to_string(summary_.messages_)});
        write_span();
    }

    void write_span() {
        if (!summary_.first_) return;
        const Summary::When& first = *summary_.first_;
        const Summary::When& last = summary_.last_;
        if (summary_.first_time_) {
            entry("time", {first.time + " to " + last.time,
                           span_of(*summary_.last_time_ - *summary_.first_time_) + " in all"});
        } else if (!first.columns.empty()) {
            entry("columns", {first.columns + " to " + last.columns});
        }
    }

    void write_terminals() {
        heading("Terminals and modules");
        if (summary_.identities_.empty()) entry("  none says what it is", {});
        for (const Summary::Identity& one : summary_.identities_) {
            std::string label = "  " + one.who.link;
            if (!one.who.place.empty()) label += " " + one.who.place;
            std::vector<std::string> items;
            if (!one.who.name.empty()) items.push_back(one.who.name);
            const bool says_type = std::any_of(one.says.begin(), one.says.end(), [](const auto& entry) {
                return entry.first == "terminal_type";
            });
            if (!says_type && !one.who.type.empty()) items.push_back("type " + one.who.type);
            for (const auto& [what, value] : one.says) items.push_back(said(what, value));
            entry(label, items);
        }
        if (summary_.more_identities_ > 0)
            entry("  and more", {with_noun(summary_.more_identities_, "report") + " of others"});
    }

    static std::string said(std::string_view what, const std::string& value) {
        static constexpr std::pair<std::string_view, std::string_view> labels[] = {
            {"terminal_type", "type "},        {"terminal_design", "design "},
            {"software_version", "software "}, {"hardware_version", "hardware "},
            {"boot_version", "boot "},         {"data_version", "data "},
            {"serialnum", "serial number "},   {"mac_address", "hardware address "},
            {"local_ip_address", "address "},
        };
        for (const auto& [name, label] : labels) {
            if (name == what) return std::string(label) + value;
        }
        return std::string(what) + " " + value;
    }

    void write_messages() {
        heading("Messages by link, direction and name");
        const auto& names = summary_.names_;
        for (auto at = names.begin(); at != names.end();) {
            const auto [link, direction, name] = at->first;
            std::vector<std::pair<std::uint64_t, std::string_view>> of_link;
            for (; at != names.end() && std::get<0>(at->first) == link && std::get<1>(at->first) == direction;
                 ++at)
                of_link.emplace_back(at->second, std::get<2>(at->first));
            std::stable_sort(of_link.begin(), of_link.end(),
                             [](const auto& a, const auto& b) { return a.first > b.first; });
            std::vector<std::string> items;
            items.reserve(of_link.size());
            for (const auto& [n, message] : of_link)
                items.push_back(std::string(name_or_none(message)) + " " + std::to_string(n));
            entry("  " + std::string(link) + " " + std::string(word_of(direction)), items);
        }
    }

    void write_calls() {
        heading("Calls");
        if (summary_.call_count_ == 0) {
            out_.text.add("  none\n");
            return;
        }
        for (const Call& call : summary_.call_list_) entry("  " + when(call), items_of(call));
        if (const std::uint64_t more = summary_.call_count_ - summary_.call_list_.size(); more > 0)
            entry("  and " + with_noun(more, "more call"), {"--format ndjson has all of them"});
    }

    static std::string when(const Call& call) {
        const std::string begin = call.started.empty() ? "line " + std::to_string(call.start) : call.started;
        if (call.stop == 0) return begin + " and on";
        return begin + " to " + (call.stopped.empty() ? std::to_string(call.stop) : call.stopped);
    }

    std::vector<std::string> items_of(const Call& call) const {
        std::vector<std::string> items;
        if (summary_.files_.size() > 1) items.push_back(summary_.files_[call.file]);
        items.push_back("lines " + std::to_string(call.start) + " to " +
                        (call.stop == 0 ? std::string("no stop") : std::to_string(call.stop)));
        if (call.channel != 0) items.push_back("channel " + std::to_string(call.channel));
        if (!call.codec.empty()) items.push_back(call.codec);
        std::string remote = call.remote_address.empty() ? "" : "to " + call.remote_address;
        if (!call.remote_port.empty()) remote += (remote.empty() ? "to port " : " port ") + call.remote_port;
        if (!remote.empty()) items.push_back(remote);
        if (!call.local_port.empty()) items.push_back("from port " + call.local_port);
        if (call.ticket == 0) {
            items.emplace_back("no ticket");
            return items;
        }
        if (!call.local_id.empty() || !call.distant_id.empty())
            items.push_back(quoted(call.local_id) + " with " + quoted(call.distant_id));
        if (call.duration) items.push_back(std::to_string(*call.duration) + " s");
        if (call.lost) {
            const std::int64_t all = *call.lost + call.received.value_or(0);
            items.push_back(
                std::to_string(*call.lost) + " packets lost" +
                (call.received && all > 0 ? " (" + percent_of(*call.lost, all) + ")" : std::string()));
        }
        if (call.longest_delay) items.push_back("delay up to " + std::to_string(*call.longest_delay) + " ms");
        return items;
    }

    void write_findings() {
        heading("Findings");
        out_.text.add("  ");
        summary_.found_by_severity_.write(out_.text);
        out_.text.add("\n");
        for (const Severity severity : {Severity::error, Severity::warning, Severity::note}) {
            std::vector<std::string> items;
            for (std::size_t k = 0; k < summary_.found_.size(); ++k) {
                if (summary_.found_[k] > 0 && rules()[k].severity == severity)
                    items.push_back(std::string(rules()[k].code) + " " + std::to_string(summary_.found_[k]));
            }
            if (!items.empty()) entry("  " + std::string(name_of(severity)), items);
        }
    }

    const Summary& summary_;
    std::size_t width_;
    Output& out_;
};

namespace {

// One JSON object in a line.
class Object {
  public:
    Object(std::string_view kind, Output& out) : out_(out) { out_.text.print("{{\"kind\":\"{-}\""_cf, kind); }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    ~Object() { out_.text.add("}\n"); }

    void add(std::string_view name, std::uint64_t value) { out_.text.print(",\"{-}\":{-}"_cf, name, value); }
    void add(std::string_view name, const std::optional<std::int64_t>& value) {
        key(name);
        out_.text.add(value ? std::to_string(*value) : "null");
    }
    // An empty one is null.
    void add(std::string_view name, std::string_view value) {
        key(name);
        if (value.empty()) {
            out_.text.add("null");
        } else {
            add_json_string(value, out_.escapes(), out_.text);
        }
    }
    void add(std::string_view name, const std::vector<std::string>& values) {
        key(name);
        out_.text.add("[");
        for (std::size_t k = 0; k < values.size(); ++k) {
            if (k > 0) out_.text.add(",");
            add_json_string(values[k], out_.escapes(), out_.text);
        }
        out_.text.add("]");
    }
    // A line number, null where there is none.
    void add_line(std::string_view name, std::uint64_t line) {
        add(name, line == 0 ? std::nullopt : std::optional(static_cast<std::int64_t>(line)));
    }

  private:
    void key(std::string_view name) { out_.text.print(",\"{-}\":"_cf, name); }

    Output& out_;
};

}  // namespace

void Summary::call(const Call& call) {
    ++call_count_;
    if (calls_out_ == nullptr) {
        if (call_list_.size() < most_calls) call_list_.push_back(call);
        return;
    }
    Object object("call", *calls_out_);
    object.add("file", files_[call.file]);
    object.add_line("start_line", call.start);
    object.add_line("stop_line", call.stop);
    object.add_line("ticket_line", call.ticket);
    object.add("started", call.started);
    object.add("stopped", call.stopped);
    object.add("channel_number", std::optional(call.channel));
    object.add("codec", call.codec);
    object.add("remote_ip", call.remote_address);
    object.add("remote_udp_port", call.remote_port);
    object.add("local_udp_port", call.local_port);
    object.add("local_id", call.local_id);
    object.add("distant_id", call.distant_id);
    object.add("call_duration", call.duration);
    object.add("packets_received", call.received);
    object.add("packets_lost", call.lost);
    object.add("maximum_delay", call.longest_delay);
}

void Summary::write(std::size_t width, Output& out) const { SummaryPage(*this, width, out).write(); }

void Summary::write_as_ndjson(Output& out) const {
    {
        Object object("summary", out);
        object.add("files", files_);
        object.add("lines", lines_.lines);
        object.add("with_messages", lines_.with_messages());
        object.add("refused", lines_.refused);
        object.add("no_trace_line", lines_.no_trace_line);
        object.add("blank", lines_.blank);
        object.add("comments", lines_.comment);
        object.add("messages", messages_);
        object.add("calls", call_count_);
        object.add("first_time", first_ ? std::string_view(first_->time) : std::string_view());
        object.add("last_time", last_.time);
        object.add("first_columns", first_ ? std::string_view(first_->columns) : std::string_view());
        object.add("last_columns", last_.columns);
        object.add("microseconds",
                   first_time_ ? std::optional(*last_time_ - *first_time_) : std::optional<std::int64_t>());
        object.add("reports_of_other_terminals", more_identities_);
    }
    for (const Identity& one : identities_) {
        Object object("terminal", out);
        object.add("terminal", one.who.name);
        object.add("link", one.who.link);
        object.add("place", one.who.place);
        object.add("type", one.who.type);
        object.add("reports", one.reports);
        for (const auto& [what, value] : one.says) object.add(what, value);
    }
    for (const auto& [name, n] : names_) {
        Object object("messages", out);
        object.add("link", std::get<0>(name));
        object.add("direction", word_of(std::get<1>(name)));
        object.add("message", std::get<2>(name));
        object.add("count", n);
    }
    for (std::size_t k = 0; k < found_.size(); ++k) {
        if (found_[k] == 0) continue;
        Object object("findings", out);
        object.add("code", rules()[k].code);
        object.add("severity", name_of(rules()[k].severity));
        object.add("count", found_[k]);
    }
}

}  // namespace ztdecode::tool
