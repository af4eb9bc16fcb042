#pragma once

#include <cstdio>
#include <memory>
#include <mutex>

#include "tool/streams.hpp"

namespace ztdecode::tool {

// Standard output and standard error for one of several files that are decoded at once: what the file gives
// before its turn is kept in temporary files without a name, from then on it goes straight out.
class FileOutputs {
  public:
    FileOutputs();

    // For the thread that decodes the file.
    Output& out() noexcept { return out_; }
    Output& diagnostics() noexcept { return diagnostics_; }
    // When the file is done: keeps no room that the files behind it could use.
    void close();

    // For the thread that sees to the order: all files before this one have gone out. What is kept goes out
    // now.
    void your_turn();
    // When the file is done and has had its turn: 0, or the errno of the first write that failed.
    int error() const noexcept { return out_.error_of_both(); }

  private:
    struct Closed {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };
    using File = std::unique_ptr<std::FILE, Closed>;

    class Kept : public Output {
      public:
        Kept(FileOutputs& both, int descriptor) noexcept : Output(descriptor), both_(both) {}
        // What is kept goes out; the file itself is for the caller to close.
        File release();
        int error_of_both() const noexcept { return error() != 0 ? error() : release_error_; }

      private:
        void send(std::string_view words) override;
        void keep(std::string_view words);

        FileOutputs& both_;
        File file_;
        int release_error_ = 0;
    };

    std::mutex mutex_;  // for the turn and for what is kept
    bool turn_ = false;
    Kept out_;
    Kept diagnostics_;
};

}  // namespace ztdecode::tool
