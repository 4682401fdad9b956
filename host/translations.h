#pragma once

#include <QLocale>

QT_BEGIN_NAMESPACE
class QTranslator;
QT_END_NAMESPACE

namespace ravelin {

// The library's own texts in the language of `locale`. The catalogues are
// built into the library; a host calls this once, before it creates
// RavelinNavVC, with the locale its own texts use. Returns the installed
// translator (owned by the application object), or nullptr where the library
// has no catalogue for that language: English, the texts' own language, needs
// none. Hosts that ship catalogues as files load "ravelin_<language>.qm" from
// Ravelin_TRANSLATIONS_DIR with a QTranslator of their own instead.
QTranslator *installTranslator(const QLocale &locale = QLocale());

} // namespace ravelin
