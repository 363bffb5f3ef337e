#include "sim/cloud/Certificates.h"

#include "core/Errors.h"

#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include <array>
#include <cstdint>

namespace tidewell {

namespace {

constexpr long DaySeconds = 24L * 60 * 60;

void Check(bool done, const char* what) {
    if (!done) {
        std::array<char, 256> reason{};
        ERR_error_string_n(ERR_get_error(), reason.data(), reason.size());
        throw TError(std::string("Could not ") + what + ": " + reason.data());
    }
}

TPrivateKey NewKey() {
    TPrivateKey key(EVP_EC_gen("P-256"));
    Check(key != nullptr, "make a key");
    return key;
}

void AddExtension(X509& certificate, X509& issuer, int kind, const std::string& value) {
    X509V3_CTX context{};
    X509V3_set_ctx(&context, &issuer, &certificate, nullptr, nullptr, 0);
    const std::unique_ptr<X509_EXTENSION, TOpenSslFree> extension(
        X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str()));
    Check(extension != nullptr && X509_add_ext(&certificate, extension.get(), -1) == 1, "add an extension");
}

// A certificate without extensions, not signed yet; good for a year from yesterday on.
TCertificate NewCertificate(const std::string& name, EVP_PKEY& key) {
    TCertificate certificate(X509_new());
    Check(certificate != nullptr && X509_set_version(certificate.get(), X509_VERSION_3) == 1,
          "make a certificate");
    std::uint64_t serial = 0;
    std::array<unsigned char, 7> random{};
    Check(RAND_bytes(random.data(), static_cast<int>(random.size())) == 1, "get random bytes");
    for (const unsigned char byte : random)
        serial = (serial << 8U) | byte;
    ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate.get()), serial);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -DaySeconds);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 365 * DaySeconds);
    const std::vector<unsigned char> bytes(name.begin(), name.end());
    Check(X509_NAME_add_entry_by_NID(X509_get_subject_name(certificate.get()), NID_commonName, MBSTRING_UTF8,
                                     bytes.data(), static_cast<int>(bytes.size()), -1, 0) == 1,
          "name a certificate");
    Check(X509_set_pubkey(certificate.get(), &key) == 1, "set a key");
    return certificate;
}

void Sign(X509& certificate, X509& issuer, EVP_PKEY& issuerKey) {
    Check(X509_set_issuer_name(&certificate, X509_get_subject_name(&issuer)) == 1, "name an issuer");
    AddExtension(certificate, issuer, NID_subject_key_identifier, "hash");
    AddExtension(certificate, issuer, NID_authority_key_identifier, "keyid:always");
    Check(X509_sign(&certificate, &issuerKey, EVP_sha256()) > 0, "sign a certificate");
}

bool IsAddress(const std::string& name) {
    return name.find_first_not_of("0123456789.") == std::string::npos;
}

std::string AlternativeNames(const std::vector<std::string>& names) {
    std::string value;
    for (const std::string& name : names)
        value += (value.empty() ? "" : ",") + std::string(IsAddress(name) ? "IP:" : "DNS:") + name;
    return value;
}

std::string Pem(X509& certificate) {
    const std::unique_ptr<BIO, TOpenSslFree> memory(BIO_new(BIO_s_mem()));
    Check(memory != nullptr && PEM_write_bio_X509(memory.get(), &certificate) == 1, "write a certificate");
    std::string text(BIO_ctrl_pending(memory.get()), '\0');
    Check(BIO_read(memory.get(), text.data(), static_cast<int>(text.size())) == static_cast<int>(text.size()),
          "write a certificate");
    return text;
}

} // namespace

TThrowAwayCertificates::TThrowAwayCertificates(const std::vector<std::string>& serverNames) : Key(NewKey()) {
    const TPrivateKey authorityKey = NewKey();
    const TCertificate authority = NewCertificate("Tidewell throw-away authority", *authorityKey);
    AddExtension(*authority, *authority, NID_basic_constraints, "critical,CA:TRUE,pathlen:0");
    AddExtension(*authority, *authority, NID_key_usage, "critical,keyCertSign");
    Sign(*authority, *authority, *authorityKey);
    Authority = Pem(*authority);

    Server = NewCertificate("Tidewell cloud stand-in", *Key);
    AddExtension(*Server, *authority, NID_basic_constraints, "critical,CA:FALSE");
    AddExtension(*Server, *authority, NID_key_usage, "critical,digitalSignature");
    AddExtension(*Server, *authority, NID_ext_key_usage, "serverAuth");
    AddExtension(*Server, *authority, NID_subject_alt_name, AlternativeNames(serverNames));
    Sign(*Server, *authority, *authorityKey);
}

} // namespace tidewell
