#include <string>

#include "tool/analysis/rules.hpp"
#include "tool/report/reported.hpp"

// Messages that are findings by themselves: what is not understood of them, what they complain of, what a
// ticket says of its call.

namespace ztdecode::tool {

namespace {

std::string named(const Heard& heard) {
    return heard.name().empty() ? std::string("a message without a name") : std::string(heard.name());
}

std::string quoted(std::string_view words) { return "\"" + std::string(words) + "\""; }

// The values of a message as "name value, name value".
std::string said(const Values& values) {
    constexpr std::size_t most = 6;
    std::string words;
    std::size_t n = 0;
    for (const std::uint32_t index : values.record().values(values.part())) {
        const NotedValue& value = values.record().value(index);
        if (value.field == nullptr || value.name == "module" || value.name == "module_address") continue;
        if (++n > most) return words + " and more";
        const std::string_view shown = without_punctuation(values.record().shown(value));
        words.append(words.empty() ? "" : ", ").append(value.name).append(" ").append(shown);
    }
    return words;
}

// A set says OK as a code of its own, hubs and modules with 0.
bool failed_self_test(const Heard& heard, const NotedValue& test) {
    constexpr std::int64_t set_is_ok = 32;
    const bool of_set = heard.module.empty() && test.meaning.kind == Kind::word;
    return test.meaning.number != (of_set ? set_is_ok : 0);
}

void look_at_self_test(const Heard& heard, Found& found) {
    static constexpr FieldName field = "self_test";
    std::string failed;
    for (const std::uint32_t index : heard.values.record().values(heard.values.part())) {
        const NotedValue& test = heard.values.record().value(index);
        if (test.field != field.get() || !failed_self_test(heard, test)) continue;
        failed.append(failed.empty() ? "" : ", ")
            .append(without_punctuation(heard.values.record().shown(test)));
    }
    if (!failed.empty()) found.add("failed-self-test", heard.standing, "self-test: " + failed);
}

void look_at_complaint(const Heard& heard, Found& found) {
    if (!heard.to_system()) return;
    for (const Reported& one : reported) {
        if (one.message != heard.name()) continue;
        const bool error = one.complaint == Complaint::error;
        if (!error && one.complaint != Complaint::warning) return;
        const std::string values = said(heard.values);
        found.add(error ? "reported-error" : "reported-warning", heard.standing,
                  named(heard) + (values.empty() ? "" : ": " + values));
        return;
    }
}

struct Percent {
    std::int64_t part;
    std::int64_t whole;
    // "0.4 %"
    std::string words() const {
        const std::int64_t thousandths = part * 1000 / whole;
        return std::to_string(thousandths / 10) + "." + std::to_string(thousandths % 10) + " %";
    }
};

std::optional<std::int64_t> whole_number(const Values& values, FieldName name) {
    const NotedValue* const value = values.find(name);
    constexpr std::int64_t most = std::int64_t{1} << 40;
    if (value == nullptr || value->meaning.kind != Kind::number) return std::nullopt;
    const std::int64_t n = value->meaning.number;
    return n < 0 || n > most ? std::nullopt : std::optional(n);
}

std::string of_call(const Values& values) {
    const std::string_view local = values.shown("local_id");
    const std::string_view distant = values.shown("distant_id");
    if (local.empty() && distant.empty()) return {};
    return " in the call of " + quoted(local) + " with " + quoted(distant);
}

}  // namespace

void look_at_contents(const Heard& heard, Found& found) {
    const Record::Part& part = heard.values.part();
    if (part.decoded == Decoded::unknown) {
        std::string words = "unknown message";
        if (part.noted->code != NotedMessage::no_code) words += ", code " + as_code(part.noted->code);
        found.add("unknown-message", heard.standing, words);
    } else if (part.decoded == Decoded::refused) {
        found.add("refused-line", heard.standing, "it names a class that does not exist");
    }
    if (part.missing > 0) {
        found.add("missing-bytes", heard.standing,
                  named(heard) + " lacks " + std::to_string(part.missing) +
                      (part.missing == 1 ? " byte" : " bytes"));
    }
    if (heard.values.find("self_test") != nullptr) look_at_self_test(heard, found);
    look_at_complaint(heard, found);
}

void look_at_ticket(const Heard& heard, const Findings::Limits& limits, Found& found) {
    if (heard.link() != "ip" || heard.name() != "qos_ticket") return;
    const Values& values = heard.values;
    const auto lost = whole_number(values, "packets_lost");
    const auto received = whole_number(values, "packets_received");
    const auto longest = whole_number(values, "maximum_delay");
    const auto shortest = whole_number(values, "minimum_delay");
    if (lost && received && *lost * 1000 > (*lost + *received) * limits.loss) {
        const Percent percent{*lost, *lost + *received};
        found.add("packet-loss", heard.standing,
                  std::to_string(*lost) + " of " + std::to_string(percent.whole) + " packets lost (" +
                      percent.words() + ")" + of_call(values));
    }
    if (longest && *longest > limits.delay) {
        found.add("long-delay", heard.standing,
                  "the voice came up to " + std::to_string(*longest) + " ms late" + of_call(values));
    }
    if (longest && shortest && *longest - *shortest > limits.jitter) {
        found.add("jitter", heard.standing,
                  "the delay went from " + std::to_string(*shortest) + " to " + std::to_string(*longest) +
                      " ms" + of_call(values));
    }
}

}  // namespace ztdecode::tool
