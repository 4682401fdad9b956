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
    void showAndHideReachTheScreenOnce();
    void removedOrDestroyedScreensHearNothing();
    void notifierPostsOnlyChanges();
};

void tst_KeyboardObserving::showAndHideReachTheScreenOnce()
{
    NotificationCenter center;
    Screen screen;
    screen.addKeyboardObservers(center);
    screen.addKeyboardObservers(center);

    const QRectF frame(0, 500, 390, 344);
    center.post(KeyboardNotificationNames::keyboardWillShow, frame);
    center.post(KeyboardNotificationNames::keyboardWillShow, QStringLiteral("not a frame"));
    center.post(KeyboardNotificationNames::keyboardWillHide);
    QCOMPARE(screen.shown, (QList<QRectF>{frame, QRectF()}));
    QCOMPARE(screen.hidden, 1);
}

void tst_KeyboardObserving::removedOrDestroyedScreensHearNothing()
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

    auto gone = std::make_unique<Screen>();
    gone->addKeyboardObservers(center);
    QCOMPARE(center.observerCount(KeyboardNotificationNames::keyboardWillHide), 1);
    gone.reset();
    QCOMPARE(center.observerCount(KeyboardNotificationNames::keyboardWillHide), 0);
    center.post(KeyboardNotificationNames::keyboardWillHide);
}

void tst_KeyboardObserving::notifierPostsOnlyChanges()
{
    NotificationCenter center;
    Screen screen;
    screen.addKeyboardObservers(center);
    KeyboardNotifier notifier(center, nullptr);
    const QRectF low(0, 500, 390, 344);
    const QRectF high(0, 450, 390, 394);
    notifier.keyboardChanged(false, QRectF()); // hidden while hidden
    notifier.keyboardChanged(true, low);
    notifier.keyboardChanged(true, low); // the same frame again
    notifier.keyboardChanged(true, high);
    notifier.keyboardChanged(false, QRectF());
    notifier.keyboardChanged(false, QRectF());
    QCOMPARE(screen.shown, (QList<QRectF>{low, high}));
    QCOMPARE(screen.hidden, 1);
}

QTEST_MAIN(tst_KeyboardObserving)
#include "tst_keyboardobserving.moc"
