#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "tool/analysis/ladder.hpp"
#include "tool/analysis/ladder_texts.hpp"
#include "tool/command_line.hpp"
#include "tool/files.hpp"
#include "tool/finding_options.hpp"
#include "tool/select/names.hpp"
#include "tool/subcommands.hpp"
#include "tool/time_column.hpp"

namespace ztdecode::tool {

namespace {

constexpr auto purpose =
    "Who said what to whom, as a ladder: a lifeline for the system and for each\n"
    "terminal, module, hub and server that the traces name, and an arrow for each\n"
    "message.\n";

constexpr auto examples = R"(Examples:
  ztdecode ladder trace.spzt | less
  ztdecode ladder --link ip --fields codec,remote_ip trace.spzt
  ztdecode ladder --format svg -o call.svg trace.spzt

Exit status: 0, 2 for bad usage, a file that cannot be read or an output that
cannot be written. "man ztdecode-ladder" says more.
)";

enum class Picture { text, svg, mermaid };
constexpr auto pictures = std::to_array<Named<Picture>>(
    {{"text", Picture::text}, {"svg", Picture::svg}, {"mermaid", Picture::mermaid}});

// What is shown of a message where nothing else is asked for.
constexpr auto usual_fields = std::to_array<std::string_view>(
    {"codec", "digit", "display_text", "error", "key", "key_text", "label", "led", "object_id", "property",
     "remote_ip", "reset_cause", "reset_kind", "set_number", "software_version", "terminal_type",
     "unknown_code", "voice_mode", "warning"});

struct Wishes {
    Picture picture = Picture::text;
    std::vector<std::string> fields;
    bool unfolded = false;
    std::size_t width = 0;
};

void add_picture(CLI::App& app, Wishes& wishes) {
    constexpr std::size_t least_width = 60;
    constexpr std::size_t most_width = 10000;
    add_choice(app, "--format", wishes.picture, pictures,
               "text (default), svg, a file of its own, or\n"
               "mermaid, a sequence diagram for Mermaid")
        ->type_name("FORMAT")
        ->group("Output");
    add_list(app, "--fields", wishes.fields,
             "values to show with the names of messages:\n"
             "codec,remote_ip; or all, or none")
        ->delimiter(',')
        ->type_name("FIELDS")
        ->group("Output");
    add_switch(app, "--unfold", wishes.unfolded, "show what is said again and again each time")
        ->group("Output");
    add_number<std::size_t>(app, "--width", wishes.width, least_width, most_width,
                            "columns of the text; default those of the\n"
                            "terminal, or 80")
        ->group("Output");
}

// What is wrong with the wishes; empty: nothing.
std::string choose_fields(const Wishes& wishes, std::bitset<std::size(all_fields)>& chosen) {
    const auto choose = [&](std::string_view name) {
        const auto* const field = std::find_if(std::begin(all_fields), std::end(all_fields),
                                               [&](const Field& one) { return one.name == name; });
        if (field == std::end(all_fields)) return false;
        chosen.set(static_cast<std::size_t>(field - std::begin(all_fields)));
        return true;
    };
    if (wishes.fields.empty()) {
        for (const std::string_view name : usual_fields) choose(name);
    }
    for (const std::string& name : wishes.fields) {
        if (name == "all") {
            chosen.set();
        } else if (name != "none" && !choose(name)) {
            std::vector<std::string_view> names = {"all", "none"};
            for (const Field& field : all_fields) names.push_back(field.name);
            return "--fields: no such field: " + name + did_you_mean(name, names);
        }
    }
    return {};
}

// "+0.25", of a column that is filled up with blanks and zeros.
std::string short_delta(std::string_view column) {
    const std::size_t first = column.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    std::string delta(column.substr(first, column.find_last_not_of(' ') - first + 1));
    delta.erase(delta.find_last_not_of('0') + 1);
    if (delta.ends_with('.')) delta.pop_back();
    return delta.starts_with('-') ? delta : "+" + delta;
}

}  // namespace

int run_ladder(int argc, const char* const* argv) {
    Options options;
    Wishes wishes;
    CommandLine line("ztdecode ladder", purpose, examples, options);
    line.add_files();
    line.add_input();
    line.add_selection();
    add_picture(line.app(), wishes);
    line.add_output();
    line.add_terminal();
    line.add_help();
    if (const auto status = line.parse(argc, argv)) return *status;
    line.default_files();

    Ladder::Options wanted;
    if (const std::string wrong = choose_fields(wishes, wanted.fields); !wrong.empty())
        return line.refuse(wrong);
    TimeColumn times(TimeShown::delta, options.columns);
    wanted.reading = reading_of(options);
    wanted.fold = !wishes.unfolded;
    wanted.by_columns = options.terminal == Terminal::columns;
    wanted.by_prefix = options.terminal == Terminal::prefix;
    wanted.delta = [&times](const CapturedMessage& captured) { return short_delta(times.of(captured)); };
    Ladder ladder(std::move(wanted));
    return analyse_files(
        options,
        [&](const std::string& name, Output& /*out*/) {
            if (options.join == Join::none) times = TimeColumn(TimeShown::delta, options.columns);
            return ladder.report(name);
        },
        [&](const Display& shown, Output& out) {
            ladder.end();
            switch (wishes.picture) {
                case Picture::text:
                    write_ladder_text(
                        ladder,
                        {.width = wishes.width != 0 ? wishes.width : terminal_width(STDOUT_FILENO),
                         .ascii = !locale_is_utf8(),
                         .color = shown.color},
                        out.text);
                    break;
                case Picture::svg:
                    write_ladder_svg(ladder, out.text);
                    break;
                case Picture::mermaid:
                    write_ladder_mermaid(ladder, out.text);
                    break;
            }
            return 0;
        });
}

}  // namespace ztdecode::tool
