// What the command reads: lines and blocks of any size, in any order, of a file or of pieces as a pipe brings
// them. All that comes out together is what went in, and every line has its end.
//
// Byte 0: size of the pieces, 0 for a file. Byte 1: how often the content is repeated, since the longest line
// is longer than an input. Bytes 2 to 9: what is asked for in turn, 0 a line, else a block. Then the content.

#include <cstdint>
#include <string>

#include "fuzz/descriptors.hpp"
#include "tool/input/lines.hpp"

namespace {

using ztdecode::fuzz::expect;
using ztdecode::tool::Input;

constexpr std::size_t asked = 8;
constexpr std::size_t header = 2 + asked;
constexpr std::size_t longest = 2 * Input::longest_line + 100;

std::string content_of(const std::uint8_t* data, std::size_t size) {
    const std::string once(data + header, data + size);
    std::string all = once;
    if (data[0] != 0) return all;  // pieces do not hold as much
    const std::size_t times = std::size_t{data[1]} * data[1];
    for (std::size_t k = 0; k < times && all.size() + once.size() <= longest; ++k) all += once;
    return all;
}

// A block of any size, up to the size of the buffer.
std::size_t block_size(std::uint8_t how) { return std::size_t{how} * how * (how % 5 == 0 ? 100 : 1); }

class Reading {
  public:
    explicit Reading(int descriptor) : source_(descriptor), input_(source_, [] { return true; }) {}

    bool line() {
        Input::Next next{};
        if (!input_.next(next)) return false;
        const char behind = next.line.text[next.line.length];
        expect(next.newline ? behind == '\n' || behind == '\r' : behind == '\0',
               "a line end or a zero stands behind a line");
        expect(next.piece || next.line.length < Input::longest_line, "a long line comes in pieces");
        all_.append(next.line.text, next.line.length);
        if (next.newline) all_ += behind;
        return next.newline || next.line.length > 0;
    }
    bool block(std::size_t n) {
        const auto bytes = input_.block(n);
        all_.append(bytes.begin(), bytes.end());
        return !bytes.empty();
    }
    const std::string& all() const { return all_; }
    const Input& input() const { return input_; }

  private:
    ztdecode::tool::DescriptorSource source_;
    Input input_;
    std::string all_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < header) return 0;
    const std::string content = content_of(data, size);
    const ztdecode::fuzz::Descriptor in =
        data[0] == 0 ? ztdecode::fuzz::file_with(content) : ztdecode::fuzz::pieces_of(content, data[0]);
    Reading reading(in.number());
    bool more = true;
    for (std::size_t k = 0; more; ++k) {
        const std::uint8_t how = data[2 + k % asked];
        more = how == 0 ? reading.line() : reading.block(block_size(how));
    }
    expect(!reading.line(), "the end stays the end");
    expect(reading.all() == content, "what went in comes out");
    expect(reading.input().error().empty() && reading.input().bytes_read() == content.size(),
           "all of it is read");
    return 0;
}
