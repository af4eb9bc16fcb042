#pragma once

#include <zlib.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/record.hpp"
#include "core/text.hpp"
#include "decode/trace_lines.hpp"
#include "tool/output/output.hpp"
#include "tool/report/page_rows.hpp"

namespace ztdecode::tool {

// The page that shows a trace in a browser (web/), with the trace in it: packed blocks of rows, then as JSON
// what has to be known of all of them. What is not being written is not kept, but for some bytes a block.
class PageWriter {
  public:
    PageWriter();
    PageWriter(const PageWriter&) = delete;
    PageWriter& operator=(const PageWriter&) = delete;
    ~PageWriter();

    // The rows from here on are of this file, and go to this output: the same for all files.
    void begin_file(std::string_view name, Output& out);

    void message(const CapturedMessage& captured, const Record& record);
    void refused(std::uint64_t line, std::string_view content, std::size_t column, std::string_view why);
    void other(std::uint64_t line, std::string_view content);

    // What a tab shows besides: a place in the trace and what there is to say of it.
    enum class Tab { summary, findings, ladder };
    enum class Severity { note, warning, error };
    struct Item {
        std::string_view text;
        Severity severity = Severity::note;
        std::uint64_t line = 0;     // 0: of the trace as a whole
        std::uint64_t message = 0;  // of its line, from 0 on
        std::string_view file{};    // as in begin_file
    };
    void item(Tab tab, const Item& item);

    // Writes what is left, and what stands behind the trace.
    void end(Output& out);

  private:
    std::uint32_t kind(std::string_view link, std::string_view name, std::uint32_t direction,
                       std::string_view status, std::uint32_t findings);
    void begin(Output& out);
    PageRows& open_rows();
    void row_done();
    void finish_rows();
    void finish_kinds();
    void add_block(std::string_view element, std::string_view content);
    void add_about_trace();
    void add_fields(Text& json) const;

    Output* out_ = nullptr;
    z_stream packer_{};
    std::string packed_;
    std::unique_ptr<PageRows> rows_ = std::make_unique<PageRows>();
    PageBytes kinds_of_rows_;
    std::uint64_t kinds_counted_ = 0;
    std::uint64_t all_rows_ = 0;
    std::unordered_map<std::string, std::uint32_t> kinds_;
    std::string kind_;  // the one at hand
    Text kinds_json_;
    Text files_json_;
    Text blocks_json_;
    std::array<Text, 3> items_json_;  // of each tab
    std::uint32_t files_ = 0;
    std::vector<bool> used_fields_ = std::vector<bool>(std::size(all_fields));
};

}  // namespace ztdecode::tool
