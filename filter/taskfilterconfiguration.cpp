#include "filter/taskfilterconfiguration.h"

#include "api/datecoding.h"

namespace ravelin {

TaskFilterConfiguration TaskFilterConfiguration::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    TaskFilterConfiguration c;
    const QString priority = o.string("selectedPriority");
    const auto p = TaskPriorities::fromRawValue(priority);
    if (!p)
        throw json::DecodingError(
            json::DecodingError::Kind::dataCorrupted,
            QStringLiteral("Cannot initialize TaskPriority from invalid String value %1").arg(priority));
    c.selectedPriority = *p;
    c.selectedCategory = TaskCategoryDefinition::decode(o.value("selectedCategory"));
    c.dateStart = o.date("dateStart");
    c.dateEnd = o.date("dateEnd");
    return c;
}

QJsonObject TaskFilterConfiguration::encode() const
{
    return QJsonObject{{QStringLiteral("selectedPriority"), TaskPriorities::rawValue(selectedPriority)},
                       {QStringLiteral("selectedCategory"), selectedCategory.encode()},
                       {QStringLiteral("dateStart"), formatServerDate(dateStart)},
                       {QStringLiteral("dateEnd"), formatServerDate(dateEnd)}};
}

} // namespace ravelin
