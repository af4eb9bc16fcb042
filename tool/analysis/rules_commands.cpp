#include <algorithm>
#include <string>

#include "tool/analysis/rules.hpp"
#include "tool/report/reported.hpp"

// What terminals refuse, and the command that they mean. One that stood before the trace is not named.

namespace ztdecode::tool {

namespace {

constexpr std::uint32_t opcode_bits = 0x7F;

bool is_refusal(std::string_view name) {
    return std::any_of(std::begin(reported), std::end(reported), [&](const Reported& one) {
        return one.message == name && one.complaint == Complaint::refusal;
    });
}

std::string name_or_code(const Standing& standing, std::uint32_t code) {
    return standing.message.empty() ? "a command with the code " + as_code(code)
                                    : std::string(standing.message);
}

void add_value(std::string_view label, std::string_view shown, std::string& words) {
    if (!shown.empty()) words.append(", ").append(label).append(shown);
}

}  // namespace

template <class Matches>
const Commands::Command* Commands::last(Matches matches) const {
    for (std::size_t back = 1; back <= commands_.size(); ++back) {
        const Command& one = commands_[(count_ - back) % most];
        if (matches(one)) return &one;
    }
    return nullptr;
}

void Commands::message(const Heard& heard, Found& found) {
    if (heard.to_system()) {
        if (heard.server()) {
            object_error(heard, found);
        } else if (is_refusal(heard.name())) {
            refused(heard, found);
        }
        return;
    }
    const auto bytes = heard.values.part().bytes;
    Command command{heard.standing, bytes.empty() ? 0 : bytes[0] & opcode_bits, std::nullopt, std::nullopt};
    if (heard.server()) {
        command.object_class = heard.values.number("class");
        command.object = heard.values.number("object_id");
    }
    if (commands_.size() < most) {
        commands_.push_back(command);
    } else {
        commands_[count_ % most] = command;
    }
    ++count_;
}

void Commands::refused(const Heard& heard, Found& found) const {
    const auto code = heard.values.number("command");
    const Command* const command =
        code ? last([&](const Command& one) { return one.code == (*code & opcode_bits); }) : nullptr;
    std::string words(heard.name());
    if (command != nullptr) {
        words += ": " + name_or_code(command->standing, command->code);
        found.add("refused-command", heard.standing, {command->standing, heard.standing}, words);
        return;
    }
    if (code) words += ": the code " + as_code(*code);
    found.add("refused-command", heard.standing, words);
}

void Commands::object_error(const Heard& heard, Found& found) const {
    const std::string_view name = heard.name();
    const bool error = name.starts_with("error_");
    if (!error && !name.starts_with("warning_")) return;
    const std::string_view method = name.substr(name.find('_') + 1);
    const auto object_class = heard.values.number("class");
    const auto object = heard.values.number("object_id");
    const Command* const request = last([&](const Command& one) {
        if (method != "protocol" && one.standing.message != method) return false;
        return (!object_class || one.object_class == object_class) &&
               (!object || one.object.value_or(0) == *object);
    });
    std::string words(name);
    if (const auto shown = heard.values.shown("error_code"); !shown.empty()) words.append(": ").append(shown);
    add_value("class ", heard.values.shown("class"), words);
    add_value("object ", heard.values.shown("object_id"), words);
    add_value("property ", heard.values.shown("property"), words);
    std::vector<Standing> on = {heard.standing};
    if (request != nullptr) on.insert(on.begin(), request->standing);
    found.add(error ? "object-error" : "object-warning", heard.standing, std::move(on), words);
}

}  // namespace ztdecode::tool
