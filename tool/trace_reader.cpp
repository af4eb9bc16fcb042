#include "tool/trace_reader.hpp"

#include <optional>

namespace ztdecode::tool {

namespace {

std::optional<LineLayout> line_layout(Layout layout) {
    switch (layout) {
        case Layout::line:
            return LineLayout::line;
        case Layout::line_lng2:
            return LineLayout::line_lng2;
        case Layout::tagged:
            return LineLayout::tagged;
        case Layout::spzt:
            return LineLayout::spzt;
        case Layout::spzt_lng2:
            return LineLayout::spzt_lng2;
        default:
            return std::nullopt;
    }
}

}  // namespace

TraceReader reader_for(const Options& options) {
    TraceReader reader(line_layout(options.layout), options.direction,
                       options.pad ? MissingBytes::padded : MissingBytes::refused);
    reader.use(options.prefix.get());
    if (options.columns == Columns::seconds || options.columns == Columns::milliseconds)
        reader.columns_are_time();
    return reader;
}

}  // namespace ztdecode::tool
