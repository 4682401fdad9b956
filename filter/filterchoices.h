#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>

namespace ravelin {

// What the filter screen shows when the worker applies it: the category field's
// text, the two pickers' dates and the selected segment of each control (-1 when
// none is selected).
struct FilterChoices
{
    QString categoryText;
    QDateTime dateStart;
    QDateTime dateEnd;
    qint64 priorityIndex = -1;
    qint64 sortKeyIndex = -1;
    qint64 sortOrderIndex = -1;
};

} // namespace ravelin
