#include "api/usersdata.h"

#include "api/fatalerror.h"

namespace ravelin {

namespace {

void requirePair(qint64 id, const QStringList &value)
{
    if (value.size() < 2)
        fatalError(QStringLiteral("Asset %1 must have a name and an icon").arg(id), "UsersData");
}

} // namespace

UsersData UsersData::build(qint64 currentUserId, const QMap<qint64, QStringList> &assetsList, QRandomGenerator &random)
{
    UsersData data;
    data.defaultColor = ColorCodable::randomUserColor(random);

    data.currentUser.id = currentUserId;
    if (const auto it = assetsList.constFind(currentUserId); it != assetsList.constEnd()) {
        requirePair(currentUserId, *it);
        data.currentUser.name = it->at(0);
        data.currentUser.icon = it->at(1);
    } else {
        data.currentUser.name = QStringLiteral("Unknown");
    }
    data.currentUser.color = ColorCodable::randomUserColor(random);

    for (auto it = assetsList.constBegin(); it != assetsList.constEnd(); ++it) {
        requirePair(it.key(), it.value());
        data.users.append(User{it.key(), it.value().at(0), it.value().at(1), ColorCodable::randomUserColor(random)});
    }
    return data;
}

const User *UsersData::user(qint64 id) const
{
    for (const User &u : users) {
        if (u.id == id)
            return &u;
    }
    return nullptr;
}

} // namespace ravelin
