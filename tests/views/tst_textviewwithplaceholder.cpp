#include "views/textviewwithplaceholder.h"

#include "shots.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace ravelin;
using namespace ravelin::test;

namespace {

const QString placeholder = QStringLiteral("Provide a reason for blocking the task");

// A window with the text view and a second field that can take the focus.
struct Form
{
    QWidget window;
    TextViewWithPlaceholder *textView = nullptr;
    QLineEdit *other = nullptr;

    Form()
    {
        window.resize(390, 240);
        auto *layout = new QVBoxLayout(&window);
        textView = new TextViewWithPlaceholder(&window);
        textView->setPlaceholderText(placeholder);
        other = new QLineEdit(&window);
        layout->addWidget(textView);
        layout->addWidget(other);
        // The field under test gets the focus only when a test gives it.
        other->setFocus();
    }

    bool show()
    {
        window.show();
        window.activateWindow();
        return QTest::qWaitForWindowActive(&window);
    }
};

} // namespace

class tst_TextViewWithPlaceholder : public QObject
{
    Q_OBJECT

private slots:
    void defaults();
    void emptyViewShowsItsPlaceholder();
    void focusClearsThePlaceholder();
    void leavingEmptyBringsThePlaceholderBack();
    void leavingWithTextKeepsIt();
    void setTextLeavesThePlaceholderStateAlone();
    void typingIntoTextBelowTheLimit();
    void pastingPastTheLimitKeepsTheFirstUnits();
    void surrogatePairAtTheLimit();
    void render();
};

void tst_TextViewWithPlaceholder::defaults()
{
    TextViewWithPlaceholder view;
    QCOMPARE(view.maxNoOfCharacters(), qint64(512));
    QCOMPARE(view.placeholderText(), QString());
    QCOMPARE(view.placeholderTextColor(), QColor::fromRgbF(0.78f, 0.78f, 0.8f, 1.0f));
    QVERIFY(view.showingPlaceholder());
    QCOMPARE(view.text(), QString());
}

void tst_TextViewWithPlaceholder::emptyViewShowsItsPlaceholder()
{
    Form form;
    QVERIFY(form.show());
    form.other->setFocus();
    QVERIFY(form.textView->showingPlaceholder());
    QCOMPARE(form.textView->toPlainText(), placeholder);
    QCOMPARE(form.textView->textColor(), form.textView->placeholderTextColor());
    QCOMPARE(form.textView->text(), QString());
}

void tst_TextViewWithPlaceholder::focusClearsThePlaceholder()
{
    Form form;
    QVERIFY(form.show());
    const QColor normalText = form.other->palette().color(QPalette::Text);
    QSignalSpy showing(form.textView, &TextViewWithPlaceholder::showingPlaceholderChanged);

    form.textView->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(form.textView->hasFocus(), 2000);
    QVERIFY(!form.textView->showingPlaceholder());
    QCOMPARE(form.textView->toPlainText(), QString());
    QCOMPARE(form.textView->textColor(), normalText);
    QCOMPARE(showing.count(), 1);
    QCOMPARE(showing.constFirst().constFirst().toBool(), false);

    QTest::keyClicks(form.textView, QStringLiteral("Gate locked"));
    QCOMPARE(form.textView->text(), QStringLiteral("Gate locked"));
}

void tst_TextViewWithPlaceholder::leavingEmptyBringsThePlaceholderBack()
{
    Form form;
    QVERIFY(form.show());
    form.textView->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(form.textView->hasFocus(), 2000);
    form.other->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(form.other->hasFocus(), 2000);

    QVERIFY(form.textView->showingPlaceholder());
    QCOMPARE(form.textView->toPlainText(), placeholder);
    QCOMPARE(form.textView->textColor(), form.textView->placeholderTextColor());
    QCOMPARE(form.textView->text(), QString());
}

