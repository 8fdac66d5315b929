// Reads an RSA key from its XML text.
#pragma once

#include "rsa/key/rsa_key.h"
#include "rsa/log/log_base.h"

namespace pavonix {

// `xml` is zero-terminated UTF-8. The root element may have any name;
// its first direct child of each of these names counts. The content is the base64 text
// of a big-endian integer:
//
//     Modulus, Exponent       always needed
//     P                       makes the key a private one
//     Q, DP, DQ, InverseQ, D  read only beside P; each may be missing
//
// An element that cannot be read fails the import, and the log names it. Whether the
// parts belong together is not tested. `key` is not cleared first: a part without an
// element keeps its value, and a failure keeps the parts read before it. `verbose` logs
// the parts' bit counts and the modulus.
[[nodiscard]] bool ReadKey(const char *xml, RsaKey *key, bool verbose, LogBase &log);

} // namespace pavonix
