#include "tool/options.hpp"

#include <CLI/CLI.hpp>
#include <iostream>
#include <map>

#include "core/message.hpp"

namespace ztdecode::tool {

namespace {

const std::map<std::string, Layout>& layouts() {
    static const std::map<std::string, Layout> names = {
        {"auto", Layout::recognised}, {"line", Layout::line}, {"lng2", Layout::line_lng2},
        {"zt", Layout::tagged},       {"spzt", Layout::spzt}, {"spzt-lng2", Layout::spzt_lng2},
        {"bin1", Layout::bin1},       {"bin2", Layout::bin2},
    };
    return names;
}

constexpr auto description =
    "Decodes the messages of trace files to readable text. Each trace line is printed, then what its message "
    "says;\n"
    "lines that are no trace line are printed as they are.";

constexpr auto footer =
    "Exit status: 0, 1 when lines were refused, 2 for bad usage or a file that cannot be read.";

}  // namespace

Arguments parse_arguments(int argc, char** argv) {
    Options o;
    bool no_input = false;
    CLI::App app(description, "ztdecode");
    app.footer(footer);
    app.set_version_flag("--version", "ztdecode " ZTDECODE_VERSION);
    app.add_option("FILE", o.files, "trace files; - or none: standard input");
    app.add_option("--layout", o.layout,
                   "auto (each line's layout is recognised), line, lng2, zt, spzt, spzt-lng2, bin1 or bin2")
        ->transform(CLI::CheckedTransformer(layouts(), CLI::ignore_case).description(""))
        ->type_name("LAYOUT");
    app.add_option("--direction", o.direction,
                   "to or from the system (from), where the layout does not say it")
        ->transform(
            CLI::CheckedTransformer(std::map<std::string, std::uint32_t>{{"to", to_dhs}, {"from", from_dhs}},
                                    CLI::ignore_case)
                .description(""))
        ->type_name("WAY");
    app.add_flag("--no-input", no_input, "leave the trace lines out");
    app.add_option("--color", o.color, "auto (on a terminal, unless NO_COLOR is set), always or never")
        ->transform(CLI::CheckedTransformer(
                        std::map<std::string, Color>{
                            {"auto", Color::automatic}, {"always", Color::always}, {"never", Color::never}},
                        CLI::ignore_case)
                        .description(""))
        ->type_name("WHEN");
    app.add_flag("--audio-only", o.audio_only, "show audio messages only");
    app.add_flag("--explain", o.explain,
                 "say under each message which bytes each piece of its text came from");
    app.add_flag("--debug", o.debug, "show what the decoders trace on the side");
    app.add_option("--jobs", o.jobs, "decode N files at once; the output is the same")
        ->check(CLI::Range(1, 256))
        ->type_name("N");
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& asked) {
        return {std::nullopt, app.exit(asked)};
    } catch (const CLI::ParseError& wrong) {
        std::cerr << "ztdecode: " << wrong.what() << "\nztdecode --help says how it is used\n";
        return {std::nullopt, 2};
    }
    o.input = !no_input;
    if (o.files.empty()) o.files.emplace_back("-");
    return {std::move(o), 0};
}

}  // namespace ztdecode::tool
