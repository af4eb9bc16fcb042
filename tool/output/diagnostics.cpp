#include "tool/output/diagnostics.hpp"

#include <algorithm>

namespace ztdecode::tool {

void complain_of_file(std::string_view name, std::string_view why, Output& out) {
    out.text.add("ztdecode: ");
    out.add_name(name);
    out.text.add(": ");
    out.add_foreign(why);
    out.text.add("\n");
}

void Diagnostics::of_line(std::uint64_t number, std::string_view why, std::size_t column) {
    if (!quiet_) say_of_line(number, why, column);
}

void Diagnostics::unreadable(std::uint64_t number, std::string_view why) {
    if (number == 0) {
        complain_of_file(name_, why, out_);
    } else {
        say_of_line(number, why, 0);
    }
}

void Diagnostics::say_of_line(std::uint64_t number, std::string_view why, std::size_t column) {
    Text& text = out_.text;
    do {
        const std::string_view line = why.substr(0, why.find('\n'));
        text.add("ztdecode: ");
        out_.add_name(name_);
        text.print(":{-}"_cf, number);
        if (column != 0) text.print(":{-}"_cf, column);
        text.add(": ");
        out_.add_foreign(line);
        text.add("\n");
        why.remove_prefix(std::min(why.size(), line.size() + 1));
    } while (!why.empty());
}

}  // namespace ztdecode::tool
