#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

#include "tool/command_line.hpp"
#include "tool/display.hpp"
#include "tool/files.hpp"
#include "tool/input/traces.hpp"
#include "tool/output/diagnostics.hpp"
#include "tool/output_file.hpp"
#include "tool/redaction.hpp"
#include "tool/subcommands.hpp"

namespace ztdecode::tool {

namespace {

constexpr auto purpose =
    "The same trace, line for line, with stand-ins for what tells about somebody:\n"
    "numbers, names, what displays show, addresses, serial numbers, keys. It still\n"
    "decodes, and says everything else as before. What cannot be judged is blanked.\n"
    "How much of what was replaced is said on standard error.\n";

constexpr auto footer = R"(Kinds for --keep:
  number                 dialled and calling numbers
  person                 names, texts of displays
  address                addresses of the network
  hardware_address       and serial numbers
  unknown                messages that no table knows, but for their codes
  left_over              words behind a message that its length does not count
  refused                what is refused of a trace line
  line                   lines that are no trace line
  comment                lines that begin with #
  prefix                 what logs write in front of lines, but for the time
Passwords and keys are never kept, nor bytes that no text speaks of: they may
be such.

Examples:
  ztdecode redact trace.spzt -o for-support.spzt
  ztdecode redact --key case-4711.key monday.spzt -o monday-redacted.spzt
  ztdecode redact --keep comment,prefix --report what.txt trace.log >out.log

Exit status: 0, 1 when lines were refused or blanked whole, or a message says
something else besides, 2 for bad usage, a file that cannot be read or an
output that cannot be written. "man ztdecode-redact" says more.
)";

constexpr std::size_t shortest_key = 16;
constexpr std::size_t longest_key = std::size_t{1} << 20;

struct RedactOptions {
    Kept kept;
    std::string key;
    std::string report;
};

class Descriptor {
  public:
    explicit Descriptor(int descriptor) noexcept : descriptor_(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (descriptor_ > STDERR_FILENO) ::close(descriptor_);
    }
    int get() const noexcept { return descriptor_; }

