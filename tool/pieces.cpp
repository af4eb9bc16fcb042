#include "tool/pieces.hpp"

#include <algorithm>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

#include "tool/output/held_outputs.hpp"

namespace ztdecode::tool {

namespace {

// Text of a piece that is held until its turn comes: pieces are cut so that it stays at about this.
constexpr std::size_t text_of_piece = std::size_t{1} << 20;
// Of all that may come before their turn.
constexpr std::size_t text_of_large_piece = 4 * text_of_piece;

std::size_t end_of_batch(const Lines& lines, std::size_t begin, std::size_t size) {
    const auto ends_line = [&](char c) { return c == '\n' || (lines.end_in_returns && c == '\r'); };
    const std::size_t from = begin + std::min(std::max<std::size_t>(size, 1), lines.size - begin) - 1;
    const char* const text = lines.bytes.data();
    return static_cast<std::size_t>(std::find_if(text + from, text + lines.size - 1, ends_line) - text) + 1;
}

// Whatever is assumed, what comes of it is looked at.
void assume(const Memory& memory, Memory& assumed) noexcept {
    try {
        assumed = memory;
    } catch (const std::bad_alloc&) {
    }
}

}  // namespace

bool can_be_decoded_in_pieces(const Options& options, const Report& report) {
    const bool times_stand_alone = options.time == TimeShown::none || options.time == TimeShown::absolute;
    return !is_binary(options.layout) && !options.follow && !options.debug && times_stand_alone &&
           options.terminal == Terminal::none && report.can_be_told_in_pieces();
}

// Lines of a piece that are accepted, or decoded again, as one.
struct Pieces::Batch {
    std::size_t end = 0;
    Memory before;
    Memory after;
    TraceDecoder::Found found;
    HeldOutputs::Place output_end;
};

// Far enough from the next one for two processors to write to them at once without waiting for each other.
struct alignas(128) Pieces::Piece {
    Piece(bool escapes_output, bool escapes_diagnostics) : outputs(escapes_output, escapes_diagnostics) {}

