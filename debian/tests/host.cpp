#include <fstream>
#include <iostream>
#include <string>
#include <ztdecode.hpp>

// usage: host TRACE: how many messages there are, and the value of remote_ip in those that are start_rtp.

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    std::ifstream trace(argv[1]);
    zt::Session session;
    unsigned messages = 0;
    std::string addresses;
    for (std::string line; std::getline(trace, line);) {
        session.feed(line);
        for (const zt::Record record : session.messages()) {
            ++messages;
            const auto field = record.find("remote_ip");
            if (record.message() == "start_rtp" && field)
                addresses += ", remote_ip = " + std::string(field->value());
        }
    }
    std::cout << messages << " messages" << addresses << '\n';
}
