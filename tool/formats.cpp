#include "tool/formats.hpp"

#include "tool/analysis/finding_remarks.hpp"
#include "tool/finding_options.hpp"
#include "tool/report/check.hpp"
#include "tool/report/ndjson.hpp"
#include "tool/report/text.hpp"
#include "tool/select/selected.hpp"

namespace ztdecode::tool {

namespace {

std::unique_ptr<Report> make_whole_report(std::string_view file, const Options& options,
                                          const Display& display, Output& out) {
    if (options.check) return std::make_unique<CheckReport>(file, out);
    switch (options.format) {
        case Format::ndjson:
            return std::make_unique<NdjsonReport>(
                file,
                NdjsonReport::Options{.words = options.explain,
                                      .column_numbers = options.columns == Columns::number,
                                      .only_texts = options.audio_only},
                out);
        case Format::text:
        case Format::csv:
        case Format::table:
            break;
    }
    return std::make_unique<TextReport>(
        TextReport::Options{.lines = options.input,
                            .only_texts = options.audio_only,
                            .color = display.color,
                            .explained = options.explain},
        out, options.findings ? finding_remarks(file, reading_of(options)) : nullptr);
}

}  // namespace

std::unique_ptr<Report> make_report(std::string_view file, const Options& options, const Display& display,
                                    Output& out) {
    return only_selected(file, options, make_whole_report(file, options, display, out), out);
}

std::unique_ptr<Report> only_selected(std::string_view file, const Options& options,
                                      std::unique_ptr<Report> whole, Output& out) {
    if (!options.selection.any()) return whole;
    const bool member = !options.files.empty() && file != options.files.front();
    return std::make_unique<Selected>(file, options.selection,
                                      Selected::Options{.only_texts = options.audio_only,
                                                        .separators = options.format == Format::text,
                                                        .file_names = options.files.size() > 1 || member},
                                      std::move(whole), out);
}

}  // namespace ztdecode::tool
