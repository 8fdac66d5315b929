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

// Returns the private key in a form that fits on a profile line.
std::string FittingPrivateKey(const KeyPair &keys, int bits)
{
    const std::size_t room = kLongestProfileLine - std::strlen(kPrivateKeyLine);
    if (keys.privateXml.size() <= room) {
        return keys.privateXml;
    }
    if (keys.privateXmlWithoutD.size() <= room) {
        std::cout << "D is left out of the private key, which would be too long with it; the library needs only "
                     "P, Q, DP, DQ and InverseQ\n";
        return keys.privateXmlWithoutD;
    }
    throw Failure(ExitCode::kUsage, "a key of " + std::to_string(bits) + " bits needs a line of " +
                                        std::to_string(keys.privateXmlWithoutD.size() + std::strlen(kPrivateKeyLine)) +
                                        " characters, and a profile line holds at most " +
                                        std::to_string(kLongestProfileLine) + ": take a smaller one");
}

} // namespace

// What is written must be what the library reads, and a shop must take the serial.
void NewProfile::CheckReadsBack(const std::string &text) const
{
    const auto isVisible = [](unsigned char letter) { return letter > ' ' && letter < 0x7F; };
    if (serial.empty() || !std::all_of(serial.begin(), serial.end(), isVisible)) {
        throw Failure(ExitCode::kUsage,
                      "--serial must be visible ASCII without spaces: it is sent as a header's value");
    }
    ProfileText read = ReadProfileText(text);
    if (!read.problems.empty()) {
        throw Failure(ExitCode::kUsage, "the library would misread this profile, " + read.problems.front());
    }
    if (read.values["User-Serial"] != serial || read.values["User-Agent"] != userAgent) {
        throw Failure(ExitCode::kUsage, "the library would misread this profile: a line feed ends a value");
    }
}

ExitCode NewProfile::Write() const
{
    if (bits % 8 != 0) {
        throw Failure(ExitCode::kUsage, "--bits must be a multiple of 8: with other sizes a token is now and then too "
                                        "short and is sent empty");
    }
    const KeyPair keys = MakeKeyPair(bits);
    const std::string text = "User-Agent: " + userAgent + "\nUser-Serial: " + serial +
                             "\nUser-Id: " + std::to_string(userId) + "\nUser-No: " + std::to_string(userNumber) +
                             "\nPublic-Key: " + keys.publicXml + "\n" + kPrivateKeyLine +
                             FittingPrivateKey(keys, bits) + "\n";
    CheckReadsBack(text);
    const std::string publicFile = publicKeyFile.empty() ? file + ".pub.xml" : publicKeyFile;
    WriteNewFile(file, text, true, force);
    WriteNewFile(publicFile, keys.publicXml + "\n", false, force);
    std::cout << "wrote the profile " << file << " with a key of " << bits << " bits; keep it secret\n"
              << "wrote its public key " << publicFile << "; register it in the shop, for instance\n"
              << "  pavonix-shop device add --serial " << serial << " --user-id " << userId << " --public-key "
              << publicFile << " --balance 10000\n";
    return ExitCode::kDone;
}

} // namespace client
