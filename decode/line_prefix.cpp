#include "decode/line_prefix.hpp"

#include <algorithm>
#include <array>

namespace ztdecode {

namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Reads along some words; what does not fit leaves it where it is, and makes it false.
class Scan {
  public:
    explicit Scan(std::string_view words) : words_(words) {}

    bool character(std::string_view any) {
        if (at_ == words_.size() || any.find(words_[at_]) == std::string_view::npos) return false;
        ++at_;
        return true;
    }
    bool number(std::size_t least, std::size_t most, std::int64_t& value) {
        std::size_t end = at_;
        value = 0;
        while (end < words_.size() && end - at_ < most && is_digit(words_[end])) {
            value = value * 10 + (words_[end] - '0');
            ++end;
        }
        if (end - at_ < least) return false;
        at_ = end;
        return true;
    }
    // Digits behind a point, in millionths.
    std::int64_t fraction() {
        std::int64_t value = 0;
        if (at_ + 1 >= words_.size() || (words_[at_] != '.' && words_[at_] != ',') ||
            !is_digit(words_[at_ + 1]))
            return 0;
        std::int64_t worth = 100000;
        for (++at_; at_ < words_.size() && is_digit(words_[at_]); ++at_, worth /= 10)
            value += (words_[at_] - '0') * worth;
        return value;
    }
    bool number_of_two(std::int64_t& value, std::int64_t most) {
        const std::size_t begin = at_;
        if (number(2, 2, value) && value <= most) return true;
        at_ = begin;
        return false;
    }
    // hh:mm:ss with or without a fraction, in microseconds
    bool time_of_day(std::int64_t& microseconds) {
        std::int64_t h = 0;
        std::int64_t m = 0;
        std::int64_t s = 0;
        const std::size_t begin = at_;
        if (!number_of_two(h, 23) || !character(":") || !number_of_two(m, 59) || !character(":") ||
            !number_of_two(s, 60)) {
            at_ = begin;
            return false;
        }
        microseconds = ((h * 60 + m) * 60 + s) * 1000000 + fraction();
        return true;
    }
    bool at_end() const { return at_ == words_.size(); }
    std::size_t at() const { return at_; }
    void back_to(std::size_t at) { at_ = at; }

  private:
    std::string_view words_;
    std::size_t at_ = 0;
};

// Days since 1970 of a date, by the count of years that begin in March.
std::int64_t days_of(std::int64_t year, std::int64_t month, std::int64_t day) {
    year -= month <= 2 ? 1 : 0;
    const std::int64_t era = year / 400;
    const std::int64_t of_era = year - era * 400;
    const std::int64_t of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097 + of_era * 365 + of_era / 4 - of_era / 100 + of_year - 719468;
}

constexpr std::int64_t second = 1000000;
constexpr std::int64_t day_long = 86400 * second;

bool iso_zone(Scan& scan, std::int64_t& microseconds) {
    if (scan.character("Zz")) return true;
    const std::size_t begin = scan.at();
    const bool east = scan.character("+");
    if (!east && !scan.character("-")) return true;
    std::int64_t h = 0;
    std::int64_t m = 0;
    if (!scan.number_of_two(h, 23)) {
        scan.back_to(begin);
        return true;
    }
    scan.character(":");
    scan.number_of_two(m, 59);
    microseconds -= (east ? 1 : -1) * (h * 60 + m) * 60 * second;
    return true;
}

bool iso_time(Scan& scan, std::int64_t& microseconds) {
    std::int64_t year = 0;
    std::int64_t month = 0;
    std::int64_t day = 0;
    std::int64_t of_day = 0;
    if (!scan.number(4, 4, year) || !scan.character("-/") || !scan.number_of_two(month, 12) ||
        !scan.character("-/") || !scan.number_of_two(day, 31) || !scan.character("T t_") ||
        !scan.time_of_day(of_day))
        return false;
    microseconds = days_of(year, month, day) * day_long + of_day;
    return iso_zone(scan, microseconds);
}

constexpr auto months = std::to_array<std::string_view>(
    {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"});

bool syslog_time(std::string_view words, Scan& scan, std::int64_t& microseconds) {
    const auto* const month = std::find(months.begin(), months.end(), words.substr(0, 3));
    if (month == months.end()) return false;
    scan.back_to(3);
    std::int64_t day = 0;
    std::int64_t of_day = 0;
    if (!scan.character(" ")) return false;
    scan.character(" ");
    if (!scan.number(1, 2, day) || !scan.character(" ") || !scan.time_of_day(of_day)) return false;
    microseconds = days_of(1972, 1 + (month - months.begin()), day) * day_long + of_day;
    return true;
}

// Seconds since 1970: of this century and the end of the last one, or of what a log counts with a fraction.
bool epoch_time(Scan& scan, std::int64_t& microseconds) {
    std::int64_t seconds = 0;
    const std::size_t begin = scan.at();
    if (!scan.number(1, 13, seconds)) return false;
    const std::size_t digits = scan.at() - begin;
    const std::int64_t part = scan.fraction();
    const bool has_fraction = scan.at() > begin + digits;
    if (digits == 13 && !has_fraction) {
        microseconds = seconds * 1000;
        return true;
    }
    if (digits > 10) return false;
    microseconds = seconds * second + part;
    return digits >= 9 || has_fraction;
}

bool time_at(std::string_view words, Scan& scan, LogTime& time) {
    if (iso_time(scan, time.microseconds)) return true;
    scan.back_to(0);
    if (scan.time_of_day(time.microseconds)) {
        time.of_day = true;
        return true;
    }
    scan.back_to(0);
    if (syslog_time(words, scan, time.microseconds)) return true;
    scan.back_to(0);
    return epoch_time(scan, time.microseconds);
}

bool ends_word(std::string_view words, std::size_t at) {
    return at >= words.size() || words[at] == ' ' || words[at] == '\t' || words[at] == ':' ||
           words[at] == ']' || words[at] == ',' || words[at] == ';' || words[at] == '|';
}

// Host and program behind a syslog time, up to the colon.
std::size_t origin_length(std::string_view words) {
    constexpr std::size_t longest = 200;
    const std::size_t colon = words.substr(0, longest).find(": ");
    return colon == std::string_view::npos ? 0 : colon + 1;
}

}  // namespace

bool find_prefix_piece(std::string_view words, PrefixPiece& piece) {
    if (words.empty()) return false;
    if (words[0] == '[') {
        const std::size_t end = words.find(']');
        if (end == std::string_view::npos) return false;
        const std::string_view inside = words.substr(1, end - 1);
        piece = {end + 1, log_time(inside) ? inside : std::string_view()};
        return true;
    }
    Scan scan(words);
    LogTime time;
    if (!time_at(words, scan, time) || !ends_word(words, scan.at())) return false;
    piece = {scan.at(), words.substr(0, scan.at())};
    if (!is_digit(words[0])) piece.length += origin_length(words.substr(scan.at()));
    return true;
}

std::optional<LogTime> log_time(std::string_view time) {
    while (!time.empty() && time.front() == ' ') time.remove_prefix(1);
    while (!time.empty() && time.back() == ' ') time.remove_suffix(1);
    Scan scan(time);
    LogTime read;
    if (time.empty() || !time_at(time, scan, read) || !scan.at_end()) return std::nullopt;
    return read;
}

}  // namespace ztdecode
