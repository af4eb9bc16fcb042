#include "tool/input/archive.hpp"

#include <archive.h>
#include <archive_entry.h>
#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <utility>

namespace ztdecode::tool {

namespace {

// The library brings a dozen others along, which a trace that is plain text has no use for: it is opened when
// the first packed one comes.
struct Library {
    decltype(&::archive_read_new) read_new;
    decltype(&::archive_read_free) read_free;
    decltype(&::archive_read_open) read_open;
    decltype(&::archive_read_next_header) read_next_header;
    decltype(&::archive_read_data) read_data;
    decltype(&::archive_format) format;
    decltype(&::archive_error_string) error_string;
    decltype(&::archive_entry_pathname) entry_pathname;
    decltype(&::archive_entry_filetype) entry_filetype;
    std::array<decltype(&::archive_read_support_filter_gzip), 9> supports;
    bool complete = false;
};

Library open_library() {
    Library l{};
    void* const handle = ::dlopen("libarchive.so.13", RTLD_LAZY | RTLD_LOCAL);
    if (handle == nullptr) return l;
    l.complete = true;
    const auto find = [&](auto& function, const char* name) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(::dlsym(handle, name));
        l.complete = l.complete && function != nullptr;
    };
    find(l.read_new, "archive_read_new");
    find(l.read_free, "archive_read_free");
    find(l.read_open, "archive_read_open");
    find(l.read_next_header, "archive_read_next_header");
    find(l.read_data, "archive_read_data");
    find(l.format, "archive_format");
    find(l.error_string, "archive_error_string");
    find(l.entry_pathname, "archive_entry_pathname");
    find(l.entry_filetype, "archive_entry_filetype");
    constexpr auto names =
        std::to_array<const char*>({"archive_read_support_filter_gzip", "archive_read_support_filter_xz",
                                    "archive_read_support_filter_zstd", "archive_read_support_filter_bzip2",
                                    "archive_read_support_filter_lz4", "archive_read_support_format_tar",
                                    "archive_read_support_format_zip_streamable",
                                    "archive_read_support_format_raw", "archive_read_support_format_empty"});
    for (std::size_t k = 0; k < names.size(); ++k) find(l.supports[k], names[k]);
    return l;
}

const Library& library() {
    static const Library opened = open_library();
    return opened;
}

// What each of them begins with.
using namespace std::string_view_literals;
constexpr auto beginnings = std::to_array<std::string_view>({
    "\x1f\x8b\x08"sv,              // gzip
    "\xfd\x37\x7a\x58\x5a\x00"sv,  // xz
    "\x28\xb5\x2f\xfd"sv,          // zstd
    "BZh"sv,                       // bzip2, then a digit and six bytes that are always the same
    "\x04\x22\x4d\x18"sv,          // lz4
    "PK\x03\x04"sv,                // zip
    "PK\x05\x06"sv,                // one without a member
});
constexpr std::string_view tar_mark = "ustar";
constexpr std::size_t tar_mark_at = 257;
constexpr std::size_t tar_name = 100;

}  // namespace

// A tar file tells itself late; but no text has nothing but zeros behind the first words of its first line.
Packed is_packed(std::string_view first) {
    for (const std::string_view beginning : beginnings) {
        if (first.starts_with(beginning)) return Packed::yes;
        if (beginning.starts_with(first)) return Packed::unsure;
    }
    const std::string_view name = first.substr(0, tar_name);
    const std::size_t zero = name.find('\0');
    if (zero == std::string_view::npos || zero == 0 || name.find('\n') < zero) return Packed::no;
    if (name.find_first_not_of('\0', zero) != std::string_view::npos) return Packed::no;
    if (first.size() < tar_mark_at + tar_mark.size()) return Packed::unsure;
    return first.substr(tar_mark_at).starts_with(tar_mark) ? Packed::yes : Packed::no;
}

class Archive::Reader final : public Source {
  public:
    explicit Reader(Source& source) : source_(source), library_(library()) {
        if (!library_.complete) {
            fail("libarchive.so.13, which reads compressed files, is not installed");
            return;
        }
        archive_ = library_.read_new();
        if (archive_ == nullptr) throw std::bad_alloc();
        for (const auto support : library_.supports) support(archive_);
        if (library_.read_open(archive_, this, nullptr, give, nullptr) != ARCHIVE_OK) fail_with_reason();
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() override {
        if (archive_ != nullptr) library_.read_free(archive_);
    }

    bool next() {
        while (!failed() && !empty_) {
            archive_entry* entry = nullptr;
            const int result = library_.read_next_header(archive_, &entry);
            // A compressed file of nothing has no member, but is a trace.
            if (result == ARCHIVE_EOF)
                return library_.format(archive_) == ARCHIVE_FORMAT_EMPTY && !std::exchange(empty_, true);
            if (result < ARCHIVE_WARN) {
                fail_with_reason();
                return false;
            }
            if (library_.format(archive_) == ARCHIVE_FORMAT_RAW) return true;
            const char* const path = library_.entry_pathname(entry);
            name_ = path != nullptr ? path : "?";
            // Folders, links and devices have nothing to read.
            if (library_.entry_filetype(entry) == AE_IFREG) return true;
        }
        return false;
    }
    const std::string& name() const noexcept { return name_; }

    std::size_t read(char* to, std::size_t n) override {
        if (failed() || empty_) return 0;
        const la_ssize_t got = library_.read_data(archive_, to, n);
        if (got >= 0) return static_cast<std::size_t>(got);
        fail_with_reason();
        return 0;
    }
    bool may_wait() const override { return source_.may_wait(); }

  private:
    static la_ssize_t give(archive* /*archive*/, void* reader, const void** bytes) noexcept {
        Reader& r = *static_cast<Reader*>(reader);
        *bytes = r.block_.data();
        try {
            const std::size_t n = r.source_.read(r.block_.data(), r.block_.size());
            return n == 0 && r.source_.failed() ? -1 : static_cast<la_ssize_t>(n);
        } catch (const std::bad_alloc&) {
            return -1;
        }
    }

    void fail_with_reason() {
        const char* const why = library_.error_string(archive_);
        fail(source_.failed() ? source_.error() : why != nullptr ? why : "damaged");
    }

    Source& source_;
    const Library& library_;
    archive* archive_ = nullptr;
    bool empty_ = false;
    std::string name_;
    std::array<char, std::size_t{64} * 1024> block_;
};

Archive::Archive(Source& source) : reader_(std::make_unique<Reader>(source)) {}
Archive::~Archive() = default;
Source* Archive::next() { return reader_->next() ? reader_.get() : nullptr; }
const std::string& Archive::name() const noexcept { return reader_->name(); }
const std::string& Archive::error() const noexcept { return reader_->error(); }

}  // namespace ztdecode::tool
