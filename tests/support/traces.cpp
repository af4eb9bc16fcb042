#include "support/traces.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "decode/readers.hpp"
#include "support/process.hpp"

namespace ztdecode::testing {

namespace {

namespace fs = std::filesystem;

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

std::vector<Captured> golden_messages() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(fs::path(ZTDECODE_SOURCE_DIR) / "tests/golden")) {
        const auto extension = entry.path().extension();
        if (extension == ".spzt" || extension == ".zt" || extension == ".lng2") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::vector<Captured> messages;
    for (const fs::path& file : files) read_trace(file, messages);
    if (messages.empty()) throw std::runtime_error("no messages in the golden traces");
    return messages;
}

}  // namespace ztdecode::testing
