#include "demo/common/selfsignedcertificate.h"

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/sha.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <memory>
#include <stdexcept>
#include <utility>

namespace ravelin {

namespace {

constexpr long kValiditySeconds = 30L * 24 * 60 * 60;
constexpr long kBackdateSeconds = 60L * 60;

struct X509Free
{
    void operator()(X509 *p) const { X509_free(p); }
};
struct PKeyFree
{
    void operator()(EVP_PKEY *p) const { EVP_PKEY_free(p); }
};
struct BioFree
{
    void operator()(BIO *p) const { BIO_free(p); }
};
struct ExtensionFree
{
    void operator()(X509_EXTENSION *p) const { X509_EXTENSION_free(p); }
};

[[noreturn]] void fail(const char *what)
{
    throw std::runtime_error(std::string("Self-signed certificate: ") + what);
}

void addExtension(X509 *certificate, int nid, const char *value)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    std::unique_ptr<X509_EXTENSION, ExtensionFree> extension(X509V3_EXT_conf_nid(nullptr, &context, nid, value));
    if (!extension || X509_add_ext(certificate, extension.get(), -1) != 1)
        fail("cannot add an extension");
}

QByteArray readAll(BIO *bio)
{
    char *data = nullptr;
    const long size = BIO_get_mem_data(bio, &data);
    return size > 0 ? QByteArray(data, static_cast<qsizetype>(size)) : QByteArray();
}

} // namespace

SelfSignedCertificate SelfSignedCertificate::create(std::chrono::system_clock::time_point now,
                                                    const QByteArray &commonName)
{
    std::unique_ptr<EVP_PKEY, PKeyFree> key(EVP_EC_gen("P-256"));
    if (!key)
        fail("cannot make the key");

    std::unique_ptr<X509, X509Free> certificate(X509_new());
    if (!certificate || X509_set_version(certificate.get(), 2) != 1)
        fail("cannot make the certificate");

    // A random positive 63-bit serial number.
    unsigned char bytes[8] = {};
    if (RAND_bytes(bytes, sizeof bytes) != 1)
        fail("no random bytes");
    uint64_t serial = 0;
    for (unsigned char byte : bytes)
        serial = (serial << 8) | byte;
    serial = (serial >> 1) | 1;
    if (ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate.get()), serial) != 1)
        fail("cannot set the serial number");

    time_t start = std::chrono::system_clock::to_time_t(now);
    if (!X509_time_adj_ex(X509_getm_notBefore(certificate.get()), 0, -kBackdateSeconds, &start)
        || !X509_time_adj_ex(X509_getm_notAfter(certificate.get()), 0, kValiditySeconds, &start))
        fail("cannot set the validity");

    X509_NAME *name = X509_get_subject_name(certificate.get());
    const auto *common = reinterpret_cast<const unsigned char *>(commonName.constData());
    if (X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, common, int(commonName.size()), -1, 0) != 1
        || X509_set_issuer_name(certificate.get(), name) != 1)
        fail("cannot set the names");
    if (X509_set_pubkey(certificate.get(), key.get()) != 1)
        fail("cannot set the public key");

    addExtension(certificate.get(), NID_basic_constraints, "critical,CA:FALSE");
    addExtension(certificate.get(), NID_ext_key_usage, "serverAuth");
    addExtension(certificate.get(), NID_subject_alt_name, "IP:127.0.0.1,DNS:localhost");

    if (X509_sign(certificate.get(), key.get(), EVP_sha256()) <= 0)
        fail("cannot sign the certificate");

    return SelfSignedCertificate(certificate.release(), key.release());
}

SelfSignedCertificate::SelfSignedCertificate(X509 *certificate, EVP_PKEY *privateKey)
    : m_certificate(certificate)
    , m_privateKey(privateKey)
{ }

SelfSignedCertificate::SelfSignedCertificate(SelfSignedCertificate &&other) noexcept
    : m_certificate(std::exchange(other.m_certificate, nullptr))
    , m_privateKey(std::exchange(other.m_privateKey, nullptr))
{ }

SelfSignedCertificate &SelfSignedCertificate::operator=(SelfSignedCertificate &&other) noexcept
{
    if (this != &other) {
        release();
        m_certificate = std::exchange(other.m_certificate, nullptr);
        m_privateKey = std::exchange(other.m_privateKey, nullptr);
    }
    return *this;
}

SelfSignedCertificate::~SelfSignedCertificate()
{
    release();
}

void SelfSignedCertificate::release()
{
    X509_free(m_certificate);
    EVP_PKEY_free(m_privateKey);
    m_certificate = nullptr;
    m_privateKey = nullptr;
}

QByteArray SelfSignedCertificate::certificatePem() const
{
    if (!m_certificate)
        return {};
    std::unique_ptr<BIO, BioFree> bio(BIO_new(BIO_s_mem()));
    if (!bio || PEM_write_bio_X509(bio.get(), m_certificate) != 1)
        return {};
    return readAll(bio.get());
}

QByteArray SelfSignedCertificate::privateKeyPem() const
{
    if (!m_privateKey)
        return {};
    std::unique_ptr<BIO, BioFree> bio(BIO_new(BIO_s_mem()));
    if (!bio || PEM_write_bio_PrivateKey(bio.get(), m_privateKey, nullptr, nullptr, 0, nullptr, nullptr) != 1)
        return {};
    return readAll(bio.get());
}

QByteArray SelfSignedCertificate::publicKeySha256() const
{
    if (!m_privateKey)
        return {};
    unsigned char *info = nullptr;
    const int size = i2d_PUBKEY(m_privateKey, &info);
    if (size <= 0)
        return {};
    QByteArray digest(SHA256_DIGEST_LENGTH, Qt::Uninitialized);
    SHA256(info, static_cast<size_t>(size), reinterpret_cast<unsigned char *>(digest.data()));
    OPENSSL_free(info);
    return digest;
}

} // namespace ravelin
