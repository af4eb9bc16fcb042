// usage: make-capture PACKETS
// Writes a capture of small DNS packets in the pcap format to standard output, the same for the same number:
// queries and their answers, one behind the other. An office has few hosts: readers that remember every
// address would be slowed down by many.

#include <cstdio>
#include <cstdlib>

#include "bench/office.hpp"

namespace {

using ztdecode::bench::Bytes;
using ztdecode::bench::Random;

// Numbers of the network, high byte first.
void add(Bytes& to, unsigned width, std::uint32_t value) {
    while (width-- > 0) to.push_back(static_cast<std::uint8_t>(value >> 8 * width));
}

// Numbers of the capture file, low byte first.
void add_low_first(Bytes& to, unsigned width, std::uint32_t value) {
    for (unsigned k = 0; k < width; ++k) to.push_back(static_cast<std::uint8_t>(value >> 8 * k));
}

void append(Bytes& to, const Bytes& bytes) { to.insert(to.end(), bytes.begin(), bytes.end()); }

// The internet checksum, begun with what else it covers.
std::uint32_t checksum(const Bytes& bytes, std::uint32_t sum) {
    for (std::size_t k = 0; k < bytes.size(); ++k) sum += k % 2 == 0 ? bytes[k] * 256U : bytes[k];
    while (sum > 0xFFFF) sum = (sum & 0xFFFF) + (sum >> 16);
    return ~sum & 0xFFFF;
}

void put(Bytes& to, std::size_t at, std::uint32_t value) {
    to[at] = static_cast<std::uint8_t>(value >> 8);
    to[at + 1] = static_cast<std::uint8_t>(value);
}

struct Lookup {
    std::uint32_t id;
    std::uint32_t host;  // the number in the name
    std::uint32_t client;
    std::uint32_t port;
    std::uint32_t address;  // what the name stands for
};

void add_name(Bytes& dns, std::uint32_t host) {
    char label[12];
    const int n = std::snprintf(label, sizeof label, "set%u", host);
    add(dns, 1, static_cast<std::uint32_t>(n));
    dns.insert(dns.end(), label, label + n);
    for (const char* word : {"\6office", "\4test"}) {
        while (*word != '\0') dns.push_back(static_cast<std::uint8_t>(*word++));
    }
    add(dns, 1, 0);
}

Bytes dns_message(const Lookup& lookup, bool answer) {
    Bytes dns;
    add(dns, 2, lookup.id);
    add(dns, 2, answer ? 0x8580 : 0x0100);
    add(dns, 2, 1);
    add(dns, 2, answer ? 1 : 0);
    add(dns, 4, 0);
    add_name(dns, lookup.host);
    add(dns, 4, 0x00010001);
    if (!answer) return dns;
    add(dns, 2, 0xC00C);
    add(dns, 4, 0x00010001);
    add(dns, 4, 3600);
    add(dns, 2, 4);
    add(dns, 4, lookup.address);
    return dns;
}

constexpr std::uint32_t server = 0x0A000001;
constexpr std::uint32_t udp = 17;

Bytes udp_packet(const Lookup& lookup, bool answer) {
    const std::uint32_t source = answer ? server : lookup.client;
    const std::uint32_t destination = answer ? lookup.client : server;
    const Bytes dns = dns_message(lookup, answer);
    const auto length = static_cast<std::uint32_t>(8 + dns.size());
    Bytes packet;
    add(packet, 2, answer ? 53 : lookup.port);
    add(packet, 2, answer ? lookup.port : 53);
    add(packet, 2, length);
    add(packet, 2, 0);
    append(packet, dns);
    const std::uint32_t header =
        (source >> 16) + (source & 0xFFFF) + (destination >> 16) + (destination & 0xFFFF) + udp + length;
    put(packet, 6, checksum(packet, header));

    Bytes ip;
    add(ip, 2, 0x4500);
    add(ip, 2, 20 + length);
    add(ip, 4, lookup.id << 16);
    add(ip, 2, 0x4000 | udp);
    add(ip, 2, 0);
    add(ip, 4, source);
    add(ip, 4, destination);
    put(ip, 10, checksum(ip, 0));

    Bytes frame;
    for (int k = 0; k < 12; ++k) add(frame, 1, k % 6 == 0 ? 2 : 0x10);
    add(frame, 2, 0x0800);
    append(frame, ip);
    append(frame, packet);
    return frame;
}

void write(const Bytes& bytes) { std::fwrite(bytes.data(), 1, bytes.size(), stdout); }

void write_file_header() {
    Bytes header;
    add_low_first(header, 4, 0xA1B2C3D4);
    add_low_first(header, 4, 0x00040002);  // version 2.4
    add_low_first(header, 4, 0);
    add_low_first(header, 4, 0);
    add_low_first(header, 4, 65535);
    add_low_first(header, 4, 1);  // Ethernet
    write(header);
}

void write_record(std::uint32_t number, const Bytes& frame) {
    Bytes record;
    add_low_first(record, 4, 1'000'000'000 + number / 1000);
    add_low_first(record, 4, number % 1000 * 1000);
    add_low_first(record, 4, static_cast<std::uint32_t>(frame.size()));
    add_low_first(record, 4, static_cast<std::uint32_t>(frame.size()));
    append(record, frame);
    write(record);
}

}  // namespace

int main(int argc, char** argv) {
    const unsigned long packets = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 0;
    if (packets == 0) {
        std::fputs("usage: make-capture PACKETS\n", stderr);
        return 2;
    }
    Random random(53);
    write_file_header();
    Lookup lookup{};
    for (std::uint32_t n = 0; n < packets; ++n) {
        const bool answer = n % 2 != 0;
        if (!answer) {
            lookup = {random.below(0x10000), random.below(1000), 0x0A000000 | random.between(2, 99),
                      random.between(1024, 65535), 0x0A000000 | random.between(100, 199)};
        }
        write_record(n, udp_packet(lookup, answer));
    }
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? 0 : 1;
}
