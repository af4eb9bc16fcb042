#include "tool/report/page_writer.hpp"

#include <nettle/base64.h>
#include <nettle/sha2.h>

#include <new>

#include "core/data.hpp"
#include "tool/report/ndjson.hpp"
#include "tool/report/page_assets.hpp"

namespace ztdecode::tool {

namespace {

// What is unpacked at once to show a row.
constexpr std::uint32_t most_rows = 8192;
constexpr std::size_t most_bytes = std::size_t{4} << 20;
constexpr std::uint64_t most_kinds = 65536;  // of rows, in a block

// The page shows these as findings of a row.
enum Finding : std::uint32_t {
    unknown_value = 1,
    missing_bytes = 2,
    left_over_bytes = 4,
    cut_short_bytes = 8,
    padded_bytes = 16,
};

constexpr std::uint32_t no_direction = 2;

std::uint8_t* bytes_of(char* characters) {
    return reinterpret_cast<std::uint8_t*>(characters);  // NOLINT: characters as bytes
}
const std::uint8_t* bytes_of(std::string_view characters) {
    return reinterpret_cast<const std::uint8_t*>(characters.data());  // NOLINT: characters as bytes
}

void add_base64(std::string_view bytes, Text& out) {
    const std::size_t size = BASE64_ENCODE_RAW_LENGTH(bytes.size());
    char* const at = out.room(size);
    base64_encode_raw(at, bytes.size(), bytes_of(bytes));
    out.written_to(at + size);
}

// What the browser knows a script or a style by that may stand in the page.
void add_hash(std::string_view content, Text& out) {
    sha256_ctx context{};
    sha256_init(&context);
    sha256_update(&context, content.size(), bytes_of(content));
    std::string digest(SHA256_DIGEST_SIZE, '\0');
    sha256_digest(&context, digest.size(), bytes_of(digest.data()));
    out.add("'sha256-");
    add_base64(digest, out);
    out.add("'");
}

void add_policy(Text& out) {
    out.add("default-src 'none'; script-src ");
    add_hash(page_script, out);
    out.add("; style-src ");
    add_hash(page_style, out);
    out.add("; img-src data:; base-uri 'none'; form-action 'none'");
}

// The template between two of its marks; its beginning and its end have empty names.
std::string_view between(std::string_view mark, std::string_view next) {
    const std::size_t begin = mark.empty() ? 0 : page_template.find(mark) + mark.size();
    return page_template.substr(begin,
                                next.empty() ? std::string_view::npos : page_template.find(next) - begin);
}

// JSON that stands in an element of the page: nothing in it looks like the element's end.
void add_json_in_page(std::string_view json, Text& out) {
    for (std::size_t at = 0; at < json.size();) {
        const std::size_t tag = std::min(json.find('<', at), json.size());
        out.add(json.substr(at, tag - at));
        if (tag < json.size()) out.add("\\u003c");
        at = tag + 1;
    }
}

std::string_view name_of(PageWriter::Severity severity) {
    switch (severity) {
        case PageWriter::Severity::error:
            return "error";
        case PageWriter::Severity::warning:
            return "warning";
        case PageWriter::Severity::note:
            break;
    }
    return "note";
}

void add_comma(Text& json) {
    if (!json.empty()) json.add(",");
}

void add_json(std::string_view words, Text& json) { add_json_string(words, false, json); }

}  // namespace

PageWriter::PageWriter() {
    // Half the time of the usual level, and a tenth more room.
    constexpr int level = 5;
    if (deflateInit(&packer_, level) != Z_OK) throw std::bad_alloc();
}

PageWriter::~PageWriter() { deflateEnd(&packer_); }

void PageWriter::begin(Output& out) {
    if (out_ != nullptr) return;
    out_ = &out;
    out.text.add(between("", "{{policy}}"));
    add_policy(out.text);
    out.text.add(between("{{policy}}", "{{style}}"));
    out.text.add(page_style);
    out.text.add(between("{{style}}", "{{trace}}"));
}

void PageWriter::begin_file(std::string_view name, Output& out) {
    begin(out);
    finish_rows();
    add_comma(files_json_);
    add_json(name, files_json_);
    ++files_;
}

void PageWriter::message(const CapturedMessage& captured, const Record& record) {
    const Record::Part& whole = record.part(0);
    std::uint32_t findings = 0;
    for (std::size_t k = 0; k < record.size(); ++k) {
        if (record.part(k).unknown > 0) findings |= unknown_value;
        if (record.part(k).missing > 0) findings |= missing_bytes;
    }
    if (captured.left_over > 0) findings |= left_over_bytes;
    if (captured.cut_short > 0) findings |= cut_short_bytes;
    if (captured.shortage != nullptr) findings |= padded_bytes;
    const std::uint32_t counted = kind(whole.noted->link, whole.noted->name, whole.noted->direction,
                                       data::name_of(whole.decoded), findings);
    open_rows().message(counted, captured, record);
    row_done();
}

void PageWriter::refused(std::uint64_t line, std::string_view content, std::size_t column,
                         std::string_view why) {
    open_rows().refused(kind("", "", no_direction, "refused line", 0), line, content, column, why);
    row_done();
}

void PageWriter::other(std::uint64_t line, std::string_view content) {
    open_rows().other(kind("", "", no_direction, "no message", 0), line, content);
    row_done();
}

// What a row is counted and filtered by.
std::uint32_t PageWriter::kind(std::string_view link, std::string_view name, std::uint32_t direction,
                               std::string_view status, std::uint32_t findings) {
    kind_.assign(link).append(1, '\n').append(name).append(1, '\n').append(status);
    kind_ += static_cast<char>(direction);
    kind_ += static_cast<char>(findings);
    const auto [known, fresh] = kinds_.try_emplace(kind_, static_cast<std::uint32_t>(kinds_.size()));
    if (!fresh) return known->second;
    add_comma(kinds_json_);
    kinds_json_.add("[");
    add_json(link, kinds_json_);
    kinds_json_.add(",");
    add_json(name, kinds_json_);
    kinds_json_.print(",{-},"_cf, direction);
    add_json(status, kinds_json_);
    kinds_json_.print(",{-}]"_cf, findings);
    return known->second;
}

PageRows& PageWriter::open_rows() {
    if (rows_->closed()) {
        finish_rows();
        rows_ = std::make_unique<PageRows>();
    }
    return *rows_;
}

void PageWriter::row_done() {
    if (rows_->size() >= most_rows || rows_->bytes() >= most_bytes) finish_rows();
}

void PageWriter::finish_rows() {
    if (rows_->size() == 0) return;
    PageBytes content;
    rows_->write(content);
    add_block("rows", content.view());
    add_comma(blocks_json_);
    blocks_json_.print("[{-},{-},{-}]"_cf, rows_->size(), rows_->first_line(), files_ - 1);
    kinds_of_rows_.raw(rows_->kinds());
    kinds_counted_ += rows_->size();
    all_rows_ += rows_->size();
    for (std::size_t k = 0; k < used_fields_.size(); ++k) {
        if (rows_->used_fields()[k]) used_fields_[k] = true;
    }
    rows_ = std::make_unique<PageRows>();
    if (kinds_counted_ >= most_kinds) finish_kinds();
}

void PageWriter::finish_kinds() {
    add_block("kinds", kinds_of_rows_.view());
    kinds_of_rows_.cut(0);
    kinds_counted_ = 0;
}

// A block is data: the browser runs nothing of this type.
void PageWriter::add_block(std::string_view element, std::string_view content) {
    deflateReset(&packer_);
    packed_.resize(deflateBound(&packer_, content.size()));
    packer_.next_in = const_cast<std::uint8_t*>(bytes_of(content));  // NOLINT: it only reads
    packer_.avail_in = static_cast<unsigned>(content.size());
    packer_.next_out = bytes_of(packed_.data());
    packer_.avail_out = static_cast<unsigned>(packed_.size());
    deflate(&packer_, Z_FINISH);
    packed_.resize(packer_.total_out);
    out_->text.print("<script type=\"application/x-ztdecode-{-}\">"_cf, element);
    add_base64(packed_, out_->text);
    out_->text.add("</script>\n");
    out_->flush_when_full();
}

void PageWriter::item(Tab tab, const Item& item) {
    Text& json = items_json_[static_cast<std::size_t>(tab)];
    add_comma(json);
    json.add("{\"text\":");
    add_json(item.text, json);
    json.print(",\"severity\":\"{-}\",\"line\":{-},\"message\":{-},\"file\":"_cf, name_of(item.severity),
               item.line, item.message);
    add_json(item.file, json);
    json.add("}");
}

void PageWriter::add_fields(Text& json) const {
    for (std::size_t k = 0; k < used_fields_.size(); ++k) {
        if (!used_fields_[k]) continue;
        const Field& field = all_fields[k];
        add_comma(json);
        json.print("\"{-}\":"_cf, k);
        json.add("[");
        add_json(field.name, json);
        json.add(",");
        add_json(field.meaning, json);
        json.add(",");
        add_json(field.unit, json);
        json.add("]");
    }
}

void PageWriter::add_about_trace() {
    Text fields;
    add_fields(fields);
    Text json;
    json.add("{\"version\":\"" ZTDECODE_VERSION "\",\"rows\":");
    json.print("{-},\"files\":["_cf, all_rows_);
    json.add(files_json_.view());
    json.add("],\"blocks\":[");
    json.add(blocks_json_.view());
    json.add("],\"kinds\":[");
    json.add(kinds_json_.view());
    json.add("],\"fields\":{");
    json.add(fields.view());
    json.add("}");
    constexpr std::array<std::string_view, 3> tabs = {"summary", "findings", "ladder"};
    for (std::size_t k = 0; k < tabs.size(); ++k) {
        if (items_json_[k].empty()) continue;
        json.print(",\"{-}\":["_cf, tabs[k]);
        json.add(items_json_[k].view());
        json.add("]");
    }
    json.add("}");
    out_->text.add(R"(<script type="application/json" id="trace">)");
    add_json_in_page(json.view(), out_->text);
    out_->text.add("</script>\n");
}

void PageWriter::end(Output& out) {
    begin(out);
    finish_rows();
    finish_kinds();
    add_about_trace();
    out.text.add(between("{{trace}}", "{{script}}"));
    out.text.add(page_script);
    out.text.add(between("{{script}}", ""));
}

}  // namespace ztdecode::tool
