#pragma once

#include <QString>

namespace ravelin {

// A person (asset) of the demo deployment. Only field workers can sign in;
// the dispatch desk writes comments and owns tasks.
struct DemoUser
{
    qint64 id = 0;
    QString name;
    QString icon; // short icon name, e.g. "people_01"
    bool canSignIn = true;
};

} // namespace ravelin
