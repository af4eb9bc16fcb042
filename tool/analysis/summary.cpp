#include "tool/analysis/summary.hpp"

#include <algorithm>
#include <tuple>

#include "tool/analysis/finding_report.hpp"
#include "tool/report/identity.hpp"

namespace ztdecode::tool {

class Summary::OfFile final : public FindingReport {
  public:
    OfFile(std::string_view file, Summary& summary)
        : FindingReport(file, summary.findings_, !summary.reading_.joined,
                        [&summary](std::span<const Finding> found) { summary.count(found); }),
          summary_(summary) {}

    bool end(const LineTotals& totals, std::uint64_t cut) override {
        LineTotals& lines = summary_.lines_;
        lines.lines += totals.lines;
        lines.refused += totals.refused;
        lines.no_trace_line += totals.no_trace_line;
        lines.blank += totals.blank;
        lines.comment += totals.comment;
        if (!summary_.reading_.joined) summary_.calls_.end();
        return FindingReport::end(totals, cut);
    }

  private:
    void record(const CapturedMessage& captured, const Record& record) override {
        FindingReport::record(captured, record);
        summary_.message(captured, record);
    }

    Summary& summary_;
};

Summary::Summary(const Findings::Reading& reading, const Findings::Limits& limits, Output* calls)
    : reading_(reading),
      findings_(reading, limits),
      calls_out_(calls),
      calls_([this](const Call& one) { call(one); }),
      clock_(reading.column_unit),
      found_(rules().size()) {}

std::unique_ptr<Report> Summary::report(std::string_view file) {
    ++files_seen_;
    files_.emplace_back(file);
    return std::make_unique<OfFile>(file, *this);
}

void Summary::end() {
    calls_.end();
    count(findings_.end());
}

std::string_view Summary::name_of_terminal(const CapturedMessage& captured) const {
    switch (reading_.apart) {
        case Findings::Apart::columns:
            return captured.columns;
        case Findings::Apart::prefix:
            return captured.terminal;
        case Findings::Apart::nothing:
            break;
    }
    return {};
}

void Summary::message(const CapturedMessage& captured, const Record& record) {
    ++messages_;
    if (!first_) first_ = {std::string(captured.time), std::string(captured.columns)};
    last_.time = captured.time;
    last_.columns = captured.columns;
    if (const auto time = clock_.at(captured)) {
        if (!first_time_) first_time_ = time;
        last_time_ = time;
    }
    for (std::size_t k = 0; k < record.size(); ++k) part(captured, record, k);
}

void Summary::part(const CapturedMessage& captured, const Record& record, std::size_t k) {
    const Record::Part& part = record.part(k);
    const NotedMessage& noted = *part.noted;
    ++names_[{noted.link, noted.direction, noted.name}];
    const Values values(record, part);
    calls_.message(captured, static_cast<std::uint32_t>(files_.size() - 1), name_of_terminal(captured),
                   values);
    const bool identifies = std::find(std::begin(identity_messages), std::end(identity_messages),
                                      noted.name) != std::end(identity_messages);
    if (noted.direction != to_dhs || !identifies) return;
    Who who{std::string(name_of_terminal(captured)), std::string(noted.link), {}, {}, {}};
    if (k != 0) {
        if (const auto set = Values(record, record.part(part.carrier)).number("set_number"))
            who.place = "set " + std::to_string(*set);
    }
    if (const auto address = values.number("module_address")) {
        who.place += (who.place.empty() ? "" : " ");
        who.place += "module " + std::to_string(*address);
        who.type = values.shown("module");
    } else {
        who.type = values.shown_of("terminal_type,term_type");
    }
    who.serial = values.shown("serialnum");
    identity(who, values);
}

void Summary::identity(const Who& who, const Values& values) {
    const std::string place = who.name + "\t" + who.link + "\t" + who.place;
    std::size_t index = identities_.size();
    const auto before = last_of_.find(place);
    if (who.type.empty() && who.serial.empty() && before != last_of_.end()) {
        index = before->second;
    } else if (const auto known = known_.find(who); known != known_.end()) {
        index = known->second;
    } else if (identities_.size() == most_terminals) {
        ++more_identities_;
        return;
    } else {
        known_.emplace(who, index);
        identities_.push_back({who, {}, 0});
    }
    last_of_.insert_or_assign(place, index);
    Identity& one = identities_[index];
    ++one.reports;
    for (const std::string_view names : identity_fields) {
        const std::string_view what = names.substr(0, names.find(','));
        const std::string_view value = values.shown_of(names);
        if (value.empty() || what == "module" || what == "module_address") continue;
        const auto said = std::find_if(one.says.begin(), one.says.end(),
                                       [&](const auto& entry) { return entry.first == what; });
        if (said == one.says.end()) {
            one.says.emplace_back(what, value);
        } else {
            said->second = value;
        }
    }
}

void Summary::count(std::span<const Finding> found) {
    for (const Finding& finding : found) {
        ++found_[static_cast<std::size_t>(finding.rule - rules().data())];
        found_by_severity_.count(finding);
    }
}

}  // namespace ztdecode::tool
