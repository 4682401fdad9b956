#include "views/alertpresenter.h"

#include "support/fatalerrortrap.h"
#include "support/shots.h"
#include "views/alertview.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

using namespace ravelin;
using namespace ravelin::test;

namespace {

// A phone-sized window with one screen in it.
struct Window
{
    QWidget window;
    QWidget *screen = new QWidget(&window);

    Window()
    {
        window.resize(390, 844);
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        (new QLabel(QStringLiteral("Tasks"), screen))->move(20, 20);
        layout->addWidget(screen);
    }

    bool show()
    {
        window.show();
        return QTest::qWaitForWindowExposed(&window);
    }
};

QStringList labelTexts(const QWidget *widget)
{
    QStringList texts;
    for (const QLabel *label : widget->findChildren<QLabel *>())
        texts << label->text();
    return texts;
}

} // namespace

class tst_AlertPresenter : public QObject
{
    Q_OBJECT

private slots:
    void alertWithActionsIsFoundWithItsTexts();
    void answeringDismissesThenRunsTheHandler_data();
    void answeringDismissesThenRunsTheHandler();
    void focusReturnsToTheScreenAfterwards();
    void alertsCoverTheWindowNewestOnTop();
    void transientAlertDismissesItselfThenCompletes_data();
    void transientAlertDismissesItselfThenCompletes();
    void transientCompletionDoesNotOutliveItsHost();
    void attributedMessageShowsItsText();
    void missingHostStopsTheProcess();
};

void tst_AlertPresenter::alertWithActionsIsFoundWithItsTexts()
{
    Window window;
    QVERIFY(window.show());
    QCOMPARE(AlertPresenter::visibleAlert(window.screen), nullptr);

    Alert alert;
    alert.title = QStringLiteral("Acknowledge task `Pump P-12`");
    alert.message = QStringLiteral("The task is currently assigned to you, but requires acknowledgment from your part. "
                                   "Do you want to mark it as acknowledged?");
    alert.addAction(QStringLiteral("Yes")).addAction(QStringLiteral("No"), AlertActionStyle::cancel);
    AlertView *shown = AlertPresenter::present(window.screen, alert);

    AlertView *found = AlertPresenter::visibleAlert(window.screen);
    QCOMPARE(found, shown);
    QVERIFY(found->isVisible());
    QCOMPARE(found->title(), alert.title);
    QCOMPARE(found->message(), alert.message);
    QCOMPARE(found->actionTitles(), (QStringList{"Yes", "No"}));
    QVERIFY(found->actionButton(QStringLiteral("Yes")) != nullptr);
    QVERIFY(found->actionButton(QStringLiteral("Maybe")) == nullptr);
    QVERIFY(labelTexts(found).contains(alert.title));
    QVERIFY(labelTexts(found).contains(alert.message));
    grabShot(window.window, QStringLiteral("alert-actions"));

    // An action it does not have changes nothing.
    QVERIFY(!found->triggerAction(QStringLiteral("Maybe")));
    QVERIFY(!found->isDismissed());
    QCOMPARE(AlertPresenter::visibleAlert(window.screen), found);
}

void tst_AlertPresenter::answeringDismissesThenRunsTheHandler_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("handled");
    QTest::newRow("Yes triggered") << "trigger Yes"
                                   << "yes";
    QTest::newRow("No clicked") << "click No"
                                << "no";
    QTest::newRow("Escape is the cancel action") << "escape"
                                                 << "no";
}

