#pragma once

#include <string>

#include "tool/select/sqlite.hpp"

namespace ztdecode::tool {

// A file that is a database of this program and version, or nothing yet (empty or not there): whether there
// is something. Throws what it is instead.
bool holds_database(const std::string& file);

// An absolute path, so that no name means anything else to SQLite.
std::string path_of_database(const std::string& file);

// A database file in the making. It is written beside the file that it is to become and takes its place when
// it is whole: there is the old file or the new one, whatever happens.
class NewDatabaseFile {
  public:
    // `append`: it begins with what the file holds. A file that is something else is left alone. Throws what
    // is wrong.
    NewDatabaseFile(const std::string& file, bool append);
    NewDatabaseFile(const NewDatabaseFile&) = delete;
    NewDatabaseFile& operator=(const NewDatabaseFile&) = delete;
    ~NewDatabaseFile();

    // Where it is written, and whether there are tables in it already.
    const std::string& path() const noexcept { return path_; }
    bool begun() const noexcept { return begun_; }
    // Nobody has it open any more.
    void take_place();

  private:
    void lock();
    void copy_old();

    std::string file_;
    std::string path_;
    int descriptor_ = -1;
    bool begun_ = false;
};

}  // namespace ztdecode::tool
