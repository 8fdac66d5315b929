// Key texts: complete, odd and truncated.
#include "rsa/key/key_reader.h"
#include "rsa/log/logger.h"
#include "support/rsa_keys.h"
#include "support/texts.h"

#include <gtest/gtest.h>

using namespace pavonix;
using namespace pavonix::test;

namespace {

struct Import {
    bool success;
    std::string log; // the entries alone
};

Import Read(const std::string &xml, RsaKey *key, bool verbose = false)
{
    Logger log;
    const bool success = ReadKey(xml.c_str(), key, verbose, log);
    std::string entries = LogText(log);
    entries.erase(0, entries.find('\n') + 1);
    for (std::size_t end; (end = entries.find("\r\n")) != std::string::npos;) {
        entries.replace(end, 2, 1, ';');
    }
    return {success, entries};
}

std::string Value(const pavonix::mp_int &value)
{
    DataBuffer bytes;
    EXPECT_TRUE(value.WriteUnsignedBytes(&bytes));
    return BytesOf(bytes);
}

// The parts in order, as text; "-" for 0
std::string Parts(const RsaKey &key)
{
    std::string parts;
    for (const pavonix::mp_int *value : {&key.N, &key.e, &key.p, &key.q, &key.dP, &key.dQ, &key.qP, &key.d}) {
        const std::string bytes = Value(*value);
        parts += bytes.empty() ? "-" : bytes;
    }
    return parts + (key.type == KeyType::kPrivate ? " private" : " public");
}

} // namespace

TEST(KeyReader, ReadsKeyTexts)
{
    const std::string n = Element("Modulus", "N"), e = Element("Exponent", "e"), p = Element("P", "p");
    const std::string rest = Element("Q", "q") + Element("DP", "x") + Element("DQ", "y") + Element("InverseQ", "z");
    const std::string d = Element("D", "d");
    const struct {
        std::string xml, log, parts;
    } rows[] = {
        {"<RSAKeyValue>" + n + e + p + rest + d + "</RSAKeyValue>", "", "Nepqxyzd private"},
        {"<Key>" + d + rest + p + e + n + "</Key>", "", "Nepqxyzd private"},
        {"<K>" + n + e + rest + d + "</K>", "", "Ne------ public"},
        {"<K>" + n + e + "<P></P>" + rest + "</K>", "", "Ne------ public"},
        {"<K>" + n + e + p + rest + "</K>", "", "Nepqxyz- private"},
        {"<K>" + n + e + p + "</K>", "", "Nep----- private"},
        {"<K>" + e + "</K>", "  No modulus;", "-------- private"},
        {"<K><Inner>" + n + "</Inner>" + e + "</K>", "  No modulus;", "-------- private"},
        {"<K><modulus>Tg==</modulus>" + e + "</K>", "  No modulus;", "-------- private"},
        {"<K><Modulus/>" + n + e + "</K>", "  No modulus;", "-------- private"},
        {"<K><Modulus>!!</Modulus>" + e + "</K>", "  Invalid modulus;", "-------- private"},
        {"<K>" + n + "<Exponent></Exponent></K>", "  No exponent;", "N------- private"},
        {"<K>" + n + "<Exponent>=ZQ=</Exponent></K>", "  Invalid exponent;", "N------- private"},
        {"<K>" + n + e + "<P> </P></K>", "  Invalid P;", "Ne------ private"},
        {"<K>" + n + e + p + "<Q>A</Q>" + rest + "</K>", "  Invalid Q;", "Nep----- private"},
        {"<K>" + n + e + p + "<DP>A</DP></K>", "  Invalid DP;", "Nep----- private"},
        {"<K>" + n + e + p + "<DQ>A</DQ></K>", "  Invalid DQ;", "Nep----- private"},
        {"<K>" + n + e + p + "<InverseQ>A</InverseQ></K>", "  Invalid InverseQ;", "Nep----- private"},
        {"<K>" + n + e + p + "<D>A</D></K>", "  Invalid D;", "Nep----- private"},
        {"<K>" + n + Element("Modulus", "M") + e + Element("Exponent", "f") + "</K>", "", "Ne------ public"},
        {"<K>" + Element("Modulus", std::string("\0\0N", 3)) + e + "</K>", "", "Ne------ public"},
        {"<?xml version='1.0'?><!DOCTYPE K [<!ENTITY a '>]<'><!-- ' > -->]><!-- <K> --><K a='>' b=\"/>\">" + n + e +
             "</K>",
         "", "Ne------ public"},
        {"<K><Modulus kind='b64'>&#84;&#x67;<!-- x -->\r\n\t<![CDATA[=]]><?pi?>=</Modulus>" + e + "</K>", "",
         "Ne------ public"},
        {"<K><\x80\xA4>\xFF</\x80\xA4>\x80<Modulus>\x80T\xFFg=</Modulus>" + e + "</K>", "", "Ne------ public"},
        {"<K>" + n + e + "</K>" + "<K>" + p + "</K>", "", "Ne------ public"},
        {"no XML at all & <", "  No modulus;", "-------- private"},
        {"", "  No modulus;", "-------- private"},
        {"\xFF\xFE<", "  No modulus;", "-------- private"},
    };
    for (const auto &row : rows) {
        RsaKey key;
        const Import import = Read(row.xml, &key);
        EXPECT_EQ(import.log, row.log) << row.xml;
        EXPECT_EQ(import.success, row.log.empty()) << row.xml;
        EXPECT_EQ(Parts(key), row.parts) << row.xml;
    }
}

