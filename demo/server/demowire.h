#pragma once

#include "demo/server/democomment.h"
#include "demo/server/demodefinition.h"
#include "demo/server/demoitem.h"
#include "demo/server/demotask.h"
#include "demo/server/demouser.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>

#include <array>
#include <optional>

// The JSON the demo deployment writes: task, item and comment objects with
// camelCase keys, dates as "yyyy-MM-dd'T'HH:mm:ss.SSS+0000" in UTC, and the
// {"success": ..., "data": ...} envelope of every API answer.
namespace ravelin::demowire {

[[nodiscard]] QString serverDate(const QDateTime &moment);

[[nodiscard]] QJsonObject definition(const DemoDefinition &entry);
[[nodiscard]] QJsonArray definitions(const QList<DemoDefinition> &entries);
[[nodiscard]] QJsonObject asset(const DemoUser &user);
// `counts`: items completed, with incidents, open.
[[nodiscard]] QJsonObject task(const DemoTask &task, const std::array<int, 3> &counts);
[[nodiscard]] QJsonObject item(const DemoItem &item);
// `author` may be null for a user the deployment does not know.
[[nodiscard]] QJsonObject comment(const DemoComment &comment, const DemoUser *author);

// {"success":true,"data":data}, or {"success":true} when data is undefined.
[[nodiscard]] QByteArray success(const QJsonValue &data = QJsonValue(QJsonValue::Undefined));
// {"success":false,"message":message}
[[nodiscard]] QByteArray failure(const QString &message);

} // namespace ravelin::demowire
