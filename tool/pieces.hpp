#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "core/session.hpp"
#include "tool/input/lines.hpp"
#include "tool/options.hpp"
#include "tool/output/output.hpp"
#include "tool/report/report.hpp"
#include "tool/sessions.hpp"
#include "tool/trace.hpp"

namespace ztdecode::tool {

// How one trace is decoded by several processors at once.
struct Splitting {
    unsigned jobs = 1;
    // Decoded first: a short trace is done before threads would have begun.
    std::uint64_t lines_alone = 20000;
    // Bytes of lines that one processor takes at a time; and of those that are accepted, or decoded again, as
    // one.
    std::size_t piece = std::size_t{128} << 10;
    std::size_t batch = std::size_t{16} << 10;
};

// Whether what the options ask for can be had of pieces of a trace.
bool can_be_decoded_in_pieces(const Options& options, const Report& report);

// Decodes one trace in pieces, several at once, so that nobody can tell from what comes out.
//
// A message may say what an earlier one taught, so pieces are not independent. Each is decoded with the
// memory that was there when it was begun, in batches of lines, and takes note of what these looked at before
// they set it. At its turn a batch is accepted where the memory that truly arrives agrees in that: then its
// lines would have said the same. Otherwise the trace's own decoder decodes it, and the next one is looked
// at.
class Pieces {
  public:
    // A decoder of the same kind as the trace's own one.
    using MakeDecoder =
        std::function<std::unique_ptr<TraceDecoder>(Sessions& sessions, Output& out, Output& diagnostics)>;

    // `whole` decodes the trace, with this memory, to these outputs.
    Pieces(TraceDecoder& whole, Memory& memory, Output& out, Output& diagnostics, const Splitting& splitting,
           MakeDecoder make_decoder);
    Pieces(const Pieces&) = delete;
    Pieces& operator=(const Pieces&) = delete;
    ~Pieces();

    // Decodes what can be taken out of the input in pieces.
    void decode(Input& input);

  private:
    struct Batch;
    struct Piece;

    Piece& piece(std::uint64_t number) { return *pieces_[number % pieces_.size()]; }
    void work(Input& input) noexcept;
    bool take(Input& input, Piece& piece, std::unique_lock<std::mutex>& lock);
    void decode(Piece& piece) noexcept;
    void decode_batches(Piece& piece);
    void accept_ready(std::unique_lock<std::mutex>& lock);
    void accept(Piece& piece);
    bool accepts(const Batch& batch);
    void fit_size(const Piece& piece) noexcept;
    void stop(std::exception_ptr error) noexcept;

    TraceDecoder& whole_;
    Memory& memory_;
    Output& out_;
    Output& diagnostics_;
    Splitting splitting_;
    MakeDecoder make_decoder_;
    std::vector<std::unique_ptr<Piece>> pieces_;

    std::mutex mutex_;  // for all that follows
    std::condition_variable something_has_changed_;
    std::size_t size_;         // of the next piece
    std::uint64_t next_ = 0;   // piece to be taken
    std::uint64_t turn_ = 0;   // piece to be accepted
    std::uint64_t lines_ = 0;  // in front of the next piece
    Memory latest_;            // of the piece that was accepted last
    bool taking_ = false;      // somebody is
    bool accepting_ = false;   // likewise
    bool ended_ = false;       // nothing is left to be taken
    std::exception_ptr error_{};
};

}  // namespace ztdecode::tool
