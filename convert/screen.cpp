#include "convert/screen.hpp"

#include <cstdio>
#include <cstring>

namespace ztdecode {

namespace {

constexpr int body_lines = 4;

// A file that is closed at the latest when it goes out of sight.
class File {
  public:
    File(const char* path, const char* mode) noexcept
        : file_(path != nullptr ? std::fopen(path, mode) : nullptr) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { close(); }

    explicit operator bool() const noexcept { return file_ != nullptr; }

    // One line or as much of it as the buffer holds; false at the end, with the buffer as it was.
    template <int N>
    bool read(char (&line)[N]) noexcept {
        return std::fgets(line, N, file_) != nullptr;
    }
    void write(const char* text) noexcept { std::fputs(text, file_); }

    int close() noexcept {
        if (file_ == nullptr) return 0;
        const int result = std::fclose(file_);
        file_ = nullptr;
        return result;
    }

  private:
    std::FILE* file_;
};

// "<GOOD>" and "<BAD>".
bool is_verdict(const char* line) noexcept {
    return std::strncmp(line, "<GOO", 4) == 0 || std::strncmp(line, "<BA", 3) == 0;
}

// Makes a line what `b` has not at the same place; what they share becomes blank.
void keep_differences(char* a, const char* b) noexcept {
    for (; *a != '\0' && *b != '\0'; ++a, ++b) {
        if (*a == *b) *a = ' ';
    }
    *a = '\0';
}

}  // namespace

std::optional<int> A_Convert_scr(const char* in_path, const char* out_path) noexcept {
    File in(in_path, "r");
    File out(out_path, "w");
    if (!in || !out) return std::nullopt;
    char line[1024];
    bool more = in.read(line);
    if (more && is_verdict(line)) more = in.read(line);
    for (int copied = 0; more && copied < body_lines; ++copied) {
        out.write(line);
        more = in.read(line);
    }
    in.close();
    return out.close();
}

int A_Diff_scr(const char* path_a, const char* path_b, const char* out_path) noexcept {
    File a(path_a, "rb");
    if (!a) return 0;
    File b(path_b, "rb");
    if (!b) return a.close();
    File out(out_path, "w");
    if (!out) {
        a.close();
        return b.close();
    }
    char line_a[2048];
    char line_b[2048];
    for (int pair = 0; pair < body_lines && a.read(line_a) && b.read(line_b); ++pair) {
        if (pair == 0) {
            // A verdict that nothing follows stays the line that is compared.
            if (is_verdict(line_a)) a.read(line_a);
            if (is_verdict(line_b)) b.read(line_b);
        }
        keep_differences(line_a, line_b);
        out.write(line_a);
    }
    a.close();
    b.close();
    return out.close();
}

}  // namespace ztdecode
