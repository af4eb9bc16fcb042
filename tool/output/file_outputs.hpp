#pragma once

#include <cstdio>
#include <memory>
#include <mutex>

#include "tool/output/output.hpp"

namespace ztdecode::tool {

// Standard output and standard error for one of several files that are decoded at once: what the file gives
// before its turn is kept, a little of it in memory and more in temporary files without a name; from then on
// it goes straight out.
class FileOutputs {
  public:
    FileOutputs(bool escapes_output, bool escapes_diagnostics);

    // For the thread that decodes the file.
    Output& out() noexcept { return out_; }
    Output& diagnostics() noexcept { return diagnostics_; }
    // When the file is done: keeps no room that the files behind it could use.
    void close();

    // For the thread that sees to the order: all files before this one have gone out. What is kept goes out
    // now.
    void your_turn();
    // Nothing of this file goes out any more, or is kept.
    void give_up(int error);
    // When the file is done and has had its turn: 0, or the errno of the first write that failed.
    int error() const noexcept { return out_.output_error(); }
    // The same of a temporary file, which could not be made, written or read.
    int temporary_error() const noexcept {
        return out_.temporary_error() != 0 ? out_.temporary_error() : diagnostics_.temporary_error();
    }

  private:
    struct Closed {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };
    using File = std::unique_ptr<std::FILE, Closed>;

    class Kept : public Output {
      public:
        Kept(FileOutputs& both, int descriptor, bool escapes) noexcept
            : Output(descriptor, escapes), both_(both) {}
        // What is kept goes out; the file itself is for the caller to close.
        File release();
        void give_up(int error) noexcept { output_error_ = error; }
        int output_error() const noexcept { return output_error_; }
        int temporary_error() const noexcept { return temporary_error_; }

      private:
        void send(std::string_view words) override;
        void write_out(std::string_view words);
        void keep(std::string_view words);
        void write_file(std::string_view words);
        void copy_file();

        FileOutputs& both_;
        Text memory_;  // the whole of what is kept, until it becomes too much
        File file_;
        int output_error_ = 0;
        int temporary_error_ = 0;
    };

    std::mutex mutex_;  // for the turn and for what is kept
    bool turn_ = false;
    Kept out_;
    Kept diagnostics_;
};

}  // namespace ztdecode::tool