    Lines lines;
    std::uint64_t lines_before = 0;
    Memory assumed;
    std::vector<Batch> batches;  // `used` of them; their room is used again
    std::size_t used = 0;
    bool ready = false;
    HeldOutputs outputs;
    std::unique_ptr<Sessions> sessions;
    std::unique_ptr<TraceDecoder> decoder;
};

Pieces::Pieces(TraceDecoder& whole, Memory& memory, Output& out, Output& diagnostics,
               const Splitting& splitting, MakeDecoder make_decoder)
    : whole_(whole),
      memory_(memory),
      out_(out),
      diagnostics_(diagnostics),
      splitting_(splitting),
      make_decoder_(std::move(make_decoder)),
      size_(std::max<std::size_t>(splitting.piece / 4, 1)) {
    for (unsigned k = 0; k < splitting.jobs + 2; ++k)
        pieces_.push_back(std::make_unique<Piece>(out.escapes(), diagnostics.escapes()));
}

Pieces::~Pieces() = default;

void Pieces::decode(Input& input) {
    out_.flush();
    ended_ = false;
    lines_ = whole_.lines();
    latest_ = memory_;
    std::vector<std::thread> others;
    try {
        while (others.size() + 1 < splitting_.jobs) others.emplace_back([&]() noexcept { work(input); });
    } catch (const std::system_error&) {
    } catch (const std::bad_alloc&) {
    }
    work(input);
    for (std::thread& other : others) other.join();
    if (error_ != nullptr) std::rethrow_exception(std::exchange(error_, nullptr));
}

void Pieces::work(Input& input) noexcept {
    std::unique_lock lock(mutex_);
    for (;;) {
        something_has_changed_.wait(
            lock, [this] { return ended_ || (!taking_ && next_ < turn_ + pieces_.size()); });
        if (ended_) return;
        Piece& mine = piece(next_);
        if (!take(input, mine, lock)) continue;
        lock.unlock();
        decode(mine);
        lock.lock();
        mine.ready = true;
        accept_ready(lock);
    }
}

// Reading may take a while, and unpacking does; others decode meanwhile.
bool Pieces::take(Input& input, Piece& piece, std::unique_lock<std::mutex>& lock) {
    taking_ = true;
    const std::size_t size = size_;
    lock.unlock();
    bool taken = false;
    std::exception_ptr error;
    try {
        taken = input.take(size, piece.lines);
    } catch (const std::bad_alloc&) {  // one by one they need less
    } catch (...) {
        error = std::current_exception();
    }
    lock.lock();
    taking_ = false;
    if (!taken) stop(error);
    something_has_changed_.notify_all();
    if (ended_) return false;
    piece.ready = false;
    piece.used = 0;
    piece.lines_before = lines_;
    lines_ += piece.lines.count;
    ++next_;
    assume(latest_, piece.assumed);
    return true;
}

// What is left undone here, for want of memory or because an expression fails, is done at its turn.
void Pieces::decode(Piece& piece) noexcept {
    piece.outputs.clear();
    try {
        decode_batches(piece);
    } catch (...) {
        piece.decoder.reset();
        piece.sessions.reset();
    }
}

void Pieces::decode_batches(Piece& piece) {
    if (piece.decoder == nullptr) {
        piece.sessions = std::make_unique<Sessions>();
        piece.decoder = make_decoder_(*piece.sessions, piece.outputs.out(), piece.outputs.diagnostics());
    }
    Memory& memory = piece.sessions->main();
    memory = piece.assumed;
    std::uint64_t lines_before = piece.lines_before;
    for (std::size_t begin = 0; begin < piece.lines.size && piece.outputs.size() < text_of_large_piece;) {
        if (piece.used == piece.batches.size()) piece.batches.emplace_back();
        Batch& batch = piece.batches[piece.used];
        batch.end = end_of_batch(piece.lines, begin, splitting_.batch);
        memory.forget_uses();
        batch.before = memory;
        Input lines(piece.lines, begin, batch.end);
        piece.decoder->decode_piece(lines, lines_before);
        // It may have seen enough where the trace has not: the rest is decoded at its turn.
        const bool whole = piece.decoder->goes_on();
        batch.found = piece.decoder->take_found();
        if (!whole) break;
        batch.output_end = piece.outputs.place();
        batch.after = memory;
        lines_before = batch.found.lines;
        begin = batch.end;
        ++piece.used;
    }
}

void Pieces::accept_ready(std::unique_lock<std::mutex>& lock) {
    if (accepting_) return;
    accepting_ = true;
    while (error_ == nullptr && turn_ < next_ && piece(turn_).ready) {
        Piece& next = piece(turn_);
        lock.unlock();
        std::exception_ptr error;
        try {
            accept(next);
        } catch (...) {
            error = std::current_exception();
        }
        lock.lock();
        next.ready = false;
        if (error != nullptr || !whole_.goes_on()) stop(error);
        assume(memory_, latest_);
        fit_size(next);
        ++turn_;
        something_has_changed_.notify_all();
    }
    accepting_ = false;
}

void Pieces::accept(Piece& piece) {
    HeldOutputs::Place passed;
    HeldOutputs::Place accepted;
    std::size_t begin = 0;
    const auto decode_up_to = [&](std::size_t end) {
        piece.outputs.pass_on(passed, accepted, out_, diagnostics_);
        Input lines(piece.lines, begin, end);
        whole_.decode_next(lines);
    };
    for (std::size_t k = 0; k < piece.used && whole_.goes_on(); ++k) {
        const Batch& batch = piece.batches[k];
        if (accepts(batch)) {
            memory_.learn(batch.after);
        } else {
            decode_up_to(batch.end);
            passed = batch.output_end;
        }
        accepted = batch.output_end;
        begin = batch.end;
    }
    decode_up_to(piece.lines.size);
    out_.flush();
    whole_.show_progress(piece.lines.bytes_read);
}

bool Pieces::accepts(const Batch& batch) {
    return memory_.would_say_the_same(batch.before, batch.after) && whole_.add(batch.found);
}

void Pieces::fit_size(const Piece& piece) noexcept {
    const std::size_t text = std::max<std::size_t>(piece.outputs.size(), 1);
    const auto fits =
        static_cast<std::size_t>(static_cast<double>(piece.lines.size) * static_cast<double>(text_of_piece) /
                                 static_cast<double>(text));
    size_ = std::clamp(fits, std::max<std::size_t>(splitting_.piece / 16, 1), splitting_.piece);
}

// Nobody sees what is left.
void Pieces::stop(std::exception_ptr error) noexcept {
    ended_ = true;
    if (error != nullptr && error_ == nullptr) error_ = std::move(error);
    something_has_changed_.notify_all();
}

}  // namespace ztdecode::tool
