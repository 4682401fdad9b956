#include "views/alertpresenter.h"

#include "host/notificationcenter.h"
#include "support/fatalerrortrap.h"
#include "support/shots.h"
#include "views/alertview.h"
#include "views/attributedtext.h"
#include "views/keyboardnotifier.h"
#include "views/keyboardobserving.h"
#include "views/textlimit.h"
#include "views/textviewwithplaceholder.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextImageFormat>
#include <QVBoxLayout>
#include <memory>

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

QImage square(const QColor &color)
{
    QImage image(12, 12, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

QString throughDocument(const QString &html)
{
    QTextDocument document;
    document.setHtml(html);
    return document.toPlainText();
}

QString units(qsizetype count, QChar fill = QLatin1Char('a'))
{
    return QString(count, fill);
}

// U+1F600, two UTF-16 units.
const QString grinningFace = QString::fromUtf8("\xF0\x9F\x98\x80");

const QString placeholder = QStringLiteral("Provide a reason for blocking the task");

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

class tst_AlertPresenter : public QObject
{
    Q_OBJECT

private slots:
    void alertsAreFoundWithTheirTextsNewestOnTop();
    void answeringDismissesThenRunsTheHandler_data();
    void answeringDismissesThenRunsTheHandler();
    void focusReturnsToTheScreenAfterwards();
    void transientAlertDismissesItselfThenCompletes_data();
    void transientAlertDismissesItselfThenCompletes();
    void transientCompletionDoesNotOutliveItsHost();
    void attributedMessageShowsItsText();
    void missingHostStopsTheProcess();
    void plainTextJoinsRunsAndMarksImages();
    void htmlEscapesStylesAndKeepsBlanks();
    void insertIntoCarriesFontsColoursAndImages();
    void evaluate_data();
    void evaluate();
    void finalText_data();
    void finalText();
    void difference_data();
    void difference();
    void placeholderShowsWhileEmptyAndUnfocused();
    void editsKeepToTheLimit();
    void removedOrDestroyedScreensHearNothing();
    void notifierPostsOnlyChangesToTheScreenOnce();
};

void tst_AlertPresenter::alertsAreFoundWithTheirTextsNewestOnTop()
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

    // Alerts cover the window, the newest on top.
    QCOMPARE(found->geometry(), window.window.rect());
    window.window.resize(430, 900);
    QTRY_COMPARE_WITH_TIMEOUT(found->geometry(), window.window.rect(), 2000);
    auto *card = found->findChild<QWidget *>(QStringLiteral("alertCard"));
    QVERIFY(card != nullptr);
    QCOMPARE(card->geometry().center().x(), found->rect().center().x());
    QVERIFY(card->width() <= AlertView::cardWidth);
    AlertView *second = AlertPresenter::present(window.screen, Alert{QStringLiteral("Second"), {}, {}, {}});
    QCOMPARE(AlertPresenter::visibleAlerts(window.screen), (QList<AlertView *>{found, second}));
    QCOMPARE(AlertPresenter::visibleAlert(window.screen), second);
    second->dismiss();
    QCOMPARE(AlertPresenter::visibleAlert(window.screen), found);
}

void tst_AlertPresenter::answeringDismissesThenRunsTheHandler_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("handled");
    QTest::newRow("Yes triggered") << QStringLiteral("trigger Yes") << "yes";
    QTest::newRow("No clicked") << QStringLiteral("click No") << "no";
    QTest::newRow("Escape is the cancel action") << QStringLiteral("escape") << "no";
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
    QTest::qWait(delayMilliseconds + 50);
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
    QTest::qWait(50);
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

void tst_AlertPresenter::plainTextJoinsRunsAndMarksImages()
{
    AttributedText text;
    text.append(QString());
    QVERIFY(text.isEmpty());
    text.appendImage(square(Qt::green), QRectF(0, -3, 12, 12));
    text.append(QStringLiteral("Valve V-3\n"));
    // An image that failed to load still takes its place.
    text.appendImage(QImage(), QRectF(0, -3, 12, 12));
    text.append(QStringLiteral("Gauge G-7\n"));

    const QString expected = QString(AttributedText::objectReplacementCharacter) + QStringLiteral("Valve V-3\n")
        + QString(AttributedText::objectReplacementCharacter) + QStringLiteral("Gauge G-7\n");
    QCOMPARE(text.plainText(), expected);
    QCOMPARE(text.length(), expected.size());
    QCOMPARE(text.runs().size(), 4);
    QVERIFY(text.runs().at(0).isImage());
    QVERIFY(!text.runs().at(1).isImage());

    // A whole text appended keeps the order and the fonts of both.
    QFont light;
    light.setWeight(QFont::ExtraLight);
    AttributedText heading(QStringLiteral("\n Items:\n\n"), light);
    heading.append(AttributedText(QStringLiteral("A\nB")));
    QCOMPARE(heading.plainText(), QStringLiteral("\n Items:\n\nA\nB"));
    QCOMPARE(heading.runs().at(0).font, std::optional<QFont>(light));
    QVERIFY(!heading.runs().at(1).font.has_value());
}

void tst_AlertPresenter::htmlEscapesStylesAndKeepsBlanks()
{
    QFont font;
    font.setFamilies({QStringLiteral("DejaVu Sans")});
    font.setPointSize(12);
    font.setWeight(QFont::Light);
    const QString html = AttributedText(QStringLiteral("a<b> & c"), font, QColor(255, 0, 0)).toHtml();
    for (const char *part :
         {"a&lt;b&gt; &amp; c", "font-size:12pt", "font-weight:300", "color:#ffff0000", "'DejaVu Sans'"})
        QVERIFY2(html.contains(QLatin1String(part)), qPrintable(html));

    AttributedText withImage;
    withImage.appendImage(square(Qt::red), QRectF(0, 0, 12, 12));
    withImage.append(QStringLiteral("x"));
    QCOMPARE(throughDocument(withImage.toHtml()), QStringLiteral("x"));

    const QString blanks = QStringLiteral("\n  The task status Pump was changed\n ");
    QCOMPARE(throughDocument(AttributedText(blanks).toHtml()), blanks);
}

void tst_AlertPresenter::insertIntoCarriesFontsColoursAndImages()
{
    QFont bold;
    bold.setWeight(QFont::Bold);
    AttributedText text;
    text.appendImage(square(Qt::green), QRectF(0, -2, 14, 14));
    text.append(QStringLiteral("Item one\n"), bold, QColor(Qt::blue));

    QTextDocument document;
    QTextCursor cursor(&document);
    text.insertInto(cursor);
    QCOMPARE(document.toPlainText(),
             QString(AttributedText::objectReplacementCharacter) + QStringLiteral("Item one\n"));

    QList<QTextCharFormat> formats;
    for (QTextBlock::iterator it = document.begin().begin(); !it.atEnd(); ++it)
        formats.append(it.fragment().charFormat());
    QVERIFY(formats.size() >= 2);
    QVERIFY(formats.at(0).isImageFormat());
    const QTextImageFormat image = formats.at(0).toImageFormat();
    QCOMPARE(QSizeF(image.width(), image.height()), QSizeF(14, 14));
    const QVariant resource = document.resource(QTextDocument::ImageResource, QUrl(image.name()));
    QCOMPARE(resource.value<QImage>().pixelColor(5, 5), QColor(Qt::green));
    QCOMPARE(formats.at(1).fontWeight(), int(QFont::Bold));
    QCOMPARE(formats.at(1).foreground().color(), QColor(Qt::blue));
}

void tst_AlertPresenter::evaluate_data()
{
    QTest::addColumn<QString>("current");
    QTest::addColumn<qsizetype>("start");
    QTest::addColumn<qsizetype>("length");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<bool>("allowed");
    QTest::addColumn<bool>("setsText");

    // The limit is 512 units; the text set at once is the result cut to it.
    QTest::newRow("typing into 511 units") << units(511) << qsizetype(511) << qsizetype(0) << "b" << true << true;
    QTest::newRow("typing into 510 units") << units(510) << qsizetype(510) << qsizetype(0) << "b" << true << false;
    QTest::newRow("paste to 600 units") << units(511) << qsizetype(100) << qsizetype(0) << units(89, QLatin1Char('p'))
                                        << false << true;
    QTest::newRow("typing at the limit") << units(512) << qsizetype(512) << qsizetype(0) << "b" << false << true;
    QTest::newRow("deleting from the limit")
        << units(512) << qsizetype(511) << qsizetype(1) << QString() << true << false;
    QTest::newRow("emoji into 510 units")
        << units(510) << qsizetype(510) << qsizetype(0) << grinningFace << true << true;
    QTest::newRow("emoji into 511 units")
        << units(511) << qsizetype(511) << qsizetype(0) << grinningFace << false << true;
    // A range outside the text is clamped to it.
    QTest::newRow("start past the end") << "abc" << qsizetype(10) << qsizetype(5) << "d" << true << false;
    QTest::newRow("length past the end") << "abc" << qsizetype(1) << qsizetype(99) << "X" << true << false;
}

void tst_AlertPresenter::evaluate()
{
    QFETCH(QString, current);
    QFETCH(qsizetype, start);
    QFETCH(qsizetype, length);
    QFETCH(QString, replacement);
    QFETCH(bool, allowed);
    QFETCH(bool, setsText);

    const qsizetype from = std::min(start, current.size());
    const QString expectedResult
        = current.left(from) + replacement + current.mid(std::min(from + length, current.size()));
    const TextEditDecision decision = TextLimit::evaluate(current, start, length, replacement, 512);
    QCOMPARE(decision.result, expectedResult);
    QCOMPARE(decision.allowed, allowed);
    QCOMPARE(decision.textToSet, setsText ? std::optional(expectedResult.left(512)) : std::nullopt);
}

void tst_AlertPresenter::finalText_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("expected");

    // Limit 5.
    QTest::newRow("under the limit") << QStringLiteral("ab") << QStringLiteral("abc") << "abc";
    QTest::newRow("exactly the limit") << QStringLiteral("abcd") << QStringLiteral("abcde") << "abcde";
    QTest::newRow("over the limit is cut") << QStringLiteral("ab") << QStringLiteral("abcdefgh") << "abcde";
    // The cut counts UTF-16 units and may split a surrogate pair.
    QTest::newRow("cut inside a surrogate pair")
        << "abcd" << QStringLiteral("abcd") + grinningFace << QStringLiteral("abcd") + grinningFace.left(1);
}

