#include "support/traces.hpp"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <stdexcept>

#include "decode/readers.hpp"
#include "support/process.hpp"

namespace ztdecode::testing {

namespace {

namespace fs = std::filesystem;

const fs::path source = ZTDECODE_SOURCE_DIR;

std::vector<fs::path> traces_in(std::initializer_list<const char*> folders) {
    std::vector<fs::path> found;
    for (const char* folder : folders) {
        for (const auto& entry : fs::directory_iterator(source / folder)) {
            const auto ending = entry.path().extension();
            if (ending == ".spzt" || ending == ".zt" || ending == ".lng2") found.push_back(entry.path());
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

void read_trace(const fs::path& file, std::vector<Captured>& messages) {
    const fs::path options = fs::path(file).replace_extension(".options");
    const bool towards_system =
        fs::exists(options) && contents(options).find("--direction to") != std::string::npos;
    const LineLayout layout = file.extension() == ".spzt" ? LineLayout::spzt
                              : file.extension() == ".zt" ? LineLayout::tagged
                                                          : LineLayout::line_lng2;
    LineReader reader(LineReader::Behind::zeros);
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        reader.begin({line.c_str(), line.size()}, layout, towards_system ? to_dhs : from_dhs);
        while (const Message* m = reader.next()) {
            const auto bytes = m->bytes();
            messages.push_back({{bytes.begin(), bytes.end()}, m->direction, line});
        }
    }
}

}  // namespace

std::vector<fs::path> golden_traces() { return traces_in({"tests/golden", "examples"}); }

fs::path beside_golden(const fs::path& trace, const char* ending) {
    return source / "tests/golden" / trace.filename().replace_extension(ending);
}

std::vector<Captured> golden_messages() {
    std::vector<Captured> messages;
    for (const fs::path& file : traces_in({"tests/golden"})) read_trace(file, messages);
    if (messages.empty()) throw std::runtime_error("no messages in the golden traces");
    return messages;
}

std::string nested_hub_line(std::size_t most) {
    std::string bytes = " 03 0a";
    for (std::size_t length = 2; length + 5 <= most; length += 5) {
        char head[32];
        std::snprintf(head, sizeof head, " 14 10 17 %02x %02x", static_cast<unsigned>(length & 0xFF),
                      static_cast<unsigned>(length >> 8));
        bytes.insert(0, head);
    }
    char head[32];
    std::snprintf(head, sizeof head, "000002S %02x %02x", static_cast<unsigned>(bytes.size() / 3 & 0xFF),
                  static_cast<unsigned>(bytes.size() / 3 >> 8));
    return head + bytes;
}

}  // namespace ztdecode::testing
