#include "views/alertpresenter.h"

#include "support/fatalerrortrap.h"
#include "shots.h"
#include "views/alertview.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include <chrono>

using namespace ravelin;
using namespace ravelin::test;
using namespace std::chrono_literals;

namespace {

// A phone-sized window with one screen in it.
struct Window
{
    QWidget window;
    QWidget *screen = nullptr;

    Window()
    {
        window.resize(390, 844);
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        screen = new QWidget(&window);
        auto *label = new QLabel(QStringLiteral("Tasks"), screen);
        label->move(20, 20);
        layout->addWidget(screen);
    }

    bool show()
    {
        window.show();
        return QTest::qWaitForWindowExposed(&window);
    }
};

} // namespace

class tst_AlertPresenter : public QObject
{
    Q_OBJECT

private slots:
    void alertWithActionsIsFoundWithItsTexts();
    void triggeringAnActionDismissesThenRunsItsHandler_data();
    void triggeringAnActionDismissesThenRunsItsHandler();
    void clickingTheButtonTriggersTheAction();
    void escapeTriggersTheCancelAction();
    void unknownActionDoesNothing();
    void focusReturnsToTheScreenAfterwards();
    void alertCoversTheWindowAndFollowsItsSize();
    void newestAlertIsOnTop();
    void transientAlertDismissesItselfThenCompletes_data();
    void transientAlertDismissesItselfThenCompletes();
    void transientAlertHasNoButtons();
    void transientCompletionDoesNotOutliveItsHost();
    void transientAlertGoesWithItsWindow();
    void eventAlertPutsSubtitleAndBodyOnTwoLines();
    void attributedMessageShowsItsText();
    void missingHostStopsTheProcess();
    void render();
};

void tst_AlertPresenter::alertWithActionsIsFoundWithItsTexts()
{
    Window window;
    QVERIFY(window.show());
    QCOMPARE(AlertPresenter::visibleAlert(window.screen), nullptr);

    Alert alert;
    alert.title = QStringLiteral("Acknowledge task `Pump P-12`");
    alert.message = QStringLiteral("Do you want to mark it as acknowledged?");
    alert.addAction(QStringLiteral("Yes")).addAction(QStringLiteral("No"), AlertActionStyle::cancel);
    AlertView *shown = AlertPresenter::present(window.screen, alert);

    AlertView *found = AlertPresenter::visibleAlert(window.screen);
    QCOMPARE(found, shown);
    QCOMPARE(found->objectName(), QStringLiteral("alert"));
    QCOMPARE(found->title(), alert.title);
    QCOMPARE(found->message(), alert.message);
    QCOMPARE(found->actionTitles(), QStringList({QStringLiteral("Yes"), QStringLiteral("No")}));
    QVERIFY(found->actionButton(QStringLiteral("Yes")) != nullptr);
    QVERIFY(found->actionButton(QStringLiteral("Maybe")) == nullptr);
    QVERIFY(found->isVisible());

    // Texts are on screen as labels.
    const auto labels = found->findChildren<QLabel *>();
    QStringList texts;
    for (const QLabel *label : labels)
        texts << label->text();
    QVERIFY(texts.contains(alert.title));
    QVERIFY(texts.contains(alert.message));
}

void tst_AlertPresenter::triggeringAnActionDismissesThenRunsItsHandler_data()
{
    QTest::addColumn<QString>("tapped");
    QTest::addColumn<QStringList>("expectedCalls");
    QTest::newRow("Yes") << QStringLiteral("Yes") << QStringList{QStringLiteral("yes")};
    QTest::newRow("No") << QStringLiteral("No") << QStringList{QStringLiteral("no")};
}

