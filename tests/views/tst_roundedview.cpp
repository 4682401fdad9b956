#include "views/roundedview.h"

#include "support/shots.h"

#include <QGraphicsDropShadowEffect>
#include <QSignalSpy>
#include <QTest>

using namespace ravelin;
using namespace ravelin::test;

class tst_RoundedView : public QObject
{
    Q_OBJECT

private slots:
    void backgroundColourPaintsTheCardNotTheWidget();
    void borderIsStrokedInsideTheBounds();
    void shadowFollowsTheShadowColour();
    void settersSignalOnlyOnChange();
};

void tst_RoundedView::backgroundColourPaintsTheCardNotTheWidget()
{
    RoundedView view;
    view.resize(100, 60);
    view.setCornerRadius(12);
    view.setBackgroundColor(Qt::red);
    QCOMPARE(view.customBackgroundColor(), QColor(Qt::red));
    QCOMPARE(view.backgroundColor().alpha(), 0);
    QVERIFY(!view.autoFillBackground());

    const QImage image = grabShot(view, QStringLiteral("roundedview-red"));
    QCOMPARE(image.pixelColor(50, 30), QColor(Qt::red));
    QCOMPARE(image.pixelColor(12, 12), QColor(Qt::red));
    // The rounded corner stays clear; a square one is filled.
    QVERIFY(image.pixelColor(0, 0) != QColor(Qt::red));
    view.setCornerRadius(0);
    QCOMPARE(view.grab().toImage().pixelColor(0, 0), QColor(Qt::red));

    // A palette's window colour becomes the card colour as well.
    QPalette palette = view.palette();
    palette.setColor(QPalette::Window, Qt::blue);
    view.setPalette(palette);
    QCOMPARE(view.customBackgroundColor(), QColor(Qt::blue));
    QCOMPARE(view.palette().color(QPalette::Window).alpha(), 0);
    QCOMPARE(view.backgroundColor().alpha(), 0);
    QCOMPARE(view.grab().toImage().pixelColor(50, 30), QColor(Qt::blue));
}

void tst_RoundedView::borderIsStrokedInsideTheBounds()
{
    RoundedView view;
    view.resize(100, 60);
    view.setCornerRadius(10);
    view.setBorderWidth(4);
    view.setBorderColor(Qt::blue);
    view.setBackgroundColor(Qt::white);

    // The whole line lies in the outer 4 pixels.
    const QImage image = grabShot(view, QStringLiteral("roundedview-border"));
    for (const QPoint point : {QPoint(1, 30), QPoint(2, 30), QPoint(50, 1), QPoint(50, 58), QPoint(98, 30)})
        QCOMPARE(image.pixelColor(point), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(4, 30), QColor(Qt::white));
}

void tst_RoundedView::shadowFollowsTheShadowColour()
{
    RoundedView view;
    auto *effect = qobject_cast<QGraphicsDropShadowEffect *>(view.graphicsEffect());
    QVERIFY(effect != nullptr);
    view.setShadowColor(QColor(10, 20, 30));
    QCOMPARE(effect->color().rgb(), QColor(10, 20, 30).rgb());
    QCOMPARE(effect->color().alpha(), qRound(255 * RoundedView::shadowOpacity));
}

void tst_RoundedView::settersSignalOnlyOnChange()
{
    RoundedView view;
    QSignalSpy spy(&view, &RoundedView::appearanceChanged);
    view.setCornerRadius(8);
    view.setCornerRadius(8);
    view.setBorderWidth(1);
    view.setBorderWidth(1);
    view.setBorderColor(Qt::black);
    view.setCustomBackgroundColor(Qt::white);
    view.setBackgroundColor(Qt::green);
    view.setBackgroundColor(Qt::green);
    QCOMPARE(spy.count(), 3);
}

QTEST_MAIN(tst_RoundedView)
#include "tst_roundedview.moc"
