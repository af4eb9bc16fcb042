#include "tool/select/database_file.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "tool/select/schema.hpp"

namespace ztdecode::tool {

namespace {

namespace fs = std::filesystem;

constexpr const char* not_ours = "no database of ztdecode; it stays as it is";

[[noreturn]] void fail(const std::string& doing) {
    const int error = errno;
    throw std::runtime_error(doing + std::strerror(error));
}

std::int64_t pragma(const sqlite::Connection& database, const char* name) {
    sqlite::Statement asked(database, std::string("pragma ") + name);
    return asked.step() ? asked.number(0) : 0;
}

// What SQLite has put beside a file that somebody is changing, or was when he was stopped.
void expect_nobody_at_work(const std::string& file) {
    for (const char* ending : {"-journal", "-wal"}) {
        struct stat status {};
        if (::stat((file + ending).c_str(), &status) == 0 && status.st_size > 0) {
            throw std::runtime_error(
                std::string("another program is at work on it, or was stopped: there is ") + ending +
                " beside it");
        }
    }
}

// An unfinished file goes when the program is ended. Signals are taken by handlers, which know only this.
char unfinished[4096];

void remove_unfinished(int signal) {
    if (unfinished[0] != '\0') ::unlink(unfinished);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void remove_when_ended(const std::string& path) {
    if (path.size() >= sizeof unfinished) return;
    std::memcpy(unfinished, path.c_str(), path.size() + 1);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        // Who is told to ignore a signal goes on to.
        if (std::signal(signal, remove_unfinished) == SIG_IGN) std::signal(signal, SIG_IGN);
    }
}

}  // namespace

std::string path_of_database(const std::string& file) {
    std::error_code error;
    const fs::path whole = fs::weakly_canonical(fs::absolute(file), error);
    return error ? fs::absolute(file).string() : whole.string();
}

bool holds_database(const std::string& file) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0) {
        if (errno == ENOENT) return false;
        fail("");
    }
    if (!S_ISREG(status.st_mode)) throw std::runtime_error("no regular file");
    if (status.st_size == 0) return false;
    expect_nobody_at_work(file);
    const sqlite::Connection database(path_of_database(file), SQLITE_OPEN_READONLY);
    std::int64_t version = 0;
    try {
        if (pragma(database, "application_id") != database_identity) throw std::runtime_error(not_ours);
        version = pragma(database, "user_version");
    } catch (const sqlite::Error& error) {
        if (error.code() == SQLITE_NOTADB) throw std::runtime_error(not_ours);
        throw;
    }
    if (version != database_version) {
        throw std::runtime_error("a database of version " + std::to_string(version) +
                                 "; this ztdecode reads version " + std::to_string(database_version));
    }
    return true;
}

NewDatabaseFile::NewDatabaseFile(const std::string& file, bool append)
    : file_(path_of_database(file)), path_(file_ + ".ztdecode-new") {
    begun_ = holds_database(file_) && append;
    lock();
    try {
        remove_when_ended(path_);
        if (::ftruncate(descriptor_, 0) != 0) fail(path_ + ": ");
        if (begun_) copy_old();
    } catch (...) {
        ::unlink(path_.c_str());
        ::close(descriptor_);
        throw;
    }
}

// One run at a time writes it. What a killed one left is begun anew.
void NewDatabaseFile::lock() {
    constexpr mode_t readable_and_writable = 0666;
    for (;;) {
        descriptor_ = ::open(path_.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, readable_and_writable);
        if (descriptor_ < 0) fail(path_ + ": ");
        if (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
            ::close(descriptor_);
            throw std::runtime_error("another ztdecode is writing it");
        }
        // Whether it is still the one of that name.
        struct stat here {};
        struct stat there {};
        if (::fstat(descriptor_, &here) == 0 && ::stat(path_.c_str(), &there) == 0 &&
            here.st_ino == there.st_ino) {
            return;
        }
        ::close(descriptor_);
    }
}

// As SQLite sees it at this moment, whoever else has it open.
void NewDatabaseFile::copy_old() {
    const sqlite::Connection old(file_, SQLITE_OPEN_READONLY);
    const sqlite::Connection copy(path_, SQLITE_OPEN_READWRITE);
    sqlite3_backup* const backup = sqlite3_backup_init(copy.get(), "main", old.get(), "main");
    if (backup == nullptr) copy.fail();
    sqlite3_backup_step(backup, -1);
    if (sqlite3_backup_finish(backup) != SQLITE_OK) copy.fail();
}

NewDatabaseFile::~NewDatabaseFile() {
    if (descriptor_ < 0) return;
    ::unlink(path_.c_str());
    unfinished[0] = '\0';
    ::close(descriptor_);
}

void NewDatabaseFile::take_place() {
    if (::fsync(descriptor_) != 0) fail(path_ + ": ");
    // The new file may be read by whom the old one could be read by.
    struct stat old {};
    if (::stat(file_.c_str(), &old) == 0) ::fchmod(descriptor_, old.st_mode & 07777);
    if (::rename(path_.c_str(), file_.c_str()) != 0) fail("");
    unfinished[0] = '\0';
    ::close(descriptor_);
    descriptor_ = -1;
    const int folder = ::open(fs::path(file_).parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) return;
    ::fsync(folder);
    ::close(folder);
}

}  // namespace ztdecode::tool
