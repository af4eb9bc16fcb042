#include <algorithm>
#include <string>

#include "tool/analysis/rules.hpp"

// Terminals and modules that start anew. The first start that a trace shows is just that; a trace that begins
// later shows a start as a reset as soon as the terminal has said something else before.

namespace ztdecode::tool {

namespace {

std::string cause_of(const Values& values) {
    std::string words;
    const auto add = [&](std::string_view before, std::string_view shown) {
        if (shown.empty()) return;
        words.append(words.empty() ? ": " : ", ").append(before).append(shown);
    };
    add("", values.shown("reset_kind"));
    add("cause ", values.shown("reset_cause"));
    add("reason ", values.shown("reset_reason"));
    add("", values.shown("terminal_type"));
    add("self-test ", values.shown("self_test"));
    return words;
}

}  // namespace

void Resets::message(const Heard& heard, Found& found) {
    if (heard.starts()) {
        started(heard, found);
    } else if (heard.to_system()) {
        running_ = true;
    } else if (heard.restarts()) {
        told_to_ = true;
    }
}

void Resets::started(const Heard& heard, Found& found) {
    const bool by_itself = running_ && !told_to_;
    const bool counts = !told_to_;
    told_to_ = false;
    running_ = true;
    if (by_itself) {
        const std::string who = heard.module.empty() ? "the terminal" : "module " + std::string(heard.module);
        found.add("reset", heard.standing, who + " started anew" + cause_of(heard.values));
    }
    if (!counts) return;
    const auto too_old = [&](const SaidAt& one) {
        if (one.moment.time && heard.moment.time) return *heard.moment.time - *one.moment.time > within_time;
        return heard.moment.number - one.moment.number > within_messages;
    };
    last_.erase(std::remove_if(last_.begin(), last_.end(), too_old), last_.end());
    last_.push_back({heard.standing, heard.moment});
    if (last_.size() < repeated) return;
    std::vector<Standing> on;
    for (const SaidAt& one : last_) on.push_back(one.standing);
    last_.clear();
    found.add("repeated-reset", heard.standing, std::move(on),
              std::to_string(repeated) + " starts one after the other" + cause_of(heard.values));
}

}  // namespace ztdecode::tool