void tst_AlertPresenter::finalText()
{
    QFETCH(QString, before);
    QFETCH(QString, result);
    QTEST(TextLimit::evaluate(result, 5).finalText(before), "expected");
}

void tst_AlertPresenter::difference_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<qsizetype>("start");
    QTest::addColumn<qsizetype>("length");
    QTest::addColumn<QString>("replacement");

    QTest::newRow("typed in the middle") << QStringLiteral("abc") << "abXc" << qsizetype(2) << qsizetype(0) << "X";
    QTest::newRow("deleted") << QStringLiteral("abc") << "ac" << qsizetype(1) << qsizetype(1) << QString();
    QTest::newRow("replaced") << QStringLiteral("hello world") << "hello there" << qsizetype(6) << qsizetype(5)
                              << "there";
    QTest::newRow("repeated letter") << QStringLiteral("aa") << "aaa" << qsizetype(2) << qsizetype(0) << "a";
    QTest::newRow("cleared") << "abc" << QString() << qsizetype(0) << qsizetype(3) << QString();
}

void tst_AlertPresenter::difference()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(qsizetype, start);
    QFETCH(qsizetype, length);
    QFETCH(QString, replacement);
    QCOMPARE(TextLimit::difference(before, after), (TextLimit::Change{start, length, replacement}));
}