  private:
    int descriptor_;
};

int open_to_read(const std::string& file) {
    return file == "-" ? STDIN_FILENO : ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
}

// Empty, or why there is no key.
std::string read_key(const std::string& file, std::vector<std::uint8_t>& key) {
    const Descriptor descriptor(open_to_read(file));
    if (descriptor.get() < 0) return std::strerror(errno);
    std::array<std::uint8_t, 4096> block;
    for (;;) {
        const ssize_t n = ::read(descriptor.get(), block.data(), block.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return std::strerror(errno);
        if (n == 0) break;
        key.insert(key.end(), block.begin(), block.begin() + n);
        if (key.size() > longest_key) return "no key is longer than 1 MiB";
    }
    if (key.empty()) return "the key is empty";
    if (key.size() >= shortest_key) return {};
    return "the key has " + std::to_string(key.size()) + " bytes, 16 are the least";
}

std::string random_key(std::vector<std::uint8_t>& key) {
    key.resize(32);
    const ssize_t n = ::getrandom(key.data(), key.size(), 0);
    return n == static_cast<ssize_t>(key.size()) ? std::string()
                                                 : "no random key: " + std::string(std::strerror(errno));
}

bool same_file(const struct stat& a, const struct stat& b) {
    return S_ISREG(a.st_mode) && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Of the report: a file that is neither read nor the output. -1 with the reason.
int open_report(const RedactOptions& own, const Options& options, std::string& why) {
    constexpr mode_t all_may = 0666;
    const int report = ::open(own.report.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, all_may);
    struct stat found {};
    if (report < 0 || ::fstat(report, &found) != 0) {
        why = std::strerror(errno);
        return report;
    }
    std::vector<std::string> read = options.files;
    read.insert(read.end(), options.also_read.begin(), options.also_read.end());
    for (const std::string& file : read) {
        struct stat input {};
        if (::stat(file.c_str(), &input) == 0 && same_file(found, input))
            why = "is read, and cannot be written at the same time";
    }
    struct stat output {};
    if (::fstat(STDOUT_FILENO, &output) == 0 && same_file(found, output))
        why = "is the output, and cannot hold the report as well";
    if (why.empty() && S_ISREG(found.st_mode) && ::ftruncate(report, 0) != 0) why = std::strerror(errno);
    return report;
}

// All files, one behind the other.
class Run {
  public:
    Run(const Redacting& redacting, Output& out, Output& diagnostics)
        : redacting_(redacting), options_(redacting.options), out_(out), diagnostics_(diagnostics) {
        if (options_.join != Join::none) joined_ = std::make_unique<BothSessions>();
    }

    int all() {
        for (const std::string& file : options_.files) {
            if (out_.error() != 0) break;
            status_ = std::max(status_, one(file));
        }
        return status_;
    }

  private:
    int one(const std::string& file) {
        const Descriptor descriptor(open_to_read(file));
        if (descriptor.get() < 0) return complain(file, std::strerror(errno));
        DescriptorSource source(descriptor.get());
        int status = 0;
        const Damage damage = each_trace(file, source, !is_binary(options_.layout),
                                         [&](const std::string& name, bool /*packed*/, Source& trace) {
                                             status = std::max(status, redact(name, trace));
                                         });
        return damage.why.empty() ? status : complain(damage.name, damage.why);
    }

    // What comes out is one text, in one encoding.
    int redact(const std::string& name, Source& trace) {
        const auto* const utf16 = dynamic_cast<const Utf16Source*>(&trace);
        const Encoding encoding = utf16 == nullptr ? Encoding::bytes : utf16->encoding();
        if (encoding_ && *encoding_ != encoding)
            return complain(name, "is encoded otherwise than the trace before it: redact it by itself");
        encoding_ = encoding;
        auto own = joined_ == nullptr ? std::make_unique<BothSessions>() : nullptr;
        BothSessions& sessions = own != nullptr ? *own : *joined_;
        const auto redaction = std::make_unique<Redaction>(name, redacting_, sessions, out_, diagnostics_);
        redaction->redact(trace, utf16);
        if (redaction->unreadable()) return status_failed;
        return redaction->refused_lines() ? status_refused : 0;
    }

    int complain(const std::string& file, std::string_view why) {
        complain_of_file(file, why, diagnostics_);
        diagnostics_.flush();
        return status_failed;
    }

    const Redacting& redacting_;
    const Options& options_;
    Output& out_;
    Output& diagnostics_;
    std::unique_ptr<BothSessions> joined_;
    std::optional<Encoding> encoding_;
    int status_ = 0;
};

void add_redaction(CLI::App& app, RedactOptions& own) {
    add_file(app, "--key", own.key,
             "a secret of 16 bytes or more: with the same\n"
             "key a value has the same stand-in in every\n"
             "run; without one in this run alone")
        ->group("Redaction");
    app.add_option_function<std::vector<std::string>>(
           "--keep",
           [&own](const std::vector<std::string>& kinds) {
               for (const std::string& kind : kinds) {
                   std::string why;
                   if (!own.kept.keep(kind, why)) throw CLI::ValidationError("--keep", why);
               }
           },
           "what stays as it is; see below")
        ->allow_extra_args(false)
        ->delimiter(',')
        ->type_name("KINDS")
        ->group("Redaction");
    add_file(app, "--report", own.report,
             "say what was replaced in this file, not on\n"
             "standard error")
        ->group("Redaction");
}

int complain_of(const std::string& file, std::string_view why, Output& diagnostics) {
    complain_of_file(file, why, diagnostics);
    diagnostics.flush();
    return status_failed;
}

int redact_files(const Options& options, const RedactOptions& own) {
    const Display shown = display(options);
    Output diagnostics(STDERR_FILENO, shown.escapes_diagnostics);
    std::vector<std::uint8_t> key;
    const std::string no_key = own.key.empty() ? random_key(key) : read_key(own.key, key);
    if (!no_key.empty()) return complain_of(own.key.empty() ? "--key" : own.key, no_key, diagnostics);
    if (const auto status = open_output(options)) return *status;
    std::string no_report;
    const Descriptor report(own.report.empty() ? STDERR_FILENO : open_report(own, options, no_report));
    if (!no_report.empty()) return complain_of(own.report, no_report, diagnostics);

    const StandIns stand_ins(key);
    Tally tally;
    Output out(STDOUT_FILENO, shown.escapes_output);
    int status = Run({options, own.kept, stand_ins, tally}, out, diagnostics).all();
    out.flush();
    if (status == 0 && !tally.whole()) status = status_refused;
    if (own.report.empty()) {
        if (!options.quiet) tally.write(diagnostics.text);
        diagnostics.flush();
    } else {
        Output to_report(report.get(), false);
        tally.write(to_report.text);
        to_report.flush();
        if (to_report.error() != 0)
            status = complain_of(own.report, std::strerror(to_report.error()), diagnostics);
    }
    return status_with_output(options, status, out.error());
}

}  // namespace

int run_redact(int argc, const char* const* argv) {
    Options options;
    RedactOptions own;
    CommandLine line("ztdecode redact", purpose, footer, options);
    line.add_files();
    add_redaction(line.app(), own);
    line.add_input();
    line.add_output();
    line.add_help();
    if (const auto status = line.parse(argc, argv)) return *status;
    line.default_files();
    options.also_read.push_back(own.key);
    for (const std::string& pattern : line.app().get_option("--prefix")->results())
        own.kept.keep_words_of(pattern);
    return redact_files(options, own);
}

}  // namespace ztdecode::tool
