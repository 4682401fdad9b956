#include "host/translations.h"

#include "api/debuglog.h"

#include <QCoreApplication>
#include <QTranslator>

namespace ravelin {

QTranslator *installTranslator(const QLocale &locale)
{
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (!translator->load(locale, QStringLiteral("ravelin"), QStringLiteral("_"), QStringLiteral(":/ravelin/i18n"))) {
        delete translator;
        return nullptr;
    }
    QCoreApplication::installTranslator(translator);
    debugLog(lcHost, QStringLiteral("Installed the translation ") + translator->filePath());
    return translator;
}

} // namespace ravelin
