#include "bare/crt_arithmetic.h"

#include "harness/key.h"

#include <cstdlib>

namespace pavonix::bench {

namespace {

const unsigned char *Unsigned(const std::string &bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.data());
}

std::string ToBytes(const ::mp_int *number)
{
    std::string bytes(mp_ubin_size(number), 0);
    std::size_t written = 0;
    const mp_err result = mp_to_ubin(number, reinterpret_cast<unsigned char *>(bytes.data()), bytes.size(), &written);
    return result == MP_OKAY ? bytes : std::string();
}

void ReadPart(const std::string &xml, const char *element, ::mp_int *number)
{
    const std::string bytes = KeyPart(xml, element);
    if (mp_init(number) != MP_OKAY || mp_from_ubin(number, Unsigned(bytes), bytes.size()) != MP_OKAY) {
        std::abort();
    }
}

} // namespace

CrtArithmetic::CrtArithmetic(const std::string &keyXml)
{
    ReadPart(keyXml, "Modulus", &n_);
    ReadPart(keyXml, "Exponent", &e_);
    ReadPart(keyXml, "P", &p_);
    ReadPart(keyXml, "Q", &q_);
    ReadPart(keyXml, "DP", &dP_);
    ReadPart(keyXml, "DQ", &dQ_);
    ReadPart(keyXml, "InverseQ", &qP_);
}

CrtArithmetic::~CrtArithmetic()
{
    mp_clear_multi(&n_, &e_, &p_, &q_, &dP_, &dQ_, &qP_, nullptr);
}

std::string CrtArithmetic::Apply(const std::string &block) const
{
    ::mp_int m, a, b, t, c;
    if (mp_init_multi(&m, &a, &b, &t, &c, nullptr) != MP_OKAY) {
        return {};
    }
    const bool done = mp_from_ubin(&m, Unsigned(block), block.size()) == MP_OKAY &&
                      mp_exptmod(&m, &dP_, &p_, &a) == MP_OKAY && mp_exptmod(&m, &dQ_, &q_, &b) == MP_OKAY &&
                      mp_sub(&a, &b, &t) == MP_OKAY && mp_mulmod(&t, &qP_, &p_, &t) == MP_OKAY &&
                      mp_mul(&t, &q_, &t) == MP_OKAY && mp_add(&t, &b, &c) == MP_OKAY;
    std::string bytes = done ? ToBytes(&c) : std::string();
    mp_clear_multi(&m, &a, &b, &t, &c, nullptr);
    return bytes;
}

std::string CrtArithmetic::Undo(const std::string &cipher) const
{
    ::mp_int m, c;
    if (mp_init_multi(&m, &c, nullptr) != MP_OKAY) {
        return {};
    }
    const bool done =
        mp_from_ubin(&c, Unsigned(cipher), cipher.size()) == MP_OKAY && mp_exptmod(&c, &e_, &n_, &m) == MP_OKAY;
    std::string bytes = done ? ToBytes(&m) : std::string();
    mp_clear_multi(&m, &c, nullptr);
    return bytes;
}

} // namespace pavonix::bench
