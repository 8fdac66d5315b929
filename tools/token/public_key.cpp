#include "token/public_key.h"

#include "token/base64.h"

#include <libxml/parser.h>
#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/param_build.h>
#include <openssl/pem.h>

#include <stdexcept>

namespace token {

namespace {

struct Release {
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
    void operator()(BIGNUM *number) const { BN_free(number); }
    void operator()(OSSL_PARAM_BLD *builder) const { OSSL_PARAM_BLD_free(builder); }
    void operator()(OSSL_PARAM *parameters) const { OSSL_PARAM_free(parameters); }
    void operator()(EVP_PKEY_CTX *context) const { EVP_PKEY_CTX_free(context); }
    void operator()(BIO *stream) const { BIO_free(stream); }
};
template <class T>
using Owned = std::unique_ptr<T, Release>;

// Answers the content of the root's child, or nothing.
std::optional<std::string> Child(xmlDoc *document, const char *name)
{
    for (xmlNode *node = xmlDocGetRootElement(document)->children; node != nullptr; node = node->next) {
        if (node->type == XML_ELEMENT_NODE && xmlStrEqual(node->name, reinterpret_cast<const xmlChar *>(name))) {
            const std::unique_ptr<xmlChar, decltype(xmlFree)> content(xmlNodeGetContent(node), xmlFree);
            return reinterpret_cast<const char *>(content.get());
        }
    }
    return std::nullopt;
}

Owned<BIGNUM> Number(xmlDoc *document, const char *name)
{
    const auto content = Child(document, name);
    const auto bytes = content ? DecodeBase64(*content) : std::nullopt;
    if (!bytes) {
        throw std::runtime_error(std::string("the key XML has no usable ") + name);
    }
    return Owned<BIGNUM>(BN_bin2bn(bytes->data(), static_cast<int>(bytes->size()), nullptr));
}

PublicKey MakeKey(const BIGNUM *modulus, const BIGNUM *exponent)
{
    const Owned<OSSL_PARAM_BLD> builder(OSSL_PARAM_BLD_new());
    OSSL_PARAM_BLD_push_BN(builder.get(), OSSL_PKEY_PARAM_RSA_N, modulus);
    OSSL_PARAM_BLD_push_BN(builder.get(), OSSL_PKEY_PARAM_RSA_E, exponent);
    const Owned<OSSL_PARAM> parameters(OSSL_PARAM_BLD_to_param(builder.get()));
    const Owned<EVP_PKEY_CTX> context(EVP_PKEY_CTX_new_from_name(nullptr, "RSA", nullptr));
    EVP_PKEY *key = nullptr;
    if (EVP_PKEY_fromdata_init(context.get()) <= 0 ||
        EVP_PKEY_fromdata(context.get(), &key, EVP_PKEY_PUBLIC_KEY, parameters.get()) <= 0) {
        throw std::runtime_error("modulus and exponent make no RSA key");
    }
    return PublicKey(key);
}

PublicKey ReadXml(const std::string &text)
{
    constexpr int kQuiet = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    const Owned<xmlDoc> document(xmlReadMemory(text.data(), static_cast<int>(text.size()), "key", nullptr, kQuiet));
    if (document == nullptr) {
        throw std::runtime_error("the key is neither PEM nor well-formed XML");
    }
    if (Child(document.get(), "P") || Child(document.get(), "D")) {
        throw std::runtime_error("this is a private key, register the public one");
    }
    return MakeKey(Number(document.get(), "Modulus").get(), Number(document.get(), "Exponent").get());
}

PublicKey ReadPem(const std::string &text)
{
    const Owned<BIO> stream(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
    PublicKey key(PEM_read_bio_PUBKEY(stream.get(), nullptr, nullptr, nullptr));
    if (key == nullptr || !EVP_PKEY_is_a(key.get(), "RSA")) {
        throw std::runtime_error("the PEM text holds no RSA public key");
    }
    return key;
}

} // namespace

PublicKey ReadPublicKey(const std::string &text)
{
    return text.find("-----BEGIN") != std::string::npos ? ReadPem(text) : ReadXml(text);
}

std::string PublicKeyToPem(const PublicKey &key)
{
    const Owned<BIO> stream(BIO_new(BIO_s_mem()));
    PEM_write_bio_PUBKEY(stream.get(), key.get());
    char *text = nullptr;
    const long length = BIO_get_mem_data(stream.get(), &text);
    return {text, static_cast<std::size_t>(length)};
}

} // namespace token
