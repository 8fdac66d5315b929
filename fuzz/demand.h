// What every fuzzer here shares: the end of a run in which the library and its
// oracle differ. The fuzzer then keeps the input.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

inline void Demand(bool holds, const std::string &what)
{
    if (!holds) {
        std::cerr << "the oracle disagrees: " << what << std::endl;
        std::abort();
    }
}

inline std::string Bytes(const std::uint8_t *data, std::size_t size)
{
    return std::string(reinterpret_cast<const char *>(data), size);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
