#include "support/process.hpp"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace ztdecode::testing {

std::string contents(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) throw std::runtime_error("cannot read " + file);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

TemporaryFile::TemporaryFile(const std::string& contents) {
    std::string name = std::filesystem::temp_directory_path() / "ztdecode-XXXXXX";
    const int descriptor = ::mkstemp(name.data());
    if (descriptor < 0) throw std::runtime_error("cannot make a temporary file");
    ::close(descriptor);
    path_ = name;
    std::ofstream(path_, std::ios::binary) << contents;
}

TemporaryFile::~TemporaryFile() { ::unlink(path_.c_str()); }

Ended run(const std::vector<std::string>& command, const std::string& input) {
    const TemporaryFile in(input);
    const TemporaryFile out("");
    const TemporaryFile err("");
    std::vector<char*> arguments;
    for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));  // NOLINT
    arguments.push_back(nullptr);
    const pid_t child = ::fork();
    if (child < 0) throw std::runtime_error("cannot fork");
    if (child == 0) {
        ::dup2(::open(in.path().c_str(), O_RDONLY), STDIN_FILENO);
        ::dup2(::open(out.path().c_str(), O_WRONLY), STDOUT_FILENO);
        ::dup2(::open(err.path().c_str(), O_WRONLY), STDERR_FILENO);
        ::execv(arguments[0], arguments.data());
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), contents(out.path()),
            contents(err.path())};
}

}  // namespace ztdecode::testing
