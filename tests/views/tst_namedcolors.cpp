#include "resources/namedcolors.h"

#include <QTest>

using namespace ravelin;

class tst_NamedColors : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void everyAssetHasBothVariants_data();
    void everyAssetHasBothVariants();
    void unknownNameGivesNothingOrTheFallback();
    void appearanceSelectsTheVariant();
};

void tst_NamedColors::cleanup()
{
    NamedColors::setAppearance(Appearance::light);
}

void tst_NamedColors::everyAssetHasBothVariants_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"Label_text", "View_background", "View_background_reverted", "CustomRed", "CustomGreen", "CustomGray",
          "CustomOrange", "CustomYellow", "CustomBlue", "CustomShadow", "NavigationBar", "Accent"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void tst_NamedColors::everyAssetHasBothVariants()
{
    QFETCH(QString, name);
    const std::optional<QColor> light = NamedColors::color(name, Appearance::light);
    const std::optional<QColor> dark = NamedColors::color(name, Appearance::dark);
    QVERIFY(light.has_value() && light->isValid());
    QVERIFY(dark.has_value() && dark->isValid());
    QCOMPARE(light->alpha(), 255);
    QVERIFY(NamedColors::contains(name));
    QVERIFY(NamedColors::names().contains(name));
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
    for (const QString &name : NamedColors::names())
        QVERIFY2(NamedColors::color(name).has_value(), qPrintable(name));
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
