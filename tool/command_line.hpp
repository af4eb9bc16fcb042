#pragma once

#include <CLI/CLI.hpp>
#include <charconv>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "tool/options.hpp"

namespace ztdecode::tool {

template <class T>
struct Named {
    std::string_view name;
    T value;
};
template <class T>
using Names = std::span<const Named<T>>;

// What an option is called where something is wrong with it: "-j,--jobs" is --jobs.
inline std::string long_name(const std::string& option) { return option.substr(option.find(',') + 1); }

template <class T>
std::string listed(Names<T> names) {
    std::string list;
    for (const auto& [name, value] : names) list.append(list.empty() ? "" : ", ").append(name);
    return list;
}

// An option whose value is one of these names. Given twice, the last one counts.
template <class T>
CLI::Option* add_choice(CLI::App& app, const std::string& option, T& chosen,
                        std::type_identity_t<Names<T>> names, const std::string& help) {
    auto choose = [&chosen, names, option = long_name(option)](const std::string& word) {
        for (const auto& [name, value] : names) {
            if (name != word) continue;
            chosen = value;
            return;
        }
        throw CLI::ValidationError(option, word + " is none of " + listed<T>(names));
    };
    return app.add_option_function<std::string>(option, choose, help)->take_last();
}

// An option whose value is a number.
template <class T>
CLI::Option* add_number(CLI::App& app, const std::string& option, T& chosen, T least, T most,
                        const std::string& help) {
    auto choose = [&chosen, option = long_name(option), least, most](const std::string& word) {
        const char* const end = word.data() + word.size();
        T n = 0;
        const auto read = std::from_chars(word.data(), end, n);
        if (read.ec != std::errc() || read.ptr != end || n < least || n > most) {
            throw CLI::ValidationError(
                option, word + " is no number from " + std::to_string(least) + " to " + std::to_string(most));
        }
        chosen = n;
    };
    return app.add_option_function<std::string>(option, choose, help)->take_last()->type_name("N");
}

// An option that may be given several times.
CLI::Option* add_list(CLI::App& app, const std::string& option, std::vector<std::string>& values,
                      const std::string& help);

// An option without a value.
CLI::Option* add_switch(CLI::App& app, const std::string& option, bool& on, const std::string& help);

// An option whose value is a file's name.
CLI::Option* add_file(CLI::App& app, const std::string& option, std::string& file, const std::string& help);

// The arguments of the command or of one of its subcommands: their own options, and those that they share.
class CommandLine {
  public:
    // `options` are filled in, and stay as long as this. `examples` stand at the end of the help.
    CommandLine(const std::string& command, const std::string& purpose, const std::string& examples,
                Options& options);

    CLI::App& app() noexcept { return app_; }

    void add_files();
    void add_input();
    void add_selection();
    void add_context();
    void add_output();
    void add_terminal();
    // Help and version, and what is left to say of the work. Comes last.
    void add_help();

    // The exit status where there is nothing more to do, which has been said then.
    std::optional<int> parse(int argc, const char* const* argv);
    // Standard input, where no file is named.
    void default_files();

    // Says what is wrong with the arguments; gives the exit status.
    int refuse(std::string_view why) const;

  private:
    std::optional<int> settle();
    std::string no_such_option(const std::string& word) const;
    std::string option_without_value(int argc, const char* const* argv) const;

    CLI::App app_;
    Options& options_;
    std::string more_;  // where layouts and columns are explained
    std::string join_;
};

}  // namespace ztdecode::tool
