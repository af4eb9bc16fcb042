#include "tool/analysis/findings.hpp"

#include <algorithm>
#include <array>
#include <deque>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "tool/analysis/rules.hpp"

namespace ztdecode::tool {

namespace {

constexpr auto all_rules = std::to_array<Rule>({
    {"reset", Severity::note, "a terminal started anew that nobody told to"},
    {"repeated-reset", Severity::error, "a terminal starts again and again"},
    {"failed-self-test", Severity::error, "a self-test failed"},
    {"reported-error", Severity::error, "a terminal reports an error"},
    {"reported-warning", Severity::warning, "a terminal reports a warning"},
    {"refused-command", Severity::warning, "a terminal refuses a command"},
    {"no-answer", Severity::warning, "an inquiry has no answer"},
    {"unasked-answer", Severity::note, "an answer that nobody asked for"},
    {"slow-answer", Severity::warning, "an answer took longer than the limit"},
    {"stream-not-stopped", Severity::warning, "a voice stream was never stopped"},
    {"stream-started-twice", Severity::warning, "a voice stream was started while it ran"},
    {"stream-to-nowhere", Severity::error, "a voice stream goes to no address"},
    {"packet-loss", Severity::warning, "a call lost more packets than the limit"},
    {"long-delay", Severity::warning, "the voice of a call came later than the limit"},
    {"jitter", Severity::warning, "the delay of a call's voice varied more than the limit"},
    {"download-refused", Severity::error, "a download was refused"},
    {"download-broken-off", Severity::warning, "a download did not come to its end"},
    {"segment-missing", Severity::error, "a message lacks segments"},
    {"segment-repeated", Severity::warning, "a segment came twice"},
    {"segment-out-of-order", Severity::warning, "segments came out of order"},
    {"object-error", Severity::error, "a terminal refuses a request of the object protocol"},
    {"object-warning", Severity::warning, "a terminal warns of a request of the object protocol"},
    {"unknown-object", Severity::warning, "an object was changed that was never created"},
    {"deleted-object", Severity::warning, "an object was changed that had been deleted"},
    {"unknown-message", Severity::warning, "a message that no table knows"},
    {"missing-bytes", Severity::warning, "a message lacks bytes"},
    {"refused-line", Severity::error, "a line or message is refused"},
});

}  // namespace

std::string_view name_of(Severity severity) noexcept {
    switch (severity) {
        case Severity::note:
            return "note";
        case Severity::warning:
            return "warning";
        case Severity::error:
            break;
    }
    return "error";
}

std::span<const Rule> rules() noexcept { return all_rules; }

void Found::add(std::string_view code, const Standing& at, std::vector<Standing> on, std::string words) {
    const auto* const rule =
        std::find_if(all_rules.begin(), all_rules.end(), [&](const Rule& one) { return one.code == code; });
    findings_.push_back({rule, at, std::move(on), std::move(words)});
}

std::string as_code(std::int64_t code) { return formatted("0x{-:02x}"_cf, static_cast<std::uint32_t>(code)); }

bool Heard::restarts() const noexcept {
    static constexpr std::string_view names[] = {"software_reset", "warm_start", "subdevice_reset",
                                                 "reset_subdevices", "reset"};
    if (to_system()) return false;
    if (server()) return values.find("reset") != nullptr;
    return std::find(std::begin(names), std::end(names), name()) != std::end(names);
}

class Findings::Engine {
  public:
    Engine(const Reading& reading, const Limits& limits) : reading_(reading), limits_(limits) {}

    void begin(std::string_view file) {
        files_.emplace_back(file);
        if (!reading_.joined) forget();
    }

    std::span<const Finding> message(const CapturedMessage& captured, const Record& record) {
        findings_.clear();
        now_ = {clock_->at(captured), now_.number + 1};
        for (std::size_t k = 0; k < record.size(); ++k) part(captured, record, k);
        return findings_;
    }

    std::span<const Finding> refused(std::uint64_t number, std::string_view why) {
        findings_.clear();
        found_.add("refused-line", {.file = last_file(), .line = number}, std::string(why));
        return findings_;
    }

    std::span<const Finding> end(bool last) {
        findings_.clear();
        if (reading_.joined && !last) return findings_;
        for (auto& [name, speaker] : speakers_) {
            const Moment now{now_.time, speaker.messages};
            if (terminals_heard_) speaker.inquiries.look(now, found_);
            speaker.streams.end(now, found_);
            speaker.segments.end(found_);
        }
        std::stable_sort(findings_.begin(), findings_.end(), [](const Finding& a, const Finding& b) {
            return std::tie(a.at.file, a.at.line, a.rule) < std::tie(b.at.file, b.at.line, b.rule);
        });
        forget();
        return findings_;
    }

    std::string_view file(std::uint32_t index) const noexcept { return files_[index]; }

