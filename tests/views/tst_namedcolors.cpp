#include "resources/namedcolors.h"

#include <QTest>

using namespace ravelin;

class tst_NamedColors : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void everyAssetHasBothVariants();
    void unknownNameGivesNothingOrTheFallback();
    void appearanceSelectsTheVariant();
};

void tst_NamedColors::cleanup()
{
    NamedColors::setAppearance(Appearance::light);
}

void tst_NamedColors::everyAssetHasBothVariants()
{
    QVERIFY(NamedColors::names().size() >= 12);
    for (const QString &name : NamedColors::names()) {
        const std::optional<QColor> light = NamedColors::color(name, Appearance::light);
        const std::optional<QColor> dark = NamedColors::color(name, Appearance::dark);
        QVERIFY2(light && light->isValid() && light->alpha() == 255, qPrintable(name));
        QVERIFY2(dark && dark->isValid(), qPrintable(name));
        QVERIFY(NamedColors::contains(name));
    }
}

void tst_NamedColors::unknownNameGivesNothingOrTheFallback()
{
    QVERIFY(!NamedColors::color(QStringLiteral("CustomPurple")).has_value());
    QVERIFY(!NamedColors::color(QStringLiteral("label_text")).has_value()); // names are case-sensitive
    QVERIFY(!NamedColors::contains(QStringLiteral("CustomPurple")));

    const QColor fallback(1, 2, 3);
    QCOMPARE(NamedColors::color(QStringLiteral("CustomPurple"), fallback), fallback);
    QCOMPARE(NamedColors::color(ColorNames::customRed, fallback), *NamedColors::color(ColorNames::customRed));
    QVERIFY(NamedColors::color(ColorNames::customRed, fallback) != fallback);
}

void tst_NamedColors::appearanceSelectsTheVariant()
{
    const QColor lightBackground = *NamedColors::color(ColorNames::viewBackground, Appearance::light);
    const QColor darkBackground = *NamedColors::color(ColorNames::viewBackground, Appearance::dark);
    // Backgrounds and text swap brightness between the two appearances.
    QVERIFY(lightBackground.lightnessF() > 0.9);
    QVERIFY(darkBackground.lightnessF() < 0.2);
    QVERIFY(NamedColors::color(ColorNames::labelText, Appearance::light)->lightnessF() < 0.3);
    QVERIFY(NamedColors::color(ColorNames::labelText, Appearance::dark)->lightnessF() > 0.8);

    QCOMPARE(*NamedColors::color(ColorNames::viewBackground), lightBackground);
    NamedColors::setAppearance(Appearance::dark);
    QCOMPARE(*NamedColors::color(ColorNames::viewBackground), darkBackground);
}

QTEST_GUILESS_MAIN(tst_NamedColors)
#include "tst_namedcolors.moc"
