#include "views/textviewwithplaceholder.h"

#include "host/notificationcenter.h"
#include "support/shots.h"
#include "views/keyboardnotifier.h"
#include "views/keyboardobserving.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QList>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <memory>

using namespace ravelin;
using namespace ravelin::test;

namespace {

const QString placeholder = QStringLiteral("Provide a reason for blocking the task");
// U+1F600, two UTF-16 units.
const QString grinningFace = QString::fromUtf8("\xF0\x9F\x98\x80");

// A shown window with the text view and a second field that has the focus.
struct Form
{
    QWidget window;
    TextViewWithPlaceholder *textView = new TextViewWithPlaceholder(&window);
    QLineEdit *other = new QLineEdit(&window);

    Form()
    {
        window.resize(390, 240);
        auto *layout = new QVBoxLayout(&window);
        textView->setPlaceholderText(placeholder);
        layout->addWidget(textView);
        layout->addWidget(other);
        other->setFocus();
        window.show();
        window.activateWindow();
    }

    [[nodiscard]] bool focus(QWidget *widget)
    {
        widget->setFocus();
        return QTest::qWaitFor([widget] { return widget->hasFocus(); }, 2000);
    }

    // Shows the placeholder the way an empty, unfocused view must.
    [[nodiscard]] bool showsPlaceholder() const
    {
        return textView->showingPlaceholder() && textView->toPlainText() == placeholder
            && textView->textColor() == textView->placeholderTextColor() && textView->text().isEmpty();
    }
};

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

class tst_TextViewWithPlaceholder : public QObject
{
    Q_OBJECT

private slots:
    void placeholderShowsWhileEmptyAndUnfocused();
    void setTextLeavesThePlaceholderStateAlone();
    void editsKeepToTheLimit_data();
    void editsKeepToTheLimit();
    void showAndHideReachTheScreenOnce();
    void removedOrDestroyedScreensHearNothing();
    void notifierPostsOnlyChanges();
};

void tst_TextViewWithPlaceholder::placeholderShowsWhileEmptyAndUnfocused()
{
    Form form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    QCOMPARE(form.textView->maxNoOfCharacters(), qint64(512));
    QVERIFY(form.showsPlaceholder());
    grabShot(form.window, QStringLiteral("textview-placeholder"));

    const QColor normalText = form.other->palette().color(QPalette::Text);
    QSignalSpy showing(form.textView, &TextViewWithPlaceholder::showingPlaceholderChanged);
    QVERIFY(form.focus(form.textView));
    QVERIFY(!form.textView->showingPlaceholder());
    QCOMPARE(form.textView->toPlainText(), QString());
    QCOMPARE(form.textView->textColor(), normalText);
    QCOMPARE(showing.count(), 1);
    QCOMPARE(showing.constFirst().constFirst().toBool(), false);

    // Leaving it empty brings the placeholder back; leaving text keeps it.
    QVERIFY(form.focus(form.other));
    QVERIFY(form.showsPlaceholder());
    QVERIFY(form.focus(form.textView));
    QTest::keyClicks(form.textView, QStringLiteral("Valve replaced"));
    QVERIFY(form.focus(form.other));
    QVERIFY(!form.textView->showingPlaceholder());
    QCOMPARE(form.textView->text(), QStringLiteral("Valve replaced"));
    grabShot(form.window, QStringLiteral("textview-typed"));
}

void tst_TextViewWithPlaceholder::setTextLeavesThePlaceholderStateAlone()
{
    Form form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    // Written as it is, without the limit, while the placeholder state stays.
    form.textView->setMaxNoOfCharacters(4);
    form.textView->setText(QStringLiteral("written by code"));
    QVERIFY(form.textView->showingPlaceholder());
    QCOMPARE(form.textView->toPlainText(), QStringLiteral("written by code"));
    QCOMPARE(form.textView->text(), QString());

    QVERIFY(form.focus(form.textView));
    QCOMPARE(form.textView->toPlainText(), QString());
}

void tst_TextViewWithPlaceholder::editsKeepToTheLimit_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("inserted");

    QTest::newRow("typing into 512 units") << 512 << 512 << "type"
                                           << "c";
    QTest::newRow("pasting to 600 units") << 511 << 100 << "paste" << QString(89, QLatin1Char('p'));
    QTest::newRow("emoji into 511 units") << 511 << 511 << "insert" << grinningFace;
}

void tst_TextViewWithPlaceholder::editsKeepToTheLimit()
{
    QFETCH(int, length);
    QFETCH(int, position);
    QFETCH(QString, how);
    QFETCH(QString, inserted);

    Form form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    QVERIFY(form.focus(form.textView));
    const QString start(length, QLatin1Char('a'));
    form.textView->setText(start);
    QTextCursor cursor = form.textView->textCursor();
    cursor.setPosition(position);
    form.textView->setTextCursor(cursor);
    if (how == QLatin1String("type")) {
        QTest::keyClicks(form.textView, inserted);
    } else if (how == QLatin1String("paste")) {
        QApplication::clipboard()->setText(inserted);
        form.textView->paste();
    } else {
        form.textView->insertPlainText(inserted);
    }

    // The first 512 units of the edited text, even when that splits a pair (the cases: tst_alertpresenter evaluate).
    const QString edited = QString(start).insert(position, inserted);
    QCOMPARE(form.textView->text().size(), std::min<qsizetype>(edited.size(), 512));
    QCOMPARE(form.textView->text(), edited.left(512));
}

void tst_TextViewWithPlaceholder::showAndHideReachTheScreenOnce()
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

void tst_TextViewWithPlaceholder::removedOrDestroyedScreensHearNothing()
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

void tst_TextViewWithPlaceholder::notifierPostsOnlyChanges()
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

QTEST_MAIN(tst_TextViewWithPlaceholder)
#include "tst_textviewwithplaceholder.moc"
