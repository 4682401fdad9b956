#include "views/textlimit.h"

#include <algorithm>

namespace ravelin {

QString TextEditDecision::finalText(const QString &before) const
{
    if (textToSet)
        return *textToSet;
    return allowed ? result : before;
}

TextEditDecision TextLimit::evaluate(const QString &current, qsizetype start, qsizetype length,
                                     const QString &replacement, qint64 limit)
{
    const qsizetype from = std::clamp<qsizetype>(start, 0, current.size());
    const qsizetype count = std::clamp<qsizetype>(length, 0, current.size() - from);
    QString result = current;
    result.replace(from, count, replacement);
    return evaluate(result, limit);
}

TextEditDecision TextLimit::evaluate(const QString &result, qint64 limit)
{
    TextEditDecision decision;
    decision.result = result;
    const qint64 units = result.size();
    if (units >= limit)
        decision.textToSet = result.left(static_cast<qsizetype>(std::max<qint64>(limit, 0)));
    decision.allowed = units <= limit;
    return decision;
}

TextLimit::Change TextLimit::difference(const QString &before, const QString &after)
{
    const qsizetype shorter = std::min(before.size(), after.size());
    qsizetype prefix = 0;
    while (prefix < shorter && before.at(prefix) == after.at(prefix))
        ++prefix;
    qsizetype suffix = 0;
    while (suffix < shorter - prefix && before.at(before.size() - 1 - suffix) == after.at(after.size() - 1 - suffix))
        ++suffix;
    Change change;
    change.start = prefix;
    change.length = before.size() - prefix - suffix;
    change.replacement = after.mid(prefix, after.size() - prefix - suffix);
    return change;
}

} // namespace ravelin