void tst_AlertPresenter::triggeringAnActionDismissesThenRunsItsHandler()
{
    QFETCH(QString, tapped);
    QFETCH(QStringList, expectedCalls);

    Window window;
    QVERIFY(window.show());
    QStringList calls;
    bool alertGoneWhenHandled = false;
    Alert alert;
    alert.title = QStringLiteral("Start task `Meter reading`");
    alert.addAction(QStringLiteral("Yes"), AlertActionStyle::standard, [&] {
        calls << QStringLiteral("yes");
        alertGoneWhenHandled = AlertPresenter::visibleAlert(window.screen) == nullptr;
    });
    alert.addAction(QStringLiteral("No"), AlertActionStyle::cancel, [&] {
        calls << QStringLiteral("no");
        alertGoneWhenHandled = AlertPresenter::visibleAlert(window.screen) == nullptr;
    });
    QPointer<AlertView> view = AlertPresenter::present(window.screen, alert);

    QVERIFY(view->triggerAction(tapped));
    QCOMPARE(calls, expectedCalls);
    QVERIFY(alertGoneWhenHandled);
    QVERIFY(view->isDismissed());
    QVERIFY(!view->triggerAction(tapped));
    QCOMPARE(calls, expectedCalls);
    QTRY_VERIFY_WITH_TIMEOUT(view.isNull(), 2000);
}

void tst_AlertPresenter::clickingTheButtonTriggersTheAction()
{
    Window window;
    QVERIFY(window.show());
    int okTaps = 0;
    Alert alert;
    alert.title = QStringLiteral("The operation couldn't be completed.");
    alert.message = QStringLiteral("Please contact technical support if the problem continues.");
    alert.addAction(QStringLiteral("OK"), AlertActionStyle::cancel, [&okTaps] { ++okTaps; });
    AlertPresenter::present(window.screen, alert);

    QPushButton *ok = AlertPresenter::visibleAlert(window.screen)->actionButton(QStringLiteral("OK"));
    QVERIFY(ok != nullptr);
    QVERIFY(ok->isVisible());
    QTest::mouseClick(ok, Qt::LeftButton);
    QCOMPARE(okTaps, 1);
    QCOMPARE(AlertPresenter::visibleAlert(window.screen), nullptr);
}

void tst_AlertPresenter::escapeTriggersTheCancelAction()
{
    Window window;
    QVERIFY(window.show());
    QStringList calls;
    Alert alert;
    alert.title = QStringLiteral("Unblock task `Fence`");
    alert.addAction(QStringLiteral("Yes"), AlertActionStyle::standard, [&calls] { calls << QStringLiteral("yes"); });
    alert.addAction(QStringLiteral("No"), AlertActionStyle::cancel, [&calls] { calls << QStringLiteral("no"); });
    AlertView *view = AlertPresenter::present(window.screen, alert);
    QTest::keyClick(view, Qt::Key_Escape);
    QCOMPARE(calls, QStringList{QStringLiteral("no")});
}

void tst_AlertPresenter::unknownActionDoesNothing()
{
    Window window;
    Alert alert;
    alert.title = QStringLiteral("Title");
    alert.addAction(QStringLiteral("OK"));
    AlertView *view = AlertPresenter::present(window.screen, alert);
    QVERIFY(!view->triggerAction(QStringLiteral("Cancel")));
    QVERIFY(!view->isDismissed());
    QCOMPARE(AlertPresenter::visibleAlert(window.screen), view);
}

void tst_AlertPresenter::focusReturnsToTheScreenAfterwards()
{
    Window window;
    auto *field = new QLineEdit(window.screen);
    field->move(20, 60);
    field->setFocus();
    window.window.show();
    window.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window.window));
    QTRY_VERIFY_WITH_TIMEOUT(field->hasFocus(), 2000);

    Alert alert{QStringLiteral("Title"), QString(), {}, {}};
    alert.addAction(QStringLiteral("OK"));
    AlertView *view = AlertPresenter::present(window.screen, alert);
    QTRY_VERIFY_WITH_TIMEOUT(!field->hasFocus(), 2000);
    // Typing goes nowhere while the alert is up.
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("abc"));
    QCOMPARE(field->text(), QString());

    view->triggerAction(QStringLiteral("OK"));
    QTRY_VERIFY_WITH_TIMEOUT(field->hasFocus(), 2000);
}