  private:
    // Beyond these nothing is remembered of a speaker: a trace whose columns are no terminals has one a line.
    static constexpr std::size_t most_speakers = 20000;

    std::uint32_t last_file() const noexcept { return static_cast<std::uint32_t>(files_.size() - 1); }

    void forget() {
        last_ = nullptr;
        speakers_.clear();
        clock_.emplace(reading_.column_unit);
        now_ = {};
        terminals_heard_ = system_heard_ = false;
    }

    void part(const CapturedMessage& captured, const Record& record, std::size_t k) {
        const Record::Part& part = record.part(k);
        const NotedMessage& noted = *part.noted;
        const Values values(record, part);
        const Standing standing{last_file(), captured.number, noted.direction, noted.link, noted.name};
        Heard heard{values, standing, {}, system_heard_, false, values.shown("module")};
        look_at_contents(heard, found_);
        look_at_ticket(heard, limits_, found_);
        name_speaker(captured, record, k, heard);
        Speaker* const speaker = speaker_named();
        if (speaker == nullptr) return;
        ++speaker->messages;
        heard.moment = {now_.time, speaker->messages};
        if (speaker->messages == 1) speaker->first = heard.moment;
        heard.knows_past = too_late(speaker->first, heard.moment);
        tell(*speaker, heard);
    }

    void tell(Speaker& speaker, const Heard& heard) {
        (heard.to_system() ? terminals_heard_ : system_heard_) = true;
        if (terminals_heard_) speaker.inquiries.look(heard.moment, found_);
        speaker.segments.look(heard.moment, found_);
        speaker.commands.message(heard, found_);
        speaker.downloads.message(heard, found_);
        speaker.inquiries.message(heard, limits_, found_);
        speaker.segments.message(heard, found_);
        if (heard.link() == "ip") speaker.streams.message(heard, found_);
        if (heard.link() == "ip") speaker.streams.look(heard.moment, found_);
        if (heard.server()) speaker.objects.message(heard, found_);
        speaker.resets.message(heard, found_);
        const bool whole_set = heard.link() == "digital" && heard.module.empty();
        if (whole_set && (heard.starts() || heard.restarts())) modules_start_too();
    }

    // The name of who speaks, or is spoken to, becomes `name_`; its front without the module `set_`.
    void name_speaker(const CapturedMessage& captured, const Record& record, std::size_t k,
                      const Heard& heard) {
        name_.clear();
        if (reading_.apart == Apart::columns) name_ += captured.columns;
        if (reading_.apart == Apart::prefix) name_ += captured.terminal;
        name_ += '\t';
        name_ += heard.link();
        if (k != 0) {
            const Record::Part& carrier = record.part(record.part(k).carrier);
            const auto set = Values(record, carrier).number("set_number");
            if (set) name_ += "\thub set " + std::to_string(*set);
        }
        set_size_ = name_.size();
        const auto address = heard.values.number("module_address");
        if (heard.link() == "digital" && address) name_ += "\tmodule " + std::to_string(*address);
    }

    Speaker* speaker_named() {
        if (last_ != nullptr && last_->first == name_) return &last_->second;
        const auto found = speakers_.find(name_);
        if (found == speakers_.end() && speakers_.size() >= most_speakers) return nullptr;
        last_ = found != speakers_.end() ? &*found : &*speakers_.try_emplace(name_).first;
        return &last_->second;
    }

    // Modules start with the set that they are plugged in.
    void modules_start_too() {
        constexpr int addresses = 8;
        for (int address = 0; address < addresses; ++address) {
            const auto module =
                speakers_.find(name_.substr(0, set_size_) + "\tmodule " + std::to_string(address));
            if (module != speakers_.end()) module->second.resets = {};
        }
    }

    Reading reading_;
    Limits limits_;
    std::deque<std::string> files_;
    std::vector<Finding> findings_;
    Found found_{findings_};
    std::optional<TraceClock> clock_{reading_.column_unit};
    Moment now_;
    bool terminals_heard_ = false;  // both in the trace
    bool system_heard_ = false;
    std::unordered_map<std::string, Speaker> speakers_;
    std::pair<const std::string, Speaker>* last_ = nullptr;  // who spoke last
    std::string name_;
    std::size_t set_size_ = 0;
};

Findings::Findings(const Reading& reading, const Limits& limits)
    : engine_(std::make_unique<Engine>(reading, limits)) {}
Findings::~Findings() = default;

void Findings::begin(std::string_view file) { engine_->begin(file); }
std::span<const Finding> Findings::message(const CapturedMessage& captured, const Record& record) {
    return engine_->message(captured, record);
}
std::span<const Finding> Findings::refused(std::uint64_t number, std::string_view why) {
    return engine_->refused(number, why);
}
std::span<const Finding> Findings::end(bool last) { return engine_->end(last); }
std::string_view Findings::file(const Standing& standing) const noexcept {
    return engine_->file(standing.file);
}

}  // namespace ztdecode::tool
