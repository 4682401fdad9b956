#include "items/item.h"

#include "api/datecoding.h"

namespace ravelin {

ItemPtr Item::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    auto item = std::make_shared<Item>();
    item->id = o.int64("id");
    item->taskId = o.int64("taskId");
    item->name = o.string("name");
    item->details = o.string("details");
    item->isAudit = o.value("isAudit").toStringView() != "0";
    item->dateCreated = o.date("dateCreated");
    item->dateUpdated = o.dateIfPresent("dateUpdated");
    item->status = ItemStatuses::fromServerId(o.int64("itemStatusId"));
    item->qrCode = o.stringIfPresent("qrCode");
    return item;
}

QJsonObject Item::encode() const
{
    QJsonObject out{
        {QStringLiteral("id"), id},
        {QStringLiteral("taskId"), taskId},
        {QStringLiteral("name"), name},
        {QStringLiteral("details"), details},
        {QStringLiteral("isAudit"), isAudit},
        {QStringLiteral("dateCreated"), formatServerDate(dateCreated)},
        {QStringLiteral("status"), ItemStatuses::rawValue(status)},
        {QStringLiteral("isQRMapped"), isQRMapped},
    };
    if (dateUpdated)
        out.insert(QStringLiteral("dateUpdated"), formatServerDate(*dateUpdated));
    if (qrCode)
        out.insert(QStringLiteral("qrCode"), *qrCode);
    return out;
}

} // namespace ravelin
