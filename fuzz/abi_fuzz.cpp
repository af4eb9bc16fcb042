// The exported functions, in any order and with any arguments that the header allows.
//
// The input is a program: a byte that says which function, then its arguments, which take as many bytes as
// they need. What one call leaves behind is met by the next one. Every call ends within its bounds, and what
// it gives is a C string that belongs to whom the header says. A call that ends the process is like one that
// returns, since the functions may be called from exit handlers.

#include <cxxabi.h>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <exception>
#include <memory>
#include <string_view>
#include <vector>

#include "abi/process.hpp"
#include "decode/readers.hpp"
#include "fuzz/fuzzing.hpp"
#include "object/segments.hpp"
#include "ztdecode.h"

namespace {

using ztdecode::fuzz::Cost;

// ---- The standard streams: counted, and shown to nobody.

std::size_t written_output = 0;
std::size_t written_complaints = 0;

FILE* counted(std::size_t& count) {
    const cookie_io_functions_t functions = {nullptr,
                                             [](void* cookie, const char*, std::size_t size) {
                                                 *static_cast<std::size_t*>(cookie) += size;
                                                 return static_cast<ssize_t>(size);
                                             },
                                             nullptr, nullptr};
    FILE* stream = fopencookie(&count, "w", functions);
    std::setvbuf(stream, nullptr, _IONBF, 0);
    return stream;
}

class CountedStreams {
  public:
    CountedStreams() : output_(stdout), complaints_(stderr) {
        static FILE* const output = counted(written_output);
        static FILE* const complaints = counted(written_complaints);
        stdout = output;
        stderr = complaints;
    }
    CountedStreams(const CountedStreams&) = delete;
    CountedStreams& operator=(const CountedStreams&) = delete;
    ~CountedStreams() {
        stdout = output_;
        stderr = complaints_;
    }

  private:
    FILE* output_;
    FILE* complaints_;
};

// ---- exit: back to where the call was made. Nothing on the stack between owns anything.

std::jmp_buf* way_back = nullptr;
int exit_status = 0;

}  // namespace

extern "C" [[noreturn]] void __real_exit(int status);
extern "C" [[noreturn]] void __wrap_exit(int status);
extern "C" void __wrap_exit(int status) {
    if (way_back == nullptr) __real_exit(status);
    if (std::current_exception()) abi::__cxa_end_catch();  // the handler is left
    exit_status = status;
    std::longjmp(*way_back, 1);
}

namespace {

// ---- The program.

class Program {
  public:
    Program(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    bool ended() const { return size_ == 0; }
    std::uint8_t byte() {
        if (size_ == 0) return 0;
        --size_;
        ++taken_;
        return *data_++;
    }
    unsigned one_of(std::size_t choices) { return byte() % static_cast<unsigned>(choices); }
    std::uint32_t number() {
        const std::uint32_t low_byte = byte();
        return low_byte + 256U * byte();
    }

    // Bytes in a block of just their size, which lives until the next call; now and then none at all.
    std::vector<std::uint8_t>& bytes() {
        const std::uint8_t first = byte();
        std::size_t length = first < 250 ? first : 250 + 23 * std::size_t{byte()};
        length = std::min(length, size_);
        blocks_.emplace_back(data_, data_ + length);
        data_ += length;
        size_ -= length;
        taken_ += length;
        return blocks_.back();
    }
    // The same as a C string, or a null one.
    char* text() {
        std::vector<std::uint8_t>& block = bytes();
        if (block.empty() && byte() == 1) return nullptr;
        const std::size_t length = block.size();
        std::vector<std::uint8_t> with_zero(length + 1);
        std::copy_n(block.begin(), length, with_zero.begin());
        block = std::move(with_zero);
        return reinterpret_cast<char*>(block.data());
    }
    // A length that the block has, or one below 0.
    int length_in(const std::vector<std::uint8_t>& block) {
        const std::uint8_t how = byte();
        if (how >= 250) return -1 - how;
        return static_cast<int>(how < 200 ? block.size() : block.size() / 2);
    }
    int direction() { return static_cast<int>(one_of(4)) - 1; }

    void next_call() {
        blocks_.clear();
        taken_ = 0;
    }
    std::size_t taken() const { return taken_; }

  private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t taken_ = 0;
    std::deque<std::vector<std::uint8_t>> blocks_;
};

// ---- The host.

struct Host {
    MessageRecord record{};
    Cost cost;

    // A buffer or a constant.
    void take(const char* text) {
        if (text != nullptr) cost.text += std::strlen(text);
    }
    void take_heap(char* text) {
        take(text);
        std::free(text);
    }
    // What `line` decoded is a heap text, and each of those begins with a prefix or a colour, or is empty.
    void take_line(const char* text, bool two_length_bytes) {
        const bool decoded = text[0] == '\0' || text[0] == '\t' || text[0] == '\033';
        take(text);
        if (decoded && !two_length_bytes) std::free(const_cast<char*>(text));
    }