void tst_AlertPresenter::answeringDismissesThenRunsTheHandler()
{
    QFETCH(QString, how);
    QFETCH(QString, handled);

    Window window;
    QVERIFY(window.show());
    QStringList calls;
    bool alertGoneWhenHandled = false;
    const auto handler = [&](const QString &name) {
        return [&, name] {
            calls << name;
            alertGoneWhenHandled = AlertPresenter::visibleAlert(window.screen) == nullptr;
        };
    };
    Alert alert;
    alert.title = QStringLiteral("Start task `Meter reading`");
    alert.addAction(QStringLiteral("Yes"), AlertActionStyle::standard, handler(QStringLiteral("yes")));
    alert.addAction(QStringLiteral("No"), AlertActionStyle::cancel, handler(QStringLiteral("no")));
    QPointer<AlertView> view = AlertPresenter::present(window.screen, alert);

    if (how == QLatin1String("trigger Yes"))
        QVERIFY(view->triggerAction(QStringLiteral("Yes")));
    else if (how == QLatin1String("click No"))
        QTest::mouseClick(view->actionButton(QStringLiteral("No")), Qt::LeftButton);
    else
        QTest::keyClick(view, Qt::Key_Escape);
    QCOMPARE(calls, QStringList{handled});
    QVERIFY(alertGoneWhenHandled);
    QVERIFY(view->isDismissed());
    // Answered once only.
    QVERIFY(!view->triggerAction(QStringLiteral("Yes")));
    QCOMPARE(calls, QStringList{handled});
    QTRY_VERIFY_WITH_TIMEOUT(view.isNull(), 2000);
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

void tst_AlertPresenter::alertsCoverTheWindowNewestOnTop()
{
    Window window;
    QVERIFY(window.show());
    AlertView *first
        = AlertPresenter::present(window.screen, Alert{QStringLiteral("First"), QStringLiteral("Message"), {}, {}});
    QCOMPARE(first->geometry(), window.window.rect());
    window.window.resize(430, 900);
    QTRY_COMPARE_WITH_TIMEOUT(first->geometry(), window.window.rect(), 2000);
    auto *card = first->findChild<QWidget *>(QStringLiteral("alertCard"));
    QVERIFY(card != nullptr);
    QCOMPARE(card->geometry().center().x(), first->rect().center().x());
    QVERIFY(card->width() <= AlertView::cardWidth);

    AlertView *second = AlertPresenter::present(window.screen, Alert{QStringLiteral("Second"), {}, {}, {}});
    QCOMPARE(AlertPresenter::visibleAlerts(window.screen), (QList<AlertView *>{first, second}));
    QCOMPARE(AlertPresenter::visibleAlert(window.screen), second);
    second->dismiss();
    QCOMPARE(AlertPresenter::visibleAlert(window.screen), first);
}

void tst_AlertPresenter::transientAlertDismissesItselfThenCompletes_data()
{
    QTest::addColumn<int>("delayMilliseconds");
    QTest::newRow("at once") << 0;
    QTest::newRow("after a while") << 300;
}

void tst_AlertPresenter::transientAlertDismissesItselfThenCompletes()
{
    QFETCH(int, delayMilliseconds);
    Window window;
    QVERIFY(window.show());
    int completions = 0;
    bool goneWhenCompleted = false;
    // Buttons of a transient alert are not shown.
    Alert alert{QStringLiteral("Items Loading"), QStringLiteral("Couldn't load task items"), {}, {}};
    alert.addAction(QStringLiteral("OK"));
    AlertPresenter::presentTransient(window.screen, alert, std::chrono::milliseconds(delayMilliseconds), [&] {
        ++completions;
        goneWhenCompleted = AlertPresenter::visibleAlert(window.screen) == nullptr;
    });
    AlertView *view = AlertPresenter::visibleAlert(window.screen);
    QVERIFY(view != nullptr);
    QCOMPARE(view->title(), QStringLiteral("Items Loading"));
    QCOMPARE(view->message(), QStringLiteral("Couldn't load task items"));
    QVERIFY(view->actionTitles().isEmpty());
    QVERIFY(view->findChildren<QPushButton *>().isEmpty());
    QCOMPARE(completions, 0);
    QElapsedTimer shown;
    shown.start();

    QTRY_COMPARE_WITH_TIMEOUT(completions, 1, delayMilliseconds + 5000);
    QVERIFY(shown.elapsed() >= delayMilliseconds);
    QVERIFY(goneWhenCompleted);
    // Once only: a later turn of the event loop adds nothing.
    bool later = false;
    QTimer::singleShot(delayMilliseconds, [&later] { later = true; });
    QTRY_VERIFY_WITH_TIMEOUT(later, delayMilliseconds + 5000);
    QCOMPARE(completions, 1);
}

void tst_AlertPresenter::transientCompletionDoesNotOutliveItsHost()
{
    Window window;
    QVERIFY(window.show());
    bool completed = false;
    QPointer<AlertView> view = AlertPresenter::presentTransient(
        window.screen, QStringLiteral("Task Event Update"), QStringLiteral("Pump\nTask deleted."),
        std::chrono::milliseconds(20), [&completed] { completed = true; });
    delete window.screen;
    // The alert still leaves after its delay, but the completion stays silent.
    QTRY_VERIFY_WITH_TIMEOUT(view.isNull(), 5000);
    QVERIFY(!completed);

    // An alert whose window goes leaves with it, silently too.
    {
        Window gone;
        view = AlertPresenter::presentTransient(gone.screen, QStringLiteral("Title"), QString(),
                                                std::chrono::milliseconds(10), [&completed] { completed = true; });
    }
    QVERIFY(view.isNull());
    bool later = false;
    QTimer::singleShot(50, [&later] { later = true; });
    QTRY_VERIFY_WITH_TIMEOUT(later, 5000);
    QVERIFY(!completed);
}

void tst_AlertPresenter::attributedMessageShowsItsText()
{
    Window window;
    QVERIFY(window.show());
    QFont light;
    light.setWeight(QFont::ExtraLight);
    Alert alert;
    alert.title = QStringLiteral("Items Status Successfully Updated!");
    alert.attributedMessage = AttributedText(QStringLiteral("\n Items:\n\n"), light).append(QStringLiteral("A\nB\nC"));
    AlertView *view = AlertPresenter::presentTransient(window.screen, alert, std::chrono::minutes(1));
    QCOMPARE(view->message(), QStringLiteral("\n Items:\n\nA\nB\nC"));
    QVERIFY(view->attributedMessage().has_value());
    QCOMPARE(view->attributedMessage()->runs().size(), 2);

    auto *label = view->findChild<QLabel *>(QStringLiteral("alertMessage"));
    QVERIFY(label != nullptr);
    QCOMPARE(label->textFormat(), Qt::RichText);
    QVERIFY(label->text().contains(QStringLiteral("A<br>B<br>C")));
    grabShot(window.window, QStringLiteral("alert-transient"));
}

void tst_AlertPresenter::missingHostStopsTheProcess()
{
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, AlertPresenter::present(nullptr, Alert{}));
}

QTEST_MAIN(tst_AlertPresenter)
#include "tst_alertpresenter.moc"
