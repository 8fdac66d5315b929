// The thread error value of the device.
#pragma once

#include <cstdint>

namespace pavonix::device {

constexpr std::uint32_t kErrorFileNotFound = 2;
constexpr std::uint32_t kErrorPathNotFound = 3;
constexpr std::uint32_t kErrorAccessDenied = 5;
constexpr std::uint32_t kErrorInvalidHandle = 6;
constexpr std::uint32_t kErrorInjected = 8; // "not enough memory", with which any function may fail
constexpr std::uint32_t kErrorNoMoreFiles = 18;
constexpr std::uint32_t kErrorSharingViolation = 32;
constexpr std::uint32_t kErrorInvalidParameter = 87;
constexpr std::uint32_t kErrorDiskFull = 112;
constexpr std::uint32_t kErrorInsufficientBuffer = 122;
constexpr std::uint32_t kErrorInvalidName = 123;
constexpr std::uint32_t kErrorModuleNotFound = 126;
constexpr std::uint32_t kErrorProcedureNotFound = 127;
constexpr std::uint32_t kErrorAlreadyExists = 183;
constexpr std::uint32_t kErrorInvalidFlags = 1004;
constexpr std::uint32_t kErrorNotASocket = 10038;
constexpr std::uint32_t kErrorReset = 10054;
constexpr std::uint32_t kErrorTimedOut = 10060;
constexpr std::uint32_t kErrorRefused = 10061;
constexpr std::uint32_t kErrorWinsockNotStarted = 10093;
constexpr std::uint32_t kErrorHostNotFound = 11001;
constexpr std::uint32_t kErrorBadFlags = 0x80090009;
constexpr std::uint32_t kErrorBadProviderType = 0x80090014;
constexpr std::uint32_t kErrorBadKeySet = 0x80090016;
constexpr std::uint32_t kErrorNoSuchProvider = 0x80090019;

inline thread_local std::uint32_t lastError = 0;

// Sets the error and returns `result`: a failing function's last line.
template <typename Result>
Result FailWith(std::uint32_t error, Result result)
{
    lastError = error;
    return result;
}

} // namespace pavonix::device
