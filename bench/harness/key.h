// The benchmarks' RSA keys, fixed so that instruction counts of two versions are comparable.
#pragma once

#include <string>

namespace pavonix::bench {

// Returns the private key of 1024 or 2048 bits as XML.
std::string KeyXml(int bits);

// Returns the big-endian bytes of one element of an XML key.
std::string KeyPart(const std::string &xml, const std::string &element);

} // namespace pavonix::bench