TEST(KeyReader, KeepsPartsThatAnImportLacks)
{
    RsaKey key;
    ReadTestKey("<K>" + Element("Modulus", "N") + Element("Exponent", "e") + Element("P", "p") + Element("D", "d") +
                    "</K>",
                &key);
    EXPECT_TRUE(Read("<K>" + Element("Modulus", "M") + Element("Exponent", "f") + "</K>", &key).success);
    EXPECT_EQ(Parts(key), "Mfp----d public");
    EXPECT_FALSE(Read("<K>" + Element("Modulus", "O") + Element("Exponent", "g") + Element("P", "r") + "<Q>?</Q>" +
                          Element("D", "h") + "</K>",
                      &key)
                     .success);
    EXPECT_EQ(Parts(key), "Ogr----d private");
}

// The outcome changes only where a part becomes valid.
TEST(KeyReader, EveryPrefixOfAKey)
{
    const std::string xml = KeyOfBits(1024).PrivateXml();
    std::string outcomes;
    for (std::size_t length = 0; length <= xml.size(); ++length) {
        RsaKey key;
        const Import import = Read(xml.substr(0, length), &key);
        ASSERT_EQ(import.success, import.log.empty()) << length;
        outcomes += outcomes.ends_with("|" + import.log) ? "" : "|" + import.log;
    }
    std::string expected = "|  No modulus;|  Invalid modulus;|  No exponent;|  Invalid exponent;|";
    for (const char *part : {"P", "Q", "DP", "DQ", "InverseQ", "D"}) {
        expected += std::string("|  Invalid ") + part + ";|";
    }
    EXPECT_EQ(outcomes, expected);
}

TEST(KeyReader, VerboseLogNamesTheSizes)
{
    RsaKey key;
    const std::string xml = "<K>" + Element("Modulus", "\x7F\1") + Element("Exponent", "\3") + Element("P", "\xFF") +
                            Element("Q", "\1") + Element("DP", "\2") + Element("DQ", "\4") +
                            Element("InverseQ", "\x8") + Element("D", "\x10") + "</K>";
    EXPECT_EQ(Read(xml, &key, true).log, "  N_numBits: 15;  N: fwE=;  P_numBits: 8;  Q_numBits: 1;  DP_numBits: 2;"
                                         "  DQ_numBits: 3;  InverseQ_numBits: 4;  D_numBits: 5;");
}
