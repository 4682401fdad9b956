#include "api/usersdata.h"
#include "support/fatalerrortrap.h"

#include <QRandomGenerator>
#include <QTest>

using namespace ravelin;

using Assets = QMap<qint64, QStringList>;

class TestUsersData : public QObject
{
    Q_OBJECT

private slots:
    void build_data();
    void build();
    void coloursStayInRange();
    void shortAssetValueStops_data();
    void shortAssetValueStops();
};

void TestUsersData::build_data()
{
    QTest::addColumn<qint64>("currentUserId");
    QTest::addColumn<Assets>("assets");
    QTest::addColumn<QString>("currentName");
    QTest::addColumn<QString>("currentIcon"); // empty: no icon
    QTest::addColumn<QList<qint64>>("userIds");

    QTest::newRow("listed current user") << qint64(7) << Assets{{7, {"Ann", "ann.png"}}} << "Ann"
                                         << "ann.png" << QList<qint64>{7};
    QTest::newRow("current user not listed")
        << qint64(9) << Assets{{7, {"Ann", "ann.png"}}, {3, {"Bo", "bo.png", "extra"}}} << "Unknown"
        << "" << QList<qint64>{3, 7};
    QTest::newRow("no assets") << qint64(9) << Assets{} << "Unknown"
                               << "" << QList<qint64>{};
}

void TestUsersData::build()
{
    QFETCH(qint64, currentUserId);
    QFETCH(Assets, assets);
    QFETCH(QString, currentName);
    QFETCH(QString, currentIcon);
    QFETCH(QList<qint64>, userIds);

    QRandomGenerator random(42);
    const UsersData data = UsersData::build(currentUserId, assets, random);
    QCOMPARE(data.currentUser.id, currentUserId);
    QCOMPARE(data.currentUser.name, currentName);
    QCOMPARE(data.currentUser.icon.value_or(QString()), currentIcon);
    QCOMPARE(data.currentUser.icon.has_value(), !currentIcon.isEmpty());
    QList<qint64> ids;
    for (const User &u : data.users) {
        ids.append(u.id);
        QCOMPARE(u.name, assets.value(u.id).at(0));
        QCOMPARE(u.icon, assets.value(u.id).at(1));
    }
    QCOMPARE(ids, userIds);
}

void TestUsersData::coloursStayInRange()
{
    QRandomGenerator random(7);
    QList<ColorCodable> colours;
    for (int i = 0; i < 500; ++i)
        colours.append(ColorCodable::randomUserColor(random));
    double lowest = 1, highest = 0;
    for (const ColorCodable &c : colours) {
        QCOMPARE(c.red, 0.01);
        QCOMPARE(c.alpha, 1.0);
        for (double channel : {c.green, c.blue}) {
            QVERIFY(channel >= 0.2 && channel <= 1.0);
            lowest = std::min(lowest, channel);
            highest = std::max(highest, channel);
        }
    }
    // The draw covers the range rather than sitting on one value.
    QVERIFY(lowest < 0.3);
    QVERIFY(highest > 0.9);
}

void TestUsersData::shortAssetValueStops_data()
{
    QTest::addColumn<qint64>("currentUserId");
    QTest::newRow("current user's entry") << qint64(7);
    QTest::newRow("another user's entry") << qint64(1);
}

void TestUsersData::shortAssetValueStops()
{
    QFETCH(qint64, currentUserId);
    test::FatalErrorTrap trap;
    QRandomGenerator random(1);
    QVERIFY_THROWS_EXCEPTION(test::FatalErrorRaised,
                             (void)UsersData::build(currentUserId, Assets{{7, {"Ann"}}}, random));
}

QTEST_GUILESS_MAIN(TestUsersData)
#include "tst_usersdata.moc"
