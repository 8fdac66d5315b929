// Shared by the fuzzers: aborts when the library and its oracle differ, so that the fuzzer
// keeps the input.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

inline void Demand(bool holds, const std::string &difference)
{
    if (!holds) {
        std::cerr << "the oracle disagrees: " << difference << std::endl;
        std::abort();
    }
}

inline std::string Bytes(const std::uint8_t *data, std::size_t size)
{
    return std::string(reinterpret_cast<const char *>(data), size);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
