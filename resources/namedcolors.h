#pragma once

#include <QColor>
#include <QString>
#include <QStringList>

#include <optional>

namespace ravelin {

// The two appearances that every named colour has a variant for.
enum class Appearance { light, dark };

// Names of the framework's colour assets.
namespace ColorNames {
inline const QString labelText = QStringLiteral("Label_text");
inline const QString viewBackground = QStringLiteral("View_background");
inline const QString viewBackgroundReverted = QStringLiteral("View_background_reverted");
inline const QString customRed = QStringLiteral("CustomRed");
inline const QString customGreen = QStringLiteral("CustomGreen");
inline const QString customGray = QStringLiteral("CustomGray");
inline const QString customOrange = QStringLiteral("CustomOrange");
inline const QString customYellow = QStringLiteral("CustomYellow");
inline const QString customBlue = QStringLiteral("CustomBlue");
inline const QString customShadow = QStringLiteral("CustomShadow");
// The standard colour of the navigation bar (outside an emergency).
inline const QString navigationBar = QStringLiteral("NavigationBar");
// Text on the navigation bar.
inline const QString navigationBarText = QStringLiteral("NavigationBar_text");
// Accent of interactive text: links, refresh controls, the comment text.
inline const QString accent = QStringLiteral("Accent");
// Background behind cards (table and screen backgrounds).
inline const QString groupedBackground = QStringLiteral("Grouped_background");
// Secondary text: dates, captions, counts.
inline const QString secondaryLabelText = QStringLiteral("Secondary_label_text");
// Hairlines between rows and around controls.
inline const QString separator = QStringLiteral("Separator");
} // namespace ColorNames

// The framework's colour assets, each with a light and a dark variant.
class NamedColors
{
public:
    // The variant for the current appearance; nothing when the name is unknown.
    [[nodiscard]] static std::optional<QColor> color(const QString &name);
    [[nodiscard]] static std::optional<QColor> color(const QString &name, Appearance appearance);

    // The colour, or the fallback when the name is unknown.
    [[nodiscard]] static QColor color(const QString &name, const QColor &fallback);
    [[nodiscard]] static QColor color(const QString &name, Appearance appearance, const QColor &fallback);

    [[nodiscard]] static bool contains(const QString &name);
    [[nodiscard]] static QStringList names();

    // The appearance in force for the whole framework; light until the host says
    // otherwise. Read and written on the main thread.
    [[nodiscard]] static Appearance appearance();
    static void setAppearance(Appearance appearance);
};

} // namespace ravelin
