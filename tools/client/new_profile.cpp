#include "new_profile.h"

#include "key_pair.h"
#include "profile_text.h"
#include "system.h"

#include <algorithm>
#include <cstring>
#include <iostream>

namespace client {

namespace {

constexpr const char *kPrivateKeyLine = "Private-Key: ";

std::string Element(const char *name, const std::string &base64)
{
    return std::string("<") + name + ">" + base64 + "</" + name + ">";
}

std::string PublicXml(const KeyPair &keys)
{
    return "<RSAKeyValue>" + Element("Modulus", keys.modulus) + Element("Exponent", keys.exponent) + "</RSAKeyValue>";
}

std::string PrivateXml(const KeyPair &keys, const std::string &d)
{
    return "<RSAKeyValue>" + Element("Modulus", keys.modulus) + Element("Exponent", keys.exponent) +
           Element("P", keys.p) + Element("Q", keys.q) + Element("DP", keys.dp) + Element("DQ", keys.dq) +
           Element("InverseQ", keys.inverseQ) + d + "</RSAKeyValue>";
}

// Returns the private key, without D if it is too long for a profile line otherwise.
std::string FittingPrivateKey(const KeyPair &keys, int bits)
{
    const std::size_t room = kLongestProfileLine - std::strlen(kPrivateKeyLine);
    if (std::string whole = PrivateXml(keys, Element("D", keys.d)); whole.size() <= room) {
        return whole;
    }
    std::string shorter = PrivateXml(keys, "");
    if (shorter.size() <= room) {
        std::cout << "the private key is written without D, with which it would be too long; the library does not "
                     "need D\n";
        return shorter;
    }
    throw Failure(ExitCode::kUsage, "a key of " + std::to_string(bits) + " bits needs a line of " +
                                        std::to_string(shorter.size() + std::strlen(kPrivateKeyLine)) +
                                        " characters, and a profile line holds at most " +
                                        std::to_string(kLongestProfileLine) + "; choose a smaller key");
}

} // namespace

// The library must read what is written, and a shop must accept the serial.
void NewProfile::CheckReadsBack(const std::string &text) const
{
    const auto isVisible = [](unsigned char letter) { return letter > ' ' && letter < 0x7F; };
    if (serial.empty() || !std::all_of(serial.begin(), serial.end(), isVisible)) {
        throw Failure(ExitCode::kUsage,
                      "--serial must be visible ASCII without spaces: it is sent as a header's value");
    }
    ProfileText read = ReadProfileText(text);
    if (!read.problems.empty()) {
        throw Failure(ExitCode::kUsage, "the library would misread this profile: " + read.problems.front());
    }
    if (read.values["User-Serial"] != serial || read.values["User-Agent"] != userAgent) {
        throw Failure(ExitCode::kUsage, "a value must not contain a line feed");
    }
}

ExitCode NewProfile::Write() const
{
    if (bits % 8 != 0) {
        throw Failure(ExitCode::kUsage,
                      "--bits must be a multiple of 8: with other sizes some tokens are too short and "
                      "are sent empty");
    }
    const KeyPair keys = MakeKeyPair(bits);
    const std::string publicKey = PublicXml(keys);
    const std::string text = "User-Agent: " + userAgent + "\nUser-Serial: " + serial +
                             "\nUser-Id: " + std::to_string(userId) + "\nUser-No: " + std::to_string(userNumber) +
                             "\nPublic-Key: " + publicKey + "\n" + kPrivateKeyLine + FittingPrivateKey(keys, bits) +
                             "\n";
    CheckReadsBack(text);
    const std::string publicFile = publicKeyFile.empty() ? file + ".pub.xml" : publicKeyFile;
    WriteNewFile(file, text, true, force);
    WriteNewFile(publicFile, publicKey + "\n", false, force);
    std::cout << "wrote the profile " << file << " with a key of " << bits << " bits; keep it secret\n"
              << "wrote its public key " << publicFile << "; register it in the shop, for example:\n"
              << "  pavonix-shop device add --serial " << serial << " --user-id " << userId << " --public-key "
              << publicFile << " --balance 10000\n";
    return ExitCode::kDone;
}

} // namespace client
