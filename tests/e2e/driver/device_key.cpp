#include "device_key.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <regex>

namespace pavonix::e2e {

void ExpectFreshToken(const DeviceKey &key, const std::string &token)
{
    const std::string text = key.Decode(true, RSA_PKCS1_OAEP_PADDING, test::FromBase64(token));
    std::smatch part;
    ASSERT_TRUE(std::regex_match(text, part,
                                 std::regex(R"((20\d\d)-([1-9]\d?)-([1-9]\d?) (\d|[1-9]\d):(\d|[1-9]\d):(\d|[1-9]\d))"
                                            R"(\.-?(\d{3}))")))
        << "not made with this device's key: " << token << " holds " << text;
    std::tm time = {};
    time.tm_year = std::stoi(part[1]) - 1900;
    time.tm_mon = std::stoi(part[2]) - 1;
    time.tm_mday = std::stoi(part[3]);
    time.tm_hour = std::stoi(part[4]);
    time.tm_min = std::stoi(part[5]);
    time.tm_sec = std::stoi(part[6]);
    time.tm_isdst = -1;
    EXPECT_LE(std::abs(std::difftime(std::time(nullptr), std::mktime(&time))), 5.0) << text;
    EXPECT_LE(std::stoi(part[7]), 998) << text;
}

} // namespace pavonix::e2e
