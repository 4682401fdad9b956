#include "api/trustpolicy.h"

#include <QCryptographicHash>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslConfiguration>
#include <QSslKey>

namespace ravelin {

namespace {

constexpr auto notPinned = QLatin1String("The server's certificate does not carry a pinned public key");

} // namespace

TrustPolicy TrustPolicy::acceptAny()
{
    return TrustPolicy();
}

TrustPolicy TrustPolicy::systemTrustStore()
{
    TrustPolicy policy;
    policy.m_kind = Kind::systemTrustStore;
    return policy;
}

TrustPolicy TrustPolicy::certificateAuthorities(QList<QSslCertificate> certificates)
{
    TrustPolicy policy;
    policy.m_kind = Kind::certificateAuthorities;
    policy.m_certificates = std::move(certificates);
    return policy;
}

TrustPolicy TrustPolicy::pinnedPublicKeys(QList<QByteArray> digests)
{
    TrustPolicy policy;
    policy.m_kind = Kind::pinnedPublicKeys;
    policy.m_pins = std::move(digests);
    return policy;
}

QByteArray TrustPolicy::publicKeyDigest(const QSslCertificate &certificate)
{
    // A public key's DER form is its SubjectPublicKeyInfo.
    const QByteArray info = certificate.publicKey().toDer();
    return info.isEmpty() ? QByteArray() : QCryptographicHash::hash(info, QCryptographicHash::Sha256);
}

bool TrustPolicy::isPinned(const QSslCertificate &certificate) const
{
    if (certificate.isNull())
        return false;
    const QByteArray digest = publicKeyDigest(certificate);
    return !digest.isEmpty() && m_pins.contains(digest);
}

void TrustPolicy::prepare(QNetworkRequest &request) const
{
    if (m_kind == Kind::acceptAny)
        return;
    // Qt keeps one connection (with its TLS settings and sessions) per server
    // and network access manager, made with the settings of the first request,
    // unless requests name the peer to verify: then they get one of their own,
    // checked by this policy.
    request.setPeerVerifyName(request.url().host());
    if (m_kind == Kind::pinnedPublicKeys)
        return;
    QSslConfiguration configuration = request.sslConfiguration();
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    configuration.setCaCertificates(m_kind == Kind::systemTrustStore ? QSslConfiguration::systemCaCertificates()
                                                                     : m_certificates);
    request.setSslConfiguration(configuration);
}

void TrustPolicy::watch(QNetworkReply *reply) const
{
    switch (m_kind) {
    case Kind::acceptAny:
        QObject::connect(reply, &QNetworkReply::sslErrors, reply,
                         [reply](const QList<QSslError> &) { reply->ignoreSslErrors(); });
        return;
    case Kind::systemTrustStore:
    case Kind::certificateAuthorities: return; // Qt refuses what does not verify
    case Kind::pinnedPublicKeys: {
        // The key decides, not the chain: errors of a pinned server are
        // accepted, and a server that is not pinned is dropped before the
        // request goes out, also when its chain verifies.
        const TrustPolicy policy = *this;
        QObject::connect(reply, &QNetworkReply::sslErrors, reply, [reply, policy](const QList<QSslError> &) {
            if (policy.isPinned(reply->sslConfiguration().peerCertificate()))
                reply->ignoreSslErrors();
        });
        QObject::connect(reply, &QNetworkReply::encrypted, reply, [reply, policy] {
            if (!policy.isPinned(reply->sslConfiguration().peerCertificate()))
                reply->abort();
        });
        return;
    }
    }
}

std::optional<QString> TrustPolicy::refusal(const QNetworkReply &reply) const
{
    if (m_kind != Kind::pinnedPublicKeys)
        return std::nullopt;
    // Also a connection opened earlier for another request is held to the pins.
    // Without a certificate no TLS connection was made: the reply's own error
    // says why.
    const QSslCertificate server = reply.sslConfiguration().peerCertificate();
    if (server.isNull() || isPinned(server))
        return std::nullopt;
    return QString(notPinned);
}

} // namespace ravelin
