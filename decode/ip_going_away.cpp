#include "ip/ip.hpp"
void ztdecode::ip::from_system(Decoding&) {}
void ztdecode::ip::to_system(Decoding&) {}
void ztdecode::ip2dhs(Session&, Message&, Text&) {}
void ztdecode::dhs2ip(Session&, Message&, Text&) {}
