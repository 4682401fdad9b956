#pragma once

#include "api/json.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace ravelin {

// The demo deployment's answer to a sign-in: the bearer token of the session,
// the signed-in user and every person the session may show.
struct SignInAnswer
{
    struct Asset
    {
        qint64 id = 0;
        QString name;
        QString icon;
        friend bool operator==(const Asset &, const Asset &) = default;
    };

    QString token;
    qint64 userId = 0;
    QList<Asset> assets;

    // The whole answer: {"success": true, "data": {"token", "userId", "assets": [{"id", "name", "icon"}]}}.
    // An answer whose "success" is false throws a decoding error carrying the server's message.
    [[nodiscard]] static SignInAnswer decode(const json::Value &value);

    // The assets as the navigation host takes them: id -> {name, icon}.
    [[nodiscard]] QMap<qint64, QStringList> assetsList() const;

    friend bool operator==(const SignInAnswer &, const SignInAnswer &) = default;
};

} // namespace ravelin
