#include "tool/run.hpp"

#include <unistd.h>

#include <vector>

#include "decode/catalog.hpp"
#include "tool/ask.hpp"
#include "tool/files.hpp"
#include "tool/formats.hpp"
#include "tool/jobs.hpp"
#include "tool/output_file.hpp"
#include "tool/report/catalog.hpp"

namespace ztdecode::tool {

namespace {

int list_catalog(const Options& options, const Display& display) {
    Output out(STDOUT_FILENO, false);
    const std::vector<CatalogRow> rows = catalog();
    if (options.format == Format::ndjson) {
        write_catalog_as_ndjson(rows, out.text);
    } else {
        write_catalog(rows, is_terminal(STDOUT_FILENO) ? terminal_width(STDOUT_FILENO) : 0, display.color,
                      out.text);
    }
    out.flush();
    return status_with_output(options, 0, out.error());
}

}  // namespace

int run(const Options& options) {
    if (const auto status = open_output(options)) return *status;
    const Display shown = display(options);
    if (options.catalog) return list_catalog(options, shown);
    if (options.asks()) {
        Output out(STDOUT_FILENO, shown.escapes_output);
        const int status = ask(options, shown, out);
        return status_with_output(options, status, out.error());
    }
    const MakeReport make = [&](const std::string& name, Output& out) {
        return make_report(name, options, shown, out);
    };
    const FileDecoding decoding{options, shown, make};
    if (options.several_at_once()) {
        if (const auto status = decode_at_once(decoding)) return *status;
    }
    Output out(STDOUT_FILENO, shown.escapes_output);
    Output diagnostics(STDERR_FILENO, shown.escapes_diagnostics);
    const int status = decode_files(decoding, out, diagnostics);
    return status_with_output(options, status, out.error());
}

}  // namespace ztdecode::tool
