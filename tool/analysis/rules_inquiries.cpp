#include <algorithm>
#include <array>
#include <string>

#include "tool/analysis/rules.hpp"

// Questions and their answers, first come, first served. An answer at the beginning of a trace may belong to
// a question before it; a question at its end may still be answered behind it.

namespace ztdecode::tool {

namespace {

struct Pair {
    std::string_view link;
    std::string_view question;
    std::array<std::string_view, 3> answers;
    bool asks_if_told = false;  // it is a question where it asks for an acknowledgement
};

constexpr Pair pairs[] = {
    {"digital", "version_inquiry", {"version_response"}},
    {"digital", "are_you_there", {"i_am_here"}},
    {"digital", "status_inquiry", {"status_response"}},
    {"digital", "subdevice_state_inquiry", {"subdevice_state_response"}},
    {"digital", "loop_back_on", {"loop_back_on_ack"}},
    {"digital", "loop_back_off", {"loop_back_off_ack"}},
    {"digital", "trace_on", {"trace_on_ack"}},
    {"digital", "trace_off", {"trace_off_ack"}},
    {"digital", "read_peripheral", {"peripheral_content"}},
    {"digital", "warm_start", {"warm_start_ack"}},
    {"he", "are_you_there", {"i_am_here"}},
    {"he", "query_available_memory", {"available_memory"}},
    {"he", "query_row", {"query_row_report"}},
    {"he", "query_windows", {"list_windows_report"}},
    {"he", "list_applications", {"list_applications_report"}},
    {"hub", "version_inquiry", {"version_response"}},
    {"hub", "status_inquiry", {"status_response"}},
    {"hub", "anv_number_request", {"anv_number_response"}},
    {"hub", "read_peripheral", {"peripheral_content"}},
    {"ip", "get_param", {"param_response"}},
    {"ibs", "anv_number_request", {"anv_number_response"}},
    {"ibs", "read_memory_request", {"read_memory_response"}},
    {"server", "get_property", {"get_property_result", "error_get_property"}},
    {"server", "create", {"success_create", "error_create", "warning_create"}, true},
    {"server", "delete", {"success_delete", "error_delete"}, true},
    {"server", "set_property", {"success_set_property", "error_set_property", "warning_set_property"}, true},
    {"server", "insert_item", {"success_insert_item", "error_insert_item"}, true},
    {"server", "delete_item", {"success_delete_item", "error_delete_item"}, true},
};
constexpr std::size_t pair_count = std::size(pairs);

// A pair by one of its sides; pair_count for a message that is none.
std::size_t pair_of(const Heard& heard) {
    if (!heard.module.empty() || heard.name().empty()) return pair_count;
    const std::string_view link = heard.server() ? "server" : heard.link();
    const auto matches = [&](const Pair& one) {
        if (one.link != link) return false;
        if (!heard.to_system()) return one.question == heard.name();
        return std::find(one.answers.begin(), one.answers.end(), heard.name()) != one.answers.end();
    };
    return static_cast<std::size_t>(std::find_if(std::begin(pairs), std::end(pairs), matches) -
                                    std::begin(pairs));
}

}  // namespace

void Inquiries::message(const Heard& heard, const Findings::Limits& limits, Found& found) {
    if (heard.starts() && heard.module.empty()) {
        asked_.clear();
        return;
    }
    const std::size_t pair = pair_of(heard);
    if (pair == pair_count) return;
    if (heard.to_system()) {
        answered(heard, pair, limits, found);
        return;
    }
    if (pairs[pair].asks_if_told && heard.values.find("acknowledge") == nullptr) return;
    if (asked_.size() == most) asked_.erase(asked_.begin());
    asked_.push_back({{heard.standing, heard.moment}, pair, false});
}

// Refusals come without being asked for.
void Inquiries::answered(const Heard& heard, std::size_t pair, const Findings::Limits& limits, Found& found) {
    const auto asked =
        std::find_if(asked_.begin(), asked_.end(), [&](const Asked& a) { return a.pair == pair; });
    if (asked == asked_.end()) {
        const bool refusal = heard.name().starts_with("error_") || heard.name().starts_with("warning_");
        if (heard.knows_past && heard.knows_system && !refusal) {
            found.add("unasked-answer", heard.standing,
                      std::string(heard.name()) + " without " + std::string(pairs[pair].question));
        }
        return;
    }
    const auto since = asked->said.moment.time;
    if (since && heard.moment.time) {
        const std::int64_t took = (*heard.moment.time - *since) / 1000;
        if (took > limits.response) {
            found.add("slow-answer", heard.standing, {asked->said.standing, heard.standing},
                      std::string(heard.name()) + " came " + std::to_string(took) + " ms after " +
                          std::string(pairs[pair].question));
        }
    }
    asked_.erase(asked);
}

// One that is too late keeps its place for an answer that comes yet.
void Inquiries::look(const Moment& now, Found& found) {
    for (Asked& asked : asked_) {
        if (asked.late || !too_late(asked.said.moment, now)) continue;
        asked.late = true;
        found.add("no-answer", asked.said.standing,
                  std::string(pairs[asked.pair].question) + " without " +
                      std::string(pairs[asked.pair].answers[0]));
    }
}

}  // namespace ztdecode::tool