void tst_AlertPresenter::placeholderShowsWhileEmptyAndUnfocused()
{
    Form form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    QCOMPARE(form.textView->maxNoOfCharacters(), qint64(512));
    QVERIFY(form.showsPlaceholder());
    grabShot(form.window, QStringLiteral("textview-placeholder"));
    // Text set by code is written as it is, without the limit, while the
    // placeholder state stays; the focus clears it below.
    form.textView->setMaxNoOfCharacters(4);
    form.textView->setText(QStringLiteral("written by code"));
    QVERIFY(form.textView->showingPlaceholder());
    QCOMPARE(form.textView->toPlainText(), QStringLiteral("written by code"));
    QCOMPARE(form.textView->text(), QString());
    form.textView->setMaxNoOfCharacters(512);

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

void tst_AlertPresenter::editsKeepToTheLimit()
{
    // Typing, pasting and inserting all change the document, where the limit is
    // kept: a paste in the middle stands for them (the cases: evaluate).
    Form form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    QVERIFY(form.focus(form.textView));
    const QString start(511, QLatin1Char('a'));
    const QString pasted(89, QLatin1Char('p'));
    form.textView->setText(start);
    QTextCursor cursor = form.textView->textCursor();
    cursor.setPosition(100);
    form.textView->setTextCursor(cursor);
    QApplication::clipboard()->setText(pasted);
    form.textView->paste();
    // The first 512 units of the edited text.
    QCOMPARE(form.textView->text(), QString(start).insert(100, pasted).left(512));
}

void tst_AlertPresenter::removedOrDestroyedScreensHearNothing()
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

void tst_AlertPresenter::notifierPostsOnlyChangesToTheScreenOnce()
{
    NotificationCenter center;
    Screen screen;
    // Registered twice, the screen still hears each change once.
    screen.addKeyboardObservers(center);
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
    // A show posted without a frame reaches the screen with an empty one.
    center.post(KeyboardNotificationNames::keyboardWillShow, QStringLiteral("not a frame"));
    QCOMPARE(screen.shown, (QList<QRectF>{low, high, QRectF()}));
    QCOMPARE(screen.hidden, 1);
}

QTEST_MAIN(tst_AlertPresenter)
#include "tst_alertpresenter.moc"
