#pragma once

#include <atomic>
#include <cstdio>
#include <memory>

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

    // For the thread that sees to the order: all files before this one have gone out.
    void your_turn() noexcept { turn_.store(true, std::memory_order_release); }
    // When the file is done and has its turn: what is still kept goes out.
    void release();

  private:
    class Kept : public Output {
      public:
        Kept(FileOutputs& both, int descriptor) noexcept : Output(descriptor), both_(both) {}
        void release();

      private:
        void send(std::string_view words) override;

        struct Closed {
            void operator()(std::FILE* file) const noexcept { std::fclose(file); }
        };
        FileOutputs& both_;
        std::unique_ptr<std::FILE, Closed> file_;
        bool released_ = false;
    };

    std::atomic<bool> turn_{false};
    Kept out_;
    Kept diagnostics_;
};

}  // namespace ztdecode::tool
