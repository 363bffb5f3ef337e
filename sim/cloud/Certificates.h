#pragma once

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>
#include <string>
#include <vector>

namespace tidewell {

struct TOpenSslFree {
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(X509* certificate) const { X509_free(certificate); }
    void operator()(X509_EXTENSION* extension) const { X509_EXTENSION_free(extension); }
    void operator()(BIO* bio) const { BIO_free(bio); }
};
using TPrivateKey = std::unique_ptr<EVP_PKEY, TOpenSslFree>;
using TCertificate = std::unique_ptr<X509, TOpenSslFree>;

// A certificate authority that lives as long as this object, and one server certificate that it signed. The
// authority's key is gone once the constructor is done.
class TThrowAwayCertificates {
  public:
    // DNS names and IP addresses that the server goes by. Throws TError.
    explicit TThrowAwayCertificates(const std::vector<std::string>& serverNames = {"localhost", "127.0.0.1"});

    const std::string& AuthorityPem() const { return Authority; }
    X509& ServerCertificate() const { return *Server; }
    EVP_PKEY& ServerKey() const { return *Key; }

  private:
    std::string Authority;
    TPrivateKey Key;
    TCertificate Server;
};

} // namespace tidewell