    // The record with new bytes; those behind them stay as the message before left them.
    MessageRecord* next_record(Program& program) {
        const std::uint8_t how = program.byte();
        if (how == 255) return nullptr;
        if (how == 254) record = {};
        const std::vector<std::uint8_t>& bytes = program.bytes();
        std::copy_n(bytes.begin(), std::min<std::size_t>(bytes.size(), ZTDECODE_CAPACITY), record.data);
        record.length = static_cast<std::uint32_t>(bytes.size());
        if (how >= 200) record.length += program.number();
        record.direction = how & 3;
        record.route = how >> 2 & 15;
        return &record;
    }
};

using Decoder = const char* (*)(MessageRecord*);

constexpr std::array<Decoder, 26> decoders = {
    ip2dhs,         dhs2ip,    he2dhs,        dhs2he,       hub2dhs,        dhs2hub,        ibs2dhs,
    dhs2ibs,        cs2dhs,    dhs2cs,        prs2dhs,      dhs2prs,        dbg2dhs,        dhs2dbg,
    osi2dhs,        dhs2osi,   decode_z,      decode_z_out, decode_mpc,     decode_mpc_out, decode_eak,
    decode_eak_out, decode_ks, decode_ks_out, decode_v24,   decode_v24_out,
};

constexpr std::array<const ztdecode_name_record*, 4> name_tables = {Tab_Servers_def, Tab_Methods_def,
                                                                    Tab_Error_def, Tab_Events_Opcodes};
constexpr std::array<const ztdecode_property_record*, 5> property_tables = {Tab_context, Tab_terminal,
                                                                            Tab_listbox, Tab_RESET, nullptr};

// Decoders of the host's own, which call the library again.
const char* says_nothing(MessageRecord*) { return nullptr; }
const char* of_a_set(MessageRecord* part) {
    const std::unique_ptr<char, void (*)(void*)> text(rn2dhs(part), std::free);
    return text != nullptr ? dec_err(part->data[0]) : "nothing";
}
const char* super_again(MessageRecord* part) { return subSuper(part, super_again); }

constexpr std::array<Decoder, 9> part_decoders = {decode_mpc,     decode_mpc_out, decode_z_out,
                                                  decode_eak_out, decode_ks_out,  decode_s0,
                                                  says_nothing,   of_a_set,       super_again};

using Call = void (*)(Host&, Program&);

constexpr auto calls = std::to_array<Call>({
    [](Host&, Program& p) { useColor = p.byte() & 1, audioOnly = p.one_of(8) == 7, debug = p.byte() & 1; },
    // Readers of lines and of buffers.
    [](Host& h, Program& p) {
        const char* text = p.text();
        h.take_line(line(text, p.direction()), false);
    },
    [](Host& h, Program& p) {
        const char* text = p.text();
        h.take(line_lng2(text, p.direction()));
    },
    [](Host& h, Program& p) {
        const char* text = p.text();
        const char* all = text != nullptr ? text : "";
        const bool tagged = std::strncmp(all, "zt ", 3) == 0;
        const bool two = tagged && ztdecode::has_two_length_bytes({all + 3, std::strlen(all + 3)});
        h.take_line(line_tzt(text, p.direction()), two);
    },
    [](Host& h, Program& p) {
        const char* text = p.text();
        const char* all = text != nullptr ? text : "";
        const bool two = ztdecode::spzt_body({all, std::strlen(all)}) == ztdecode::SpztBody::two_length_bytes;
        h.take_line(line_spzt(text), two);
    },
    [](Host& h, Program& p) { h.take(line_spzt_lng2(p.text())); },
    [](Host& h, Program& p) {
        std::vector<std::uint8_t>& bytes = p.bytes();
        if (!bytes.empty()) bytes.resize(1 + bytes[0]);
        bytes.shrink_to_fit();
        h.take_heap(decode_bin_lng1(bytes.empty() ? nullptr : bytes.data(), p.direction()));
    },
    [](Host& h, Program& p) {
        const std::vector<std::uint8_t>& bytes = p.bytes();
        const int direction = p.direction();
        h.take(decode_bin_lng2(bytes.data(), direction, p.length_in(bytes)));
    },
    // One message.
    [](Host& h, Program& p) {
        const MessageRecord* record = h.next_record(p);
        if (record == nullptr) return;
        char* text = decode(*record);
        h.take(text);
        if (record->length != 0) std::free(text);
    },
    [](Host& h, Program& p) {
        MessageRecord* record = h.next_record(p);
        decale(record, static_cast<int>(p.number()) - 3);
    },
    [](Host& h, Program& p) { std::free(msgdup(h.next_record(p))); },
    [](Host& h, Program& p) {
        const char* text = p.text();
        const std::size_t length = text != nullptr ? std::strlen(text) : 0;
        std::vector<char> out(length + 12);
        print_clean_message(out.data(), h.record, text != nullptr ? ::strdup(text) : nullptr);
        h.take(out.data());
    },
    [](Host& h, Program& p) { h.take_heap(rn2dhs(h.next_record(p))); },
    [](Host& h, Program& p) { h.take_heap(dhs2rn(h.next_record(p))); },
    [](Host& h, Program& p) {
        const Decoder decoder = decoders[p.one_of(decoders.size())];
        h.take(decoder(h.next_record(p)));
    },
    [](Host& h, Program& p) {
        h.take(p.byte() % 2 == 0 ? decode_s0(h.next_record(p)) : decode_s0_out(h.next_record(p)));
    },
    [](Host& h, Program& p) {
        const Decoder decoder = part_decoders[p.one_of(part_decoders.size())];
        MessageRecord* record = h.next_record(p);
        h.take(subSuper(record, p.byte() == 255 ? nullptr : decoder));
    },
    // Code tables.
    [](Host& h, Program& p) { h.take_heap(apId(static_cast<int>(p.number()) - 300)); },
    [](Host& h, Program& p) {
        const std::uint32_t code = p.number();
        h.take(type_poste(code)), h.take(design_poste(static_cast<int>(code))), h.take(ring_cadence(code));
        h.take(dec_err(code)), h.take(dec_warn(code)), h.take(dec_selftest(static_cast<int>(code)));
    },
    [](Host& h, Program& p) {
        const char* label = p.text();
        const std::uint32_t major = p.number();
        h.take(version_logiciel(label, major, p.number() << 16));
    },
    [](Host& h, Program& p) {
        h.next_record(p);
        h.take(audio_config(h.record)), h.take(download(h.record));
        const int direction = p.direction();
        inListAudioOpcodes(direction, p.byte());
    },
    // The object protocol.
    [](Host& h, Program& p) {
        const std::vector<std::uint8_t>& bytes = p.bytes();
        h.take(analyse_cmd_pbx(bytes.data(), p.length_in(bytes)));
    },
    [](Host& h, Program& p) {
        const std::vector<std::uint8_t>& bytes = p.bytes();
        h.take(analyse_cmd_term(bytes.data(), p.length_in(bytes)));
    },
    [](Host& h, Program& p) {
        const std::vector<std::uint8_t>& bytes = p.bytes();
        const int length = p.length_in(bytes);
        analyse_cmd(bytes.data(), length, p.byte() % 2 == 0 ? 'S' : 'R');
        h.take(app_buf);
    },
    [](Host&, Program& p) {
        std::vector<std::uint8_t>& bytes = p.bytes();
        bytes.resize(std::max<std::size_t>(bytes.size(), 4));
        bytes.resize(std::max<std::size_t>(
            ztdecode::object::segment_length(ztdecode::Message::without_record(bytes)) + 2, 4));
        bytes.shrink_to_fit();
        p.byte() % 2 == 0 ? boCatchSegment(bytes.data()) : bo_OLD_CatchSegment(bytes.data());
    },
    [](Host&, Program& p) {
        constexpr std::array<void (*)(), 4> functions = {vSaveLastReconstructedCmd, vFreeReconstructedCmd,
                                                         vFreeLastReconstructedCmd, vFreeApplicationBuffer};
        functions[p.one_of(functions.size())]();
    },
    [](Host& h, Program& p) {
        const std::vector<std::uint8_t>& bytes = p.bytes();
        const auto* table = property_tables[p.one_of(property_tables.size())];
        const int length = p.length_in(bytes);
        const std::uint8_t tag = p.byte();
        vDecodeTLV(tag, p.byte(), length, bytes.data(), table);
        h.take(app_buf);
    },
    [](Host& h, Program& p) {
        const std::vector<std::uint8_t>& bytes = p.bytes();
        const std::uint8_t event = p.byte();
        vDecodeEvent(event, bytes.data(), p.length_in(bytes));
        h.take(app_buf);
    },
    [](Host& h, Program& p) {
        const char* banner = p.text();
        const std::vector<std::uint8_t>& bytes = p.bytes();
        vDsipTLV(banner, bytes.data(), p.length_in(bytes));
        h.take(app_buf);
    },
    [](Host&, Program& p) {
        const std::vector<std::uint8_t>& bytes = p.bytes();
        const int length = p.length_in(bytes);
        printUTF8str(bytes.data(), length, p.byte() & 1);
    },
    [](Host&, Program& p) { vPutf8char(p.byte()); },
    [](Host&, Program& p) {
        convert_line(p.text());
        ztdecode::fuzz::expect(nb_vals <= 2998, "fields fit");
    },
    [](Host& h, Program& p) {
        const int code = static_cast<int>(p.number()) - 10;
        h.take(Look(code, name_tables[p.one_of(name_tables.size())]));
        std::uint16_t count = 0;
        std::uint8_t type = 0;
        h.take(Lprop(code, property_tables[p.one_of(property_tables.size())], &count, &type));
    },
    [](Host& h, Program& p) {
        const int code = static_cast<int>(p.number()) - 1;
        h.take(Lclass(code, p.byte() == 255 ? nullptr : Tab_Classes_Opcodes));
    },
    [](Host& h, Program& p) {
        const std::uint32_t code_point = p.number() << (p.byte() & 7);
        h.take(LookUtf8(code_point, p.byte() % 2 == 0 ? tab_unicod : nullptr));
    },
    [](Host& h, Program& p) {
        if (p.byte() % 8 == 0) hlp_idx = p.number();
        const char* text = p.text();
        ph("%s", text != nullptr ? text : "none");
        if (p.byte() % 8 == 0) ClassProp_Help();
        h.take(str_help);
    },
    [](Host&, Program& p) {
        if (p.byte() % 8 == 0) app_idx = p.number();
        const char* text = p.text();
        ::p("%s%*d", text != nullptr ? text : "none", static_cast<int>(p.number()), 1);
    },
    // Conversions.
    [](Host& h, Program& p) {
        const char* text = p.text();
        h.take(TOFLEX_Convert(text)), h.take(FROMFLEX_Convert(text));
    },
    [](Host& h, Program& p) { h.take(Convert_kb_To_key(p.text())); },
    [](Host& h, Program& p) {
        const char* text = p.text();
        hextoint(text, static_cast<int>(p.number()) - 2);
        const char* other = p.text();
        bGenericStrCmp(text, other, p.byte());
        hexdigint(static_cast<char>(p.byte()));
        h.take(FLEX_GetAsciiCode(static_cast<char>(p.byte())));
    },
    [](Host&, Program& p) {
        constexpr std::array<const char*, 2> files = {"/dev/null", "/dev/null/none"};
        const char* from = files[p.one_of(files.size())];
        A_Convert_scr(from, "/dev/null"), A_Diff_scr(from, "/dev/null", "/dev/null");
    },
});

// ---- Running it.

// As every program finds the library: nothing remembered, and no bytes of earlier lines.
void start_afresh() {
    static const std::string zeros = [] {
        std::string text = "00 14";
        for (int k = 0; k < ZTDECODE_CAPACITY; ++k) text += " 00";
        return text;
    }();
    useColor = 0, audioOnly = debug = 0;
    line_lng2(zeros.c_str(), 0);
    ztdecode::Session& session = ztdecode::abi::session();
    ztdecode::SideChannel* const side = session.side;
    ztdecode::ApplicationText* const application = session.object.application;
    std::destroy_at(&session);
    std::construct_at(&session);
    session.side = side;
    session.object.application = application;
    vFreeApplicationBuffer();
    hlp_idx = 0;
    boDisplayResult = 0;
}

// Whether it came back.
bool returns(Call call, Host& host, Program& program) {
    std::jmp_buf here;
    way_back = &here;
    const bool back = setjmp(here) == 0;
    if (back) call(host, program);
    way_back = nullptr;
    return back;
}

// What does not hold; nothing when all does.
std::string_view run(Call call, Host& host, Program& program) {
    host.cost = {};
    written_output = written_complaints = 0;
    const double begin = ztdecode::fuzz::processor_seconds();
    if (!returns(call, host, program) && exit_status != -1) return "the process ends for an unknown class";
    host.cost.seconds = ztdecode::fuzz::processor_seconds() - begin;
    host.cost.output = written_output;
    host.cost.complaints = written_complaints;
    if (app_buf != nullptr && std::memchr(app_buf, 0, app_buf_size) == nullptr) {
        return "the application buffer holds a C string";
    }
    constexpr std::size_t longest_series = 131072;
    return ztdecode::fuzz::exceeded(host.cost, longest_series + program.taken(), 1 + program.taken() / 2);
}

std::string_view run_all(Program& program) {
    const CountedStreams streams;
    ztdecode::fuzz::Account account;
    start_afresh();
    const auto host = std::make_unique<Host>();
    while (!program.ended() && !account.used_up()) {
        program.next_call();
        const std::string_view broken = run(calls[program.one_of(calls.size())], *host, program);
        if (!broken.empty()) return broken;
        account.add(host->cost);
    }
    return {};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Program program(data, size);
    const std::string_view broken = run_all(program);
    ztdecode::fuzz::expect(broken.empty(), broken);
    return 0;
}