void tst_AlertPresenter::alertCoversTheWindowAndFollowsItsSize()
{
    Window window;
    QVERIFY(window.show());
    AlertView *view = AlertPresenter::present(window.screen, Alert{QStringLiteral("Title"), QStringLiteral("Message"), {}, {}});
    QCOMPARE(view->geometry(), window.window.rect());
    window.window.resize(430, 900);
    QTRY_COMPARE_WITH_TIMEOUT(view->geometry(), window.window.rect(), 2000);
    auto *card = view->findChild<QWidget *>(QStringLiteral("alertCard"));
    QVERIFY(card != nullptr);
    QCOMPARE(card->geometry().center().x(), view->rect().center().x());
    QVERIFY(card->width() <= AlertView::cardWidth);
}

void tst_AlertPresenter::newestAlertIsOnTop()
{
    Window window;
    AlertView *first = AlertPresenter::present(window.screen, Alert{QStringLiteral("First"), {}, {}, {}});
    AlertView *second = AlertPresenter::present(window.screen, Alert{QStringLiteral("Second"), {}, {}, {}});
    QCOMPARE(AlertPresenter::visibleAlerts(window.screen), (QList<AlertView *>{first, second}));
    QCOMPARE(AlertPresenter::visibleAlert(window.screen), second);
    second->dismiss();
    QCOMPARE(AlertPresenter::visibleAlert(window.screen), first);
}

void tst_AlertPresenter::transientAlertDismissesItselfThenCompletes_data()
{
    QTest::addColumn<int>("delayMilliseconds");
    QTest::newRow("short") << int(AlertPresenter::shortDelay.count());
    QTest::newRow("long") << int(AlertPresenter::longDelay.count());
}

void tst_AlertPresenter::transientAlertDismissesItselfThenCompletes()
{
    QFETCH(int, delayMilliseconds);
    Window window;
    QVERIFY(window.show());
    int completions = 0;
    bool goneWhenCompleted = false;
    AlertPresenter::presentTransient(window.screen, QStringLiteral("Items Loading"), QStringLiteral("Couldn't load task items"),
                                     std::chrono::milliseconds(delayMilliseconds), [&] {
                                         ++completions;
                                         goneWhenCompleted = AlertPresenter::visibleAlert(window.screen) == nullptr;
                                     });
    AlertView *view = AlertPresenter::visibleAlert(window.screen);
    QVERIFY(view != nullptr);
    QCOMPARE(view->title(), QStringLiteral("Items Loading"));
    QCOMPARE(view->message(), QStringLiteral("Couldn't load task items"));
    QCOMPARE(completions, 0);

    QTRY_COMPARE_WITH_TIMEOUT(completions, 1, delayMilliseconds + 5000);
    QVERIFY(goneWhenCompleted);
    QTest::qWait(50);
    QCOMPARE(completions, 1);
}

void tst_AlertPresenter::transientAlertHasNoButtons()
{
    Window window;
    Alert alert{QStringLiteral("No items selected"), QStringLiteral(" "), {}, {}};
    alert.addAction(QStringLiteral("OK"));
    AlertView *view = AlertPresenter::presentTransient(window.screen, alert, AlertPresenter::shortDelay);
    QVERIFY(view->actionTitles().isEmpty());
    QVERIFY(view->findChildren<QPushButton *>().isEmpty());
}

void tst_AlertPresenter::transientCompletionDoesNotOutliveItsHost()
{
    Window window;
    QVERIFY(window.show());
    bool completed = false;
    QPointer<AlertView> view = AlertPresenter::presentTransient(window.screen, QStringLiteral("Task Event Update"),
                                                                QStringLiteral("Pump\nTask deleted."),
                                                                AlertPresenter::shortDelay, [&completed] { completed = true; });
    delete window.screen;
    window.screen = nullptr;

    // The alert still leaves after its delay, but the completion stays silent.
    QTRY_VERIFY_WITH_TIMEOUT(view.isNull(), 6000);
    QVERIFY(!completed);
}

