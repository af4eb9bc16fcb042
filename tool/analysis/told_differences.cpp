#include "tool/analysis/told_differences.hpp"

#include <algorithm>

#include "core/data.hpp"
#include "core/message.hpp"
#include "tool/report/ndjson.hpp"

namespace ztdecode::tool {

namespace {

std::string_view direction_of(const Statement& statement) {
    return statement.direction() == from_dhs ? "from" : "to";
}

// The message itself.
Term head_of(const Statement& statement) {
    Term head;
    Terms(statement).next(head);
    return head;
}

// One blank for all that separates words, and none around them, nor a dash in front.
std::string in_one_line(std::string_view words) {
    std::string line;
    for (std::size_t at = 0; (at = words.find_first_not_of(" \t\n\r", at)) != std::string_view::npos;) {
        const std::size_t end = std::min(words.find_first_of(" \t\n\r", at), words.size());
        const std::string_view word = words.substr(at, end - at);
        at = end;
        if (line.empty() && word == "-") continue;
        if (!line.empty()) line += ' ';
        line += word;
    }
    return line;
}

// What is different of two lines of words: from the first word that is to the last one.
void trim_words(std::string& a, std::string& b) {
    const auto shortest = [&] { return std::min(a.size(), b.size()); };
    const auto blank_or_end = [](const std::string& words, std::size_t at) {
        return at == words.size() || words[at] == ' ';
    };
    std::size_t front = 0;
    for (std::size_t k = 0; k <= shortest(); ++k) {
        if (blank_or_end(a, k) && blank_or_end(b, k) && k < shortest()) front = k + 1;
        if (k == shortest() || a[k] != b[k]) break;
    }
    a.erase(0, front);
    b.erase(0, front);
    std::size_t behind = 0;
    for (std::size_t k = 0; k < shortest(); ++k) {
        const char c = a[a.size() - 1 - k];
        if (c != b[b.size() - 1 - k]) break;
        if (c == ' ') behind = k + 1;
    }
    a.erase(a.size() - behind);
    b.erase(b.size() - behind);
}

// Words around values as they are shown: what is different of them, an asterisk for each value.
void make_comparable(std::string& a, std::string& b) {
    for (std::string* const words : {&a, &b}) {
        *words = in_one_line(*words);
        std::replace(words->begin(), words->end(), Statement::value_mark, '*');
    }
    trim_words(a, b);
}

}  // namespace

void DifferenceTexts::same(const Statement& a, const Statement& b) {
    line(' ', Mark::none, &a, &b);
    message(a, true);
    out_.text.add("\n");
}

void DifferenceTexts::changed(const Statement& a, const Statement& b, const std::vector<Change>& changes) {
    line('~', Mark::both, &a, &b);
    message(a, false);
    color(Mark::none);
    out_.text.add("\n");
    for (const Change& one : changes) change(one);
}

void DifferenceTexts::only_in_a(const Statement& a) {
    line('-', Mark::a, &a, nullptr);
    message(a, true);
    color(Mark::none);
    out_.text.add("\n");
}

void DifferenceTexts::only_in_b(const Statement& b) {
    line('+', Mark::b, nullptr, &b);
    message(b, true);
    color(Mark::none);
    out_.text.add("\n");
}

void DifferenceTexts::gap() { out_.text.add("--\n"); }

bool DifferenceTexts::goes_on() {
    out_.flush_when_full();
    return out_.error() == 0;
}

void DifferenceTexts::end(const Compared& compared) {
    if (!compared.different()) return;
    out_.text.print("{-} changed, {-} only in "_cf, compared.changed, compared.only_in_a);
    out_.add_name(name_a_);
    out_.text.print(", {-} only in "_cf, compared.only_in_b);
    out_.add_name(name_b_);
    out_.text.print(", {-} the same\n"_cf, compared.same);
}

void DifferenceTexts::begin() {
    if (begun_) return;
    begun_ = true;
    color(Mark::a);
    out_.text.add("--- ");
    out_.add_name(name_a_);
    color(Mark::none);
    out_.text.add("\n");
    color(Mark::b);
    out_.text.add("+++ ");
    out_.add_name(name_b_);
    color(Mark::none);
    out_.text.add("\n");
}

void DifferenceTexts::color(Mark mark) {
    if (!options_.color) return;
    switch (mark) {
        case Mark::none:
            out_.text.add("\x1b[0m");
            break;
        case Mark::a:
            out_.text.add("\x1b[31m");
            break;
        case Mark::b:
            out_.text.add("\x1b[32m");
            break;
        case Mark::both:
            out_.text.add("\x1b[33m");
            break;
    }
}

// What stands on the line of a message in front of it; places stand below each other.
void DifferenceTexts::line(char sign, Mark mark, const Statement* a, const Statement* b) {
    begin();
    if (mark != Mark::none) color(mark);
    out_.text.print("{-} "_cf, std::string_view(&sign, 1));
    std::size_t begin = out_.text.size();
    for (const Statement* const statement : {a, b}) {
        if (statement == nullptr) continue;
        if (out_.text.size() != begin) out_.text.add(" ");
        out_.add_name(*statement->file);
        out_.text.print(":{-}"_cf, statement->line);
    }
    const std::size_t taken = out_.text.size() - begin;
    if (a != nullptr && b != nullptr) width_ = std::max(width_, taken);
    for (std::size_t k = taken; k < width_; ++k) out_.text.add(" ");
    out_.text.add("  ");
}

void DifferenceTexts::message(const Statement& statement, bool with_text) {
    Terms terms(statement);
    Term term;
    terms.next(term);
    if (statement.refused_line()) {
        out_.text.add(term.words);
    } else {
        out_.text.print("{-} {-} {-}"_cf, term.name.empty() ? "-" : term.name, direction_of(statement),
                        term.words.empty() ? "unknown message" : term.words);
    }
    if (!with_text) return;
    out_.text.add(": ");
    foreign(in_one_line(statement.text));
    while (terms.next(term)) {
        if (term.is != Term::Is::bytes) continue;
        out_.text.add(", ");
        value(term);
    }
}

void DifferenceTexts::value(const Term& term) {
    if (term.is == Term::Is::message) {
        out_.text.print("carries {-} {-}"_cf, term.name.empty() ? "-" : term.name,
                        term.words.empty() ? "unknown message" : term.words);
        return;
    }
    out_.text.print("{-}: "_cf, term.name);
    foreign(term.value(room_));
    if (term.incomplete) out_.text.add(" (missing)");
}

// A value stands in one line, whatever it holds.
void DifferenceTexts::foreign(std::string_view words) {
    if (words.empty()) {
        out_.text.add("\"\"");
    } else if (out_.escapes() || words.find_first_of("\n\r") != std::string_view::npos) {
        add_escaped_name(words, out_.text);
    } else {
        out_.text.add(words);
    }
}

void DifferenceTexts::change(const Change& change) {
    const Term& term = change.in_a ? change.a : change.b;
    out_.text.add("      ");
    if (term.depth > 0 && term.is != Term::Is::message)
        out_.text.print("in {-}: "_cf, term.of.empty() ? "unknown message" : term.of);
    if (change.in_a && change.in_b) {
        std::string a(change.a.value(room_));
        std::string b(change.b.value(room_));
        if (term.is == Term::Is::words) make_comparable(a, b);
        out_.text.print("{-}: "_cf, term.name);
        color(Mark::a);
        foreign(a);
        if (change.a.incomplete) out_.text.add(" (missing)");
        color(Mark::none);
        out_.text.add(options_.ascii ? " -> " : " \xE2\x86\x92 ");
        color(Mark::b);
        foreign(b);
        if (change.b.incomplete) out_.text.add(" (missing)");
    } else {
        color(change.in_a ? Mark::a : Mark::b);
        out_.text.add(change.in_a ? "- " : "+ ");
        value(term);
    }
    color(Mark::none);
    out_.text.add("\n");
}

bool DifferenceRecords::goes_on() {
    out_.flush_when_full();
    return out_.error() == 0;
}

void DifferenceRecords::same(const Statement& a, const Statement& b) {
    begin("same", &a, &b);
    fields(a);
    end();
}

void DifferenceRecords::only_in_a(const Statement& a) {
    begin("only_in_a", &a, nullptr);
    fields(a);
    end();
}

void DifferenceRecords::only_in_b(const Statement& b) {
    begin("only_in_b", nullptr, &b);
    fields(b);
    end();
}

void DifferenceRecords::changed(const Statement& a, const Statement& b, const std::vector<Change>& changes) {
    begin("changed", &a, &b);
    out_.text.add(",\"changes\":[");
    std::string_view before;
    for (const Change& change : changes) {
        out_.text.add(before);
        before = ",";
        out_.text.add("{");
        name(change.in_a ? change.a : change.b);
        if (change.in_a && change.a.is == Term::Is::words) {
            words(change);
            continue;
        }
        out_.text.add(",\"a\":");
        if (change.in_a) {
            value(change.a);
        } else {
            out_.text.add("null");
        }
        out_.text.add(",\"b\":");
        if (change.in_b) {
            value(change.b);
        } else {
            out_.text.add("null");
        }
        out_.text.add("}");
    }
    out_.text.add("]");
    end();
}

void DifferenceRecords::begin(std::string_view kind, const Statement* a, const Statement* b) {
    const Statement& either = a != nullptr ? *a : *b;
    const Term head = head_of(either);
    out_.text.add("{");
    out_.text.print("\"kind\":\"{-}\",\"a\":"_cf, kind);
    place(a);
    out_.text.add(",\"b\":");
    place(b);
    if (either.refused_line()) {
        out_.text.add(R"(,"direction":null,"link":null,"message":null,"status":"refused")");
        return;
    }
    out_.text.print(",\"direction\":\"{-}\",\"link\":"_cf, direction_of(either));
    string(head.name);
    out_.text.add(",\"message\":");
    string(head.words);
    out_.text.print(",\"status\":\"{-}\""_cf, data::name_of(either.decoded()));
}

// Names of links and messages: null where there is none.
void DifferenceRecords::string(std::string_view words) {
    if (words.empty()) {
        out_.text.add("null");
    } else {
        add_json_string(words, out_.escapes(), out_.text);
    }
}

void DifferenceRecords::place(const Statement* statement) {
    if (statement == nullptr) {
        out_.text.add("null");
        return;
    }
    out_.text.add("{\"file\":");
    add_json_string(*statement->file, out_.escapes(), out_.text);
    out_.text.print(",\"line\":{-}"_cf, statement->line);
    out_.text.add("}");
}

void DifferenceRecords::fields(const Statement& statement) {
    out_.text.add(",\"text\":");
    add_json_string(statement.text, out_.escapes(), out_.text);
    out_.text.add(",\"fields\":[");
    Terms terms(statement);
    Term term;
    terms.next(term);
    std::string_view before;
    while (terms.next(term)) {
        if (term.is == Term::Is::words) continue;
        out_.text.add(before);
        before = ",";
        out_.text.add("{");
        name(term);
        out_.text.add(",\"value\":");
        value(term);
        out_.text.add("}");
    }
    out_.text.add("]");
}

void DifferenceRecords::name(const Term& term) {
    const bool carried = term.is == Term::Is::message;
    out_.text.print("\"field\":\"{-}\",\"in\":"_cf, carried ? "carries" : term.name);
    string(term.depth > 0 && !carried ? term.of : std::string_view());
}

void DifferenceRecords::value(const Term& term) {
    if (term.is == Term::Is::message) {
        out_.text.add("{\"link\":");
        string(term.name);
        out_.text.add(",\"message\":");
        string(term.words);
        out_.text.add("}");
        return;
    }
    const std::string_view words = term.value(room_);
    if (term.meaning.kind == Kind::number || term.meaning.kind == Kind::flag) {
        out_.text.add(words);
    } else {
        add_json_string(words, out_.escapes(), out_.text);
    }
}

void DifferenceRecords::words(const Change& change) {
    std::string a(change.a.words);
    std::string b(change.b.words);
    make_comparable(a, b);
    out_.text.add(",\"a\":");
    add_json_string(a, out_.escapes(), out_.text);
    out_.text.add(",\"b\":");
    add_json_string(b, out_.escapes(), out_.text);
    out_.text.add("}");
}

void DifferenceRecords::end() { out_.text.add("}\n"); }

}  // namespace ztdecode::tool
