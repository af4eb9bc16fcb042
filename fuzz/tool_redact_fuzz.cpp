// `ztdecode redact` over any file, in any layout. It ends; what comes out is as long, line by line, and
// with the same key the same again.
//
// Byte 0: layout and direction. Byte 1: kinds that stay. Then the file.

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/descriptors.hpp"
#include "tool/redaction.hpp"

namespace {

using ztdecode::fuzz::expect;
using ztdecode::tool::Layout;
using ztdecode::tool::Options;

constexpr std::size_t header = 2;
constexpr std::size_t longest = 3000;
constexpr std::size_t room = std::size_t{1} << 20;
constexpr std::array<std::string_view, 8> kinds = {"number", "person",  "unknown", "address",
                                                   "line",   "comment", "refused", "prefix"};
constexpr std::array<std::uint8_t, 16> key = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

std::string redacted(const Options& options, const ztdecode::tool::Kept& kept, std::string_view file) {
    const ztdecode::fuzz::Sink output(room);
    const ztdecode::fuzz::Sink complaints(room);
    ztdecode::tool::Output out(output.descriptor(), false);
    ztdecode::tool::Output diagnostics(complaints.descriptor(), false);
    const ztdecode::tool::StandIns stand_ins(key);
    ztdecode::tool::Tally tally;
    ztdecode::tool::BothSessions sessions;
    const ztdecode::tool::Redacting redacting{options, kept, stand_ins, tally};
    ztdecode::tool::Redaction redaction("trace", redacting, sessions, out, diagnostics);
    const ztdecode::fuzz::Descriptor input = ztdecode::fuzz::file_with(file);
    ztdecode::tool::DescriptorSource source(input.number());
    redaction.redact(source, nullptr);
    expect(!redaction.unreadable(), "the input can be read");
    return output.content();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < header) return 0;
    Options options;
    options.layout = static_cast<Layout>(data[0] % 8);
    options.direction = data[0] >> 3 & 1;
    ztdecode::tool::Kept kept;
    std::string why;
    for (std::size_t k = 0; k < kinds.size(); ++k) {
        if ((data[1] >> k & 1) != 0) expect(kept.keep(kinds[k], why), "there is such a kind");
    }
    const auto* const words = reinterpret_cast<const char*>(data + header);
    const std::string_view file(words, std::min(size - header, longest));
    const std::string output = redacted(options, kept, file);
    expect(output.size() == file.size(), "what comes out is as long");
    for (std::size_t k = 0; k < file.size() && !ztdecode::tool::is_binary(options.layout); ++k)
        expect((output[k] == '\n') == (file[k] == '\n'), "line by line");
    expect(redacted(options, kept, file) == output, "the same key gives the same");
    return 0;
}
