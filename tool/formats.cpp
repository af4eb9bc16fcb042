#include "tool/formats.hpp"

#include "tool/report/check.hpp"
#include "tool/report/ndjson.hpp"
#include "tool/report/text.hpp"

namespace ztdecode::tool {

std::unique_ptr<Report> make_report(std::string_view file, const Options& options, const Display& display,
                                    Output& out) {
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
            break;
    }
    return std::make_unique<TextReport>(TextReport::Options{.lines = options.input,
                                                            .only_texts = options.audio_only,
                                                            .color = display.color,
                                                            .explained = options.explain},
                                        out);
}

}  // namespace ztdecode::tool
