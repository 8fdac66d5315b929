// The benchmarks' RSA keys: fixed ones, so that instruction counts of two
// versions can be compared.
#pragma once

#include <string>

namespace pavonix::bench {

// The private key of 1024 or 2048 bits as an XML key text.
std::string KeyXml(int bits);

// The bytes, big-endian, of one element of an XML key text.
std::string KeyPart(const std::string &xml, const std::string &element);

} // namespace pavonix::bench
