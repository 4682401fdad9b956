#pragma once

#include <QByteArray>
#include <QList>
#include <QSslCertificate>
#include <QString>

#include <optional>

class QNetworkReply;
class QNetworkRequest;

namespace ravelin {

// Which server certificates the network manager accepts. A host chooses one
// for its deployment; the default accepts any certificate, as the library
// always has.
//
// - acceptAny: every certificate, whoever signed it and whatever name it bears.
// - systemTrustStore: a chain to one of the system's certificate authorities,
//   issued for the server's name.
// - certificateAuthorities: a chain to one of the given certificates (and
//   only those), issued for the server's name. A self-signed server
//   certificate can be given as its own authority.
// - pinnedPublicKeys: the server's own certificate carries one of the given
//   public keys (SHA-256 of its SubjectPublicKeyInfo, DER); nothing else of the
//   certificate is checked. Proven by the TLS handshake, the key is what counts.
//
// A server that fails the check is never sent the request (its handshake is
// refused, or the connection is dropped once it is up): the request fails as a
// transport error. Checks happen when a connection is opened; Qt shares
// connections between all requests of one QNetworkAccessManager to the same
// server, so a host that talks to the deployment with weaker checks of its own
// should give the library a network access manager of its own.
class TrustPolicy
{
public:
    enum class Kind { acceptAny, systemTrustStore, certificateAuthorities, pinnedPublicKeys };

    // Accepts any certificate.
    TrustPolicy() = default;

    [[nodiscard]] static TrustPolicy acceptAny();
    [[nodiscard]] static TrustPolicy systemTrustStore();
    [[nodiscard]] static TrustPolicy certificateAuthorities(QList<QSslCertificate> certificates);
    // SHA-256 digests (32 bytes each) of SubjectPublicKeyInfo structures.
    [[nodiscard]] static TrustPolicy pinnedPublicKeys(QList<QByteArray> digests);

    // The pin of a certificate's public key: SHA-256 of its SubjectPublicKeyInfo.
    [[nodiscard]] static QByteArray publicKeyDigest(const QSslCertificate &certificate);

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] const QList<QSslCertificate> &certificates() const { return m_certificates; }
    [[nodiscard]] const QList<QByteArray> &pinnedDigests() const { return m_pins; }

    // Gives a request the certificate authorities to check against.
    void prepare(QNetworkRequest &request) const;
    // Watches a reply of a prepared request: accepts what the policy accepts and
    // drops a connection to a server whose key is not pinned.
    void watch(QNetworkReply *reply) const;
    // Why a finished reply's server is refused, if it is (its key not pinned).
    [[nodiscard]] std::optional<QString> refusal(const QNetworkReply &reply) const;

private:
    [[nodiscard]] bool isPinned(const QSslCertificate &certificate) const;

    Kind m_kind = Kind::acceptAny;
    QList<QSslCertificate> m_certificates;
    QList<QByteArray> m_pins;
};

} // namespace ravelin