void tst_TextViewWithPlaceholder::leavingWithTextKeepsIt()
{
    Form form;
    QVERIFY(form.show());
    form.textView->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(form.textView->hasFocus(), 2000);
    QTest::keyClicks(form.textView, QStringLiteral("Valve replaced"));
    form.other->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(form.other->hasFocus(), 2000);

    QVERIFY(!form.textView->showingPlaceholder());
    QCOMPARE(form.textView->text(), QStringLiteral("Valve replaced"));
}

void tst_TextViewWithPlaceholder::setTextLeavesThePlaceholderStateAlone()
{
    Form form;
    QVERIFY(form.show());
    QVERIFY(form.textView->showingPlaceholder());

    // Written as it is, without the limit, while the placeholder state stays.
    form.textView->setMaxNoOfCharacters(4);
    form.textView->setText(QStringLiteral("written by code"));
    QVERIFY(form.textView->showingPlaceholder());
    QCOMPARE(form.textView->toPlainText(), QStringLiteral("written by code"));
    QCOMPARE(form.textView->text(), QString());

    form.textView->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(form.textView->hasFocus(), 2000);
    QCOMPARE(form.textView->toPlainText(), QString());
}

void tst_TextViewWithPlaceholder::typingIntoTextBelowTheLimit()
{
    Form form;
    QVERIFY(form.show());
    form.textView->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(form.textView->hasFocus(), 2000);
    const QString start(511, QLatin1Char('a'));
    form.textView->setText(start);
    form.textView->moveCursor(QTextCursor::End);

    QTest::keyClick(form.textView, Qt::Key_B);
    QCOMPARE(form.textView->text(), start + QLatin1Char('b'));

    // At the limit, nothing more goes in.
    QTest::keyClick(form.textView, Qt::Key_C);
    QCOMPARE(form.textView->text(), start + QLatin1Char('b'));
}

void tst_TextViewWithPlaceholder::pastingPastTheLimitKeepsTheFirstUnits()
{
    Form form;
    QVERIFY(form.show());
    form.textView->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(form.textView->hasFocus(), 2000);
    const QString start(511, QLatin1Char('a'));
    form.textView->setText(start);

    QTextCursor cursor = form.textView->textCursor();
    cursor.setPosition(100);
    form.textView->setTextCursor(cursor);
    const QString pasted(89, QLatin1Char('p'));
    QApplication::clipboard()->setText(pasted);
    form.textView->paste();

    QString result = start;
    result.insert(100, pasted);
    QCOMPARE(result.size(), 600);
    QCOMPARE(form.textView->text(), result.left(512));
}

void tst_TextViewWithPlaceholder::surrogatePairAtTheLimit()
{
    Form form;
    QVERIFY(form.show());
    form.textView->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(form.textView->hasFocus(), 2000);
    const QString face = QString::fromUtf8("\xF0\x9F\x98\x80");

    form.textView->setText(QString(510, QLatin1Char('a')));
    form.textView->moveCursor(QTextCursor::End);
    form.textView->insertPlainText(face);
    QCOMPARE(form.textView->text().size(), 512);
    QVERIFY(form.textView->text().endsWith(face));

    form.textView->setText(QString(511, QLatin1Char('a')));
    form.textView->moveCursor(QTextCursor::End);
    form.textView->insertPlainText(face);
    const QString expected = (QString(511, QLatin1Char('a')) + face).left(512);
    QCOMPARE(form.textView->text().size(), 512);
    QCOMPARE(form.textView->text().left(511), expected.left(511));
}

void tst_TextViewWithPlaceholder::render()
{
    Form form;
    QVERIFY(form.show());
    form.other->setFocus();
    QVERIFY(!grabShot(form.window, QStringLiteral("textview-placeholder")).isNull());
    form.textView->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(form.textView->hasFocus(), 2000);
    QTest::keyClicks(form.textView, QStringLiteral("Fence damaged near gate 4; access blocked by a fallen tree."));
    QVERIFY(!grabShot(form.window, QStringLiteral("textview-typed")).isNull());
}

QTEST_MAIN(tst_TextViewWithPlaceholder)
#include "tst_textviewwithplaceholder.moc"
