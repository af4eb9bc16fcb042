#include "tool/files.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>
#include <vector>

#include "tool/formats.hpp"
#include "tool/input/follow.hpp"
#include "tool/input/traces.hpp"
#include "tool/output/diagnostics.hpp"
#include "tool/output_file.hpp"
#include "tool/select/names.hpp"
#include "tool/select/selected.hpp"
#include "tool/subcommands.hpp"
#include "tool/trace.hpp"

namespace ztdecode::tool {

namespace {

int status_of(const TraceDecoder& decoder, const Options& options) {
    if (decoder.unreadable()) return status_failed;
    if (options.selection.any()) return decoder.matched() ? 0 : status_nothing;
    return decoder.refused_lines() ? status_refused : 0;
}

class Descriptor {
  public:
    explicit Descriptor(const std::string& file)
        : standard_input_(file == "-"),
          descriptor_(standard_input_ ? STDIN_FILENO : ::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (!standard_input_ && descriptor_ >= 0) ::close(descriptor_);
    }
    int get() const noexcept { return descriptor_; }

  private:
    bool standard_input_;
    int descriptor_;
};

// Of a word that is no file and may have been meant otherwise.
std::string nearest_subcommand(const std::string& word, int error) {
    if (error != ENOENT) return {};
    std::vector<std::string_view> names;
    for (const Subcommand& one : subcommands()) names.push_back(one.name);
    return did_you_mean(word, names);
}

int decode_opened(const std::string& file, const FileDecoding& decoding, Sessions* joined, Output& out,
                  Output& diagnostics) {
    const Options& options = decoding.options;
    const Descriptor descriptor(file);
    if (descriptor.get() < 0) {
        const int error = errno;
        complain_of_file(file, std::strerror(error) + nearest_subcommand(file, error), diagnostics);
        diagnostics.flush();
        return status_failed;
    }
    int status = first_status(options);
    const auto decode_trace = [&](const std::string& name, bool packed, Source& source) {
        const bool others_follow = packed || &file != &options.files.back();
        const auto own = joined == nullptr ? std::make_unique<Sessions>() : nullptr;
        Sessions& sessions = joined == nullptr ? *own : *joined;
        const auto decoder =
            std::make_unique<TraceDecoder>(name, decoding.make_report(name, out), options, decoding.display,
                                           others_follow, sessions, out, diagnostics);
        try {
            decoder->decode(source, packed || options.follow ? -1 : descriptor.get());
            status = both(options, status, status_of(*decoder, options));
        } catch (const FailedExpression& failed) {
            out.flush_and_release();
            complain_of_file(name + ":" + std::to_string(failed.line()), failed.what(), diagnostics);
            diagnostics.flush();
            status = status_failed;
        }
    };
    std::unique_ptr<Source> source;
    if (options.follow) {
        source = std::make_unique<FollowedSource>(file, descriptor.get(), !is_binary(options.layout),
                                                  STDOUT_FILENO);
    } else {
        source = std::make_unique<DescriptorSource>(descriptor.get());
    }
    if (source->may_wait()) out.flush();
    const Damage damage = each_trace(file, *source, !is_binary(options.layout), decode_trace);
    if (damage.why.empty()) return status;
    complain_of_file(damage.name, damage.why, diagnostics);
    diagnostics.flush();
    return status_failed;
}

}  // namespace

int first_status(const Options& options) { return options.selection.any() ? status_nothing : 0; }

int both(const Options& options, int a, int b) {
    if (!options.selection.any() || std::max(a, b) >= status_failed) return std::max(a, b);
    return std::min(a, b);
}

int decode_file(const std::string& file, const FileDecoding& decoding, Sessions* joined, Output& out,
                Output& diagnostics) {
    try {
        return decode_opened(file, decoding, joined, out, diagnostics);
    } catch (const std::bad_alloc&) {
        out.flush_and_release();
        complain_of_file(file, std::strerror(ENOMEM), diagnostics);
        diagnostics.flush();
        return status_failed;
    }
}

int decode_files(const FileDecoding& decoding, Output& out, Output& diagnostics) {
    const Options& options = decoding.options;
    const auto joined = options.join != Join::none ? std::make_unique<Sessions>() : nullptr;
    int status = first_status(options);
    for (const std::string& file : options.files) {
        if (out.error() != 0) break;
        status = both(options, status, decode_file(file, decoding, joined.get(), out, diagnostics));
    }
    if (joined != nullptr) {
        out.flush();
        Diagnostics of_last(options.files.back(), diagnostics, options.quiet);
        if (complain_of_cuts(*joined, of_last, false) > 0 && options.check)
            status = std::max(status, status_refused);
        diagnostics.flush();
    }
    return status;
}

int status_with_output(const Options& options, int status, int error) {
    if (error == 0 || error == EPIPE) return status;
    const char* const name = options.output.empty() ? "standard output" : options.output.c_str();
    std::fprintf(stderr, "ztdecode: %s: %s\n", name, std::strerror(error));
    return status_failed;
}

int analyse_files(const Options& options, const MakeReport& make_report,
                  const std::function<int(const Display&, Output&)>& answer) {
    if (const auto status = open_output(options)) return *status;
    const Display shown = display(options);
    Output out(STDOUT_FILENO, shown.escapes_output);
    Output diagnostics(STDERR_FILENO, shown.escapes_diagnostics);
    const MakeReport make = [&](const std::string& name, Output& to) {
        return only_selected(name, options, make_report(name, to), to);
    };
    const int decoded = decode_files({options, shown, make}, out, diagnostics);
    int status = answer(shown, out);
    if (decoded >= status_failed) status = status_failed;
    out.flush();
    return status_with_output(options, status, out.error());
}

}  // namespace ztdecode::tool
