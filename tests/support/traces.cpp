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

// A reader hands each message that it finds to this instead of the decoder.
Outcome keep(void* context, Session& /*session*/, Message& m, Text& /*out*/) {
    const auto bytes = m.bytes();
    static_cast<std::vector<Captured>*>(context)->push_back({{bytes.begin(), bytes.end()}, m.direction, {}});
    return Outcome::decoded;
}

void read_trace(const fs::path& file, std::vector<Captured>& messages) {
    const fs::path options = fs::path(file).replace_extension(".options");
    const bool towards_system =
        fs::exists(options) && contents(options).find("--direction to") != std::string::npos;
    const auto session = std::make_unique<Session>();
    LineReader reader(*session, LineReader::Behind::zeros, keep, &messages);
    std::ifstream lines(file);
    Text text;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t before = messages.size();
        const Line whole = {line.c_str(), line.size()};
        const std::uint32_t direction = towards_system ? to_dhs : from_dhs;
        if (file.extension() == ".spzt") {
            reader.line_spzt(whole, text);
        } else if (file.extension() == ".zt") {
            reader.line_tzt(whole, direction, text);
        } else {
            reader.line_lng2(whole, direction, text);
        }
        for (std::size_t i = before; i < messages.size(); ++i) messages[i].line = line;
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

bool sanitized() noexcept {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    return true;
#else
    return false;
#endif
#else
    return false;
#endif
}

}  // namespace ztdecode::testing
