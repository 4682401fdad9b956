#include "host/notificationcenter.h"
#include "views/keyboardnotifier.h"
#include "views/keyboardobserving.h"

#include <QList>
#include <QTest>

#include <memory>

using namespace ravelin;

namespace {

class Screen : public KeyboardObserving
{
public:
    QList<QRectF> shown;
    int hidden = 0;

protected:
    void keyboardWillShow(const QRectF &endFrame) override { shown.append(endFrame); }
    void keyboardWillHide() override { ++hidden; }
};

} // namespace

class tst_KeyboardObserving : public QObject
{
    Q_OBJECT

private slots:
    void showAndHideReachTheScreen();
    void notificationWithoutFrameGivesAnEmptyFrame();
    void removedObserversHearNothing();
    void addingTwiceObservesOnce();
    void destroyedScreenIsForgotten();
    void notifierPostsOnChanges_data();
    void notifierPostsOnChanges();
};

void tst_KeyboardObserving::showAndHideReachTheScreen()
{
    NotificationCenter center;
    Screen screen;
    screen.addKeyboardObservers(center);

    const QRectF frame(0, 500, 390, 344);
    center.post(KeyboardNotificationNames::keyboardWillShow, frame);
    center.post(KeyboardNotificationNames::keyboardWillHide);
    QCOMPARE(screen.shown, QList<QRectF>{frame});
    QCOMPARE(screen.hidden, 1);
}

void tst_KeyboardObserving::notificationWithoutFrameGivesAnEmptyFrame()
{
    NotificationCenter center;
    Screen screen;
    screen.addKeyboardObservers(center);
    center.post(KeyboardNotificationNames::keyboardWillShow, QStringLiteral("not a frame"));
    QCOMPARE(screen.shown, QList<QRectF>{QRectF()});
}

void tst_KeyboardObserving::removedObserversHearNothing()
{
    NotificationCenter center;
    Screen screen;
    screen.addKeyboardObservers(center);
    screen.removeKeyboardObservers(center);
    center.post(KeyboardNotificationNames::keyboardWillShow, QRectF(0, 0, 1, 1));
    center.post(KeyboardNotificationNames::keyboardWillHide);
    QVERIFY(screen.shown.isEmpty());
    QCOMPARE(screen.hidden, 0);
    QCOMPARE(center.observerCount(KeyboardNotificationNames::keyboardWillShow), 0);
}

void tst_KeyboardObserving::addingTwiceObservesOnce()
{
    NotificationCenter center;
    Screen screen;
    screen.addKeyboardObservers(center);
    screen.addKeyboardObservers(center);
    center.post(KeyboardNotificationNames::keyboardWillHide);
    QCOMPARE(screen.hidden, 1);
}

void tst_KeyboardObserving::destroyedScreenIsForgotten()
{
    NotificationCenter center;
    auto screen = std::make_unique<Screen>();
    screen->addKeyboardObservers(center);
    QCOMPARE(center.observerCount(KeyboardNotificationNames::keyboardWillHide), 1);
    screen.reset();
    QCOMPARE(center.observerCount(KeyboardNotificationNames::keyboardWillHide), 0);
    center.post(KeyboardNotificationNames::keyboardWillHide);
}

void tst_KeyboardObserving::notifierPostsOnChanges_data()
{
    QTest::addColumn<QList<bool>>("visible");
    QTest::addColumn<QList<QRectF>>("frames");
    QTest::addColumn<int>("expectedShown");
    QTest::addColumn<int>("expectedHidden");

    const QRectF low(0, 500, 390, 344);
    const QRectF high(0, 450, 390, 394);
    QTest::newRow("appears then goes") << QList<bool>{true, false} << QList<QRectF>{low, QRectF()} << 1 << 1;
    QTest::newRow("same frame twice") << QList<bool>{true, true} << QList<QRectF>{low, low} << 1 << 0;
    QTest::newRow("frame changes while shown") << QList<bool>{true, true} << QList<QRectF>{low, high} << 2 << 0;
    QTest::newRow("hidden while hidden") << QList<bool>{false, false} << QList<QRectF>{QRectF(), QRectF()} << 0 << 0;
}

void tst_KeyboardObserving::notifierPostsOnChanges()
{
    QFETCH(QList<bool>, visible);
    QFETCH(QList<QRectF>, frames);
    QFETCH(int, expectedShown);
    QFETCH(int, expectedHidden);

    NotificationCenter center;
    Screen screen;
    screen.addKeyboardObservers(center);
    KeyboardNotifier notifier(center, nullptr);
    for (qsizetype index = 0; index < visible.size(); ++index)
        notifier.keyboardChanged(visible.at(index), frames.at(index));

    QCOMPARE(screen.shown.size(), expectedShown);
    QCOMPARE(screen.hidden, expectedHidden);
    if (expectedShown > 0) {
        const qsizetype lastVisible = visible.lastIndexOf(true);
        QCOMPARE(screen.shown.constLast(), frames.at(lastVisible));
    }
}

QTEST_MAIN(tst_KeyboardObserving)
#include "tst_keyboardobserving.moc"
