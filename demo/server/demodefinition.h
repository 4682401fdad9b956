#pragma once

#include <QString>

namespace ravelin {

// One entry of the deployment's constants: a task status, an item status or a task category.
struct DemoDefinition
{
    qint64 id = 0;
    QString name;
};

} // namespace ravelin
