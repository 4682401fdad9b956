#pragma once

#include "api/colorcodable.h"
#include "api/user.h"

#include <QList>
#include <QMap>
#include <QStringList>

class QRandomGenerator;

namespace ravelin {

// The users of a session: the signed-in user and every asset the host listed.
struct UsersData
{
    ColorCodable defaultColor;
    User currentUser;
    QList<User> users;

    // Builds the users from the host's inputs. Every asset value must hold at
    // least a name and an icon; a shorter value stops the process.
    [[nodiscard]] static UsersData build(qint64 currentUserId, const QMap<qint64, QStringList> &assetsList,
                                         QRandomGenerator &random);

    // The listed user with this id, if any.
    [[nodiscard]] const User *user(qint64 id) const;
};

} // namespace ravelin
