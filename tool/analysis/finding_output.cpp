#include "tool/analysis/finding_output.hpp"

#include "tool/output/control.hpp"
#include "tool/report/ndjson.hpp"

namespace ztdecode::tool {

namespace {

std::string_view word_of(std::uint32_t direction) { return direction == to_dhs ? "to" : "from"; }

// "line 45 to digital illegal_command"
void write_standing(const Findings& findings, const Finding& finding, const Standing& standing, Output& out) {
    Text& text = out.text;
    if (standing.file != finding.at.file) {
        add_escaped_name(findings.file(standing), text);
        text.add(" ");
    }
    text.print("line {-}"_cf, standing.line);
    if (standing.link.empty()) return;
    text.print(" {-} {-} "_cf, word_of(standing.direction), standing.link);
    text.add(standing.message.empty() ? std::string_view("without a name") : standing.message);
}

// Foreign words have to stay in their line.
void write_words(const Finding& finding, Text& text) {
    text.print("{-}: "_cf, name_of(finding.rule->severity));
    add_escaped_name(finding.words, text);
    text.print(" [{-}]\n"_cf, finding.rule->code);
}

void write_standings(const Findings& findings, const Finding& finding, Output& out) {
    if (finding.on.size() < 2) return;
    for (const Standing& standing : finding.on) {
        out.text.add("    ");
        write_standing(findings, finding, standing, out);
        out.text.add("\n");
    }
}

void add_string(std::string_view name, std::string_view value, Output& out) {
    out.text.print("\"{-}\":"_cf, name);
    if (value.empty()) {
        out.text.add("null");
    } else {
        add_json_string(value, out.escapes(), out.text);
    }
    out.text.add(",");
}

void add_standing(const Findings& findings, const Standing& standing, Output& out) {
    out.text.add("\"file\":");
    add_json_string(findings.file(standing), out.escapes(), out.text);
    out.text.print(",\"line\":{-},"_cf, standing.line);
    add_string("direction", standing.link.empty() ? std::string_view() : word_of(standing.direction), out);
    add_string("link", standing.link, out);
    out.text.add("\"message\":");
    if (standing.message.empty()) {
        out.text.add("null");
    } else {
        add_json_string(standing.message, out.escapes(), out.text);
    }
}

void add_noun(std::uint64_t n, std::string_view noun, Text& out) {
    out.print("{-} {-}"_cf, n, noun);
    if (n != 1) out.add("s");
}

}  // namespace

bool FindingCounts::reach(Severity severity) const noexcept {
    for (auto k = static_cast<std::size_t>(severity); k < counts_.size(); ++k) {
        if (counts_[k] > 0) return true;
    }
    return false;
}

void FindingCounts::write(Text& out) const {
    add_noun(of(Severity::error), "error", out);
    out.add(", ");
    add_noun(of(Severity::warning), "warning", out);
    out.add(", ");
    add_noun(of(Severity::note), "note", out);
}

void write_finding(const Findings& findings, const Finding& finding, Output& out) {
    add_escaped_name(findings.file(finding.at), out.text);
    out.text.print(":{-}: "_cf, finding.at.line);
    write_words(finding, out.text);
    write_standings(findings, finding, out);
}

void write_finding_beneath(const Findings& findings, const Finding& finding, Output& out) {
    out.text.add("  > ");
    write_words(finding, out.text);
    write_standings(findings, finding, out);
}

void write_finding_as_ndjson(const Findings& findings, const Finding& finding, Output& out) {
    Text& text = out.text;
    text.add(R"({"kind":"finding",)");
    add_string("code", finding.rule->code, out);
    add_string("severity", name_of(finding.rule->severity), out);
    add_standing(findings, finding.at, out);
    text.add(",");
    add_string("words", finding.words, out);
    text.add("\"on\":[");
    bool several = false;
    for (const Standing& standing : finding.on) {
        text.add(several ? ",{" : "{");
        add_standing(findings, standing, out);
        text.add("}");
        several = true;
    }
    text.add("]}\n");
}

}  // namespace ztdecode::tool
