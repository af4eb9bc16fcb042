#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "convert/flex.hpp"
#include "convert/keyboard.hpp"
#include "convert/screen.hpp"
#include "convert/text.hpp"

// The conversion utilities: any line, any key text, any two screen files. The input is cut in two at its
// first 0xff.

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

// The same two files for the whole run, written anew each time.
class File {
  public:
    File() {
        const int descriptor = ::mkstemp(name_.data());
        require(descriptor >= 0);
        ::close(descriptor);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { ::unlink(name_.c_str()); }

    const char* name() const { return name_.c_str(); }
    void write(std::string_view text) const {
        std::FILE* file = std::fopen(name(), "wb");
        require(file != nullptr);
        std::fwrite(text.data(), 1, text.size(), file);
        std::fclose(file);
    }
    std::size_t size() const {
        std::FILE* file = std::fopen(name(), "rb");
        require(file != nullptr);
        std::fseek(file, 0, SEEK_END);
        const long size = std::ftell(file);
        std::fclose(file);
        return static_cast<std::size_t>(size);
    }

  private:
    std::string name_ = std::filesystem::temp_directory_path() / "ztdecode-fuzz-XXXXXX";
};

void lines(const std::string& a, const std::string& b) {
    // The buffers keep what an earlier line left in them.
    static ztdecode::FlexBuffer to;
    static ztdecode::FlexBuffer from;
    for (const std::string* line : {&a, &b}) {
        const std::size_t length = std::strlen(line->c_str());
        if (ztdecode::TOFLEX_Convert(line->c_str(), to) != ztdecode::FlexLine::other) {
            require(std::strlen(to.text()) <= 5 * length + 20);
        }
        ztdecode::FROMFLEX_Convert(line->c_str(), from);
        require(from.text() != nullptr);
        std::vector<char> key(line->c_str(), line->c_str() + length + 1);
        const ztdecode::KeyText text = ztdecode::Convert_kb_To_key(key.data());
        require(std::memchr(text.data(), 0, text.size()) != nullptr);
    }
}

void texts(const std::string& a, const std::string& b) {
    const auto limit = static_cast<unsigned>(a.size() / 2);
    require(ztdecode::bGenericStrCmp(a, a, 0));
    static_cast<void>(ztdecode::bGenericStrCmp(a, b, limit));
    static_cast<void>(ztdecode::hextoint(a, static_cast<int>(b.size())));
}

// Four lines of at most 1023 or 2047 characters are what is copied or compared.
void screens(const std::string& a, const std::string& b) {
    static const File first;
    static const File second;
    static const File result;
    first.write(a);
    second.write(b);
    require(ztdecode::A_Convert_scr(first.name(), result.name()).has_value());
    require(result.size() <= std::size_t{4} * 1023);
    ztdecode::A_Diff_scr(first.name(), second.name(), result.name());
    require(result.size() <= std::size_t{4} * 2047);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string all(reinterpret_cast<const char*>(data), size);
    const std::size_t cut = all.find('\xff');
    const std::string a = all.substr(0, cut);
    const std::string b = cut == std::string::npos ? std::string() : all.substr(cut + 1);
    lines(a, b);
    texts(a, b);
    screens(a, b);
    return 0;
}