void tst_AlertPresenter::transientAlertGoesWithItsWindow()
{
    bool completed = false;
    QPointer<AlertView> view;
    {
        Window window;
        view = AlertPresenter::presentTransient(window.screen, QStringLiteral("Title"), QString(), 10ms,
                                                [&completed] { completed = true; });
    }
    QVERIFY(view.isNull());
    QTest::qWait(100);
    QVERIFY(!completed);
}

void tst_AlertPresenter::eventAlertPutsSubtitleAndBodyOnTwoLines()
{
    Window window;
    AlertView *view = AlertPresenter::presentEventAlert(window.screen, QStringLiteral("Task Event Update"),
                                                        QStringLiteral("Pump maintenance"), QStringLiteral("Task deleted."),
                                                        AlertPresenter::shortDelay);
    QCOMPARE(view->title(), QStringLiteral("Task Event Update"));
    QCOMPARE(view->message(), QStringLiteral("Pump maintenance\nTask deleted."));
    QVERIFY(view->actionTitles().isEmpty());
}

void tst_AlertPresenter::attributedMessageShowsItsText()
{
    Window window;
    QFont light;
    light.setPointSize(12);
    light.setWeight(QFont::ExtraLight);
    QFont regular;
    regular.setPointSize(12);
    AttributedText message(QStringLiteral("\n Items:\n\n"), light);
    message.append(QStringLiteral("A\nB\nC"), regular);

    Alert alert;
    alert.title = QStringLiteral("Items Status Successfully Updated!");
    alert.attributedMessage = message;
    AlertView *view = AlertPresenter::presentTransient(window.screen, alert, AlertPresenter::longDelay);
    QCOMPARE(view->message(), QStringLiteral("\n Items:\n\nA\nB\nC"));
    QVERIFY(view->attributedMessage().has_value());
    QCOMPARE(view->attributedMessage()->runs().size(), 2);

    auto *label = view->findChild<QLabel *>(QStringLiteral("alertMessage"));
    QVERIFY(label != nullptr);
    QCOMPARE(label->textFormat(), Qt::RichText);
    QVERIFY(label->text().contains(QStringLiteral("A<br>B<br>C")));
}

void tst_AlertPresenter::missingHostStopsTheProcess()
{
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, AlertPresenter::present(nullptr, Alert{}));
}

void tst_AlertPresenter::render()
{
    Window window;
    QVERIFY(window.show());
    Alert alert;
    alert.title = QStringLiteral("Acknowledge task `Pump station P-12`");
    alert.message = QStringLiteral("The task is currently assigned to you, but requires acknowledgment from your part. "
                                   "Do you want to mark it as acknowledged?");
    alert.addAction(QStringLiteral("Yes")).addAction(QStringLiteral("No"), AlertActionStyle::cancel);
    AlertView *view = AlertPresenter::present(window.screen, alert);
    QVERIFY(!grabShot(window.window, QStringLiteral("alert-actions")).isNull());
    view->dismiss();

    QFont light;
    light.setPointSize(12);
    light.setWeight(QFont::ExtraLight);
    Alert updated;
    updated.title = QStringLiteral("Items Status Successfully Updated!");
    updated.attributedMessage = AttributedText(QStringLiteral("\n Items:\n\n"), light).append(QStringLiteral("Valve V-3\nGauge G-7"));
    AlertPresenter::presentTransient(window.screen, updated, AlertPresenter::longDelay);
    QVERIFY(!grabShot(window.window, QStringLiteral("alert-transient")).isNull());
}

QTEST_MAIN(tst_AlertPresenter)
#include "tst_alertpresenter.moc"
