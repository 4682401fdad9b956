#include "demo/app/signinanswer.h"

#include "demo/app/hostenvelope.h"

namespace ravelin {

SignInAnswer SignInAnswer::decode(const json::Value &value)
{
    const json::Object data = hostenvelope::data(value).toObject();
    SignInAnswer answer;
    answer.token = data.string("token");
    answer.userId = data.int64("userId");
    answer.assets = data.value("assets").toArray().map<Asset>([](const json::Value &entry) {
        const json::Object asset = entry.toObject();
        return Asset{asset.int64("id"), asset.string("name"), asset.string("icon")};
    });
    return answer;
}

QMap<qint64, QStringList> SignInAnswer::assetsList() const
{
    QMap<qint64, QStringList> list;
    for (const Asset &asset : assets)
        list.insert(asset.id, QStringList{asset.name, asset.icon});
    return list;
}

} // namespace ravelin
