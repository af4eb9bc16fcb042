#include <algorithm>
#include <string>

#include "tool/analysis/rules.hpp"
#include "tool/report/reported.hpp"

// What takes many messages: downloads, and messages in segments. Of a transfer that was under way when the
// trace began only the rest is seen, which says nothing of what came before it.

namespace ztdecode::tool {

namespace {

bool is_download_complaint(std::string_view name) {
    return std::any_of(std::begin(reported), std::end(reported), [&](const Reported& one) {
        return one.message == name && one.complaint == Complaint::download;
    });
}

// Whether the terminal says that it does not take what it gets. Hubs have a code of their own for what went
// well.
bool refuses(const Heard& heard) {
    if (is_download_complaint(heard.name())) return true;
    const auto acknowledged = heard.values.number("acknowledgement");
    if (heard.name() == "download_ack" && acknowledged) {
        constexpr std::int64_t hub_is_ok = 8;
        return *acknowledged != (heard.link() == "hub" ? hub_is_ok : 0);
    }
    const auto checksum = heard.values.number("checksum_status");
    return checksum && *checksum != 1;
}

std::string why_refused(const Heard& heard) {
    std::string words(heard.name());
    for (const FieldName field :
         {FieldName("acknowledgement"), FieldName("download_failure"), FieldName("checksum_status")}) {
        if (const auto shown = heard.values.shown(field); !shown.empty()) words.append(": ").append(shown);
    }
    if (const auto packet = heard.values.number("packet_number"))
        words += ", packet " + std::to_string(*packet);
    return words;
}

}  // namespace

void Downloads::message(const Heard& heard, Found& found) {
    const std::string_view name = heard.name();
    const bool begins = !heard.to_system() && (name == "download_request" || name == "download_start");
    const bool data = name == "download_data" || name == "download_data_extended" || name == "download_code";
    if (heard.to_system() && refuses(heard)) {
        std::vector<Standing> on = {heard.standing};
        if (begun_) on.insert(on.begin(), begun_->standing);
        found.add("download-refused", heard.standing, std::move(on), why_refused(heard));
        begun_.reset();
    } else if (begins || heard.starts()) {
        if (begun_ && packets_ > 0) {
            found.add("download-broken-off", heard.standing,
                      {begun_->standing, last_.standing, heard.standing},
                      std::string(heard.starts() ? "the terminal starts" : "another download begins") +
                          " behind " + std::to_string(packets_) + (packets_ == 1 ? " packet" : " packets"));
        }
        begun_.reset();
        if (begins) begun_ = SaidAt{heard.standing, heard.moment};
        packets_ = 0;
    } else if (data) {
        if (!begun_) {
            begun_ = SaidAt{heard.standing, heard.moment};
            packets_ = 0;
        }
        ++packets_;
        last_ = {heard.standing, heard.moment};
    } else if (name == "download_end" || name == "download_checksum") {
        begun_.reset();
    }
}

void Segments::message(const Heard& heard, Found& found) {
    const Values& values = heard.values;
    Series& series = series_[heard.to_system() ? 1 : 0];
    if (const auto to_come = values.number("segments_to_come")) {
        take(series, heard, static_cast<std::size_t>(*to_come), values.number("segment_start") == 1, found);
        return;
    }
    const auto segment = values.number("segment");
    const auto segments = values.number("segments");
    if (!segment || !segments || *segment < 1 || *segment > *segments) return;
    take(series, heard, static_cast<std::size_t>(*segments - *segment), values.said_here("segments"), found);
}

void Segments::take(Series& series, const Heard& heard, std::size_t to_come, bool first, Found& found) {
    if (to_come >= most) return;
    const auto again = [&] {
        found.add("segment-repeated", heard.standing, {series.first.standing, heard.standing},
                  "segment " + std::to_string(series.segments - to_come) + " of " +
                      std::to_string(series.segments) + " came before");
    };
    if (first) {
        if (series.open && series.heard.count() == 1 && series.segments == to_come + 1) {
            again();
            return;
        }
        close(series, found);
        series = {};
        series.known = true;
        series.open = to_come > 0;
        series.segments = to_come + 1;
        series.first = {heard.standing, heard.moment};
    } else if (!series.known || to_come >= series.segments) {
        return;
    } else if (series.heard[to_come]) {
        again();
        return;
    } else if (to_come > series.last) {
        found.add("segment-out-of-order", heard.standing,
                  {series.first.standing, series.latest.standing, heard.standing},
                  "segment " + std::to_string(series.segments - to_come) + " of " +
                      std::to_string(series.segments) + " came behind segment " +
                      std::to_string(series.segments - series.last));
    }
    series.heard[to_come] = true;
    series.last = to_come;
    series.latest = {heard.standing, heard.moment};
    if (series.heard.count() == series.segments) series.open = false;
}

void Segments::close(Series& series, Found& found) {
    if (!series.open) return;
    series.open = false;
    std::string missing;
    for (std::size_t number = 1; number <= series.segments; ++number) {
        if (!series.heard[series.segments - number])
            missing.append(missing.empty() ? "" : ", ").append(std::to_string(number));
    }
    found.add("segment-missing", series.latest.standing, {series.first.standing, series.latest.standing},
              "of " + std::to_string(series.segments) + " segments these are missing: " + missing);
}

void Segments::look(const Moment& now, Found& found) {
    for (Series& series : series_) {
        if (series.open && too_late(series.latest.moment, now)) close(series, found);
    }
}

// The trace may end inside a series.
void Segments::end(Found& found) {
    for (Series& series : series_) {
        if (series.heard[0]) close(series, found);
    }
}

}  // namespace ztdecode::tool
