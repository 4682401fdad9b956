#include "views/roundedview.h"

#include "resources/namedcolors.h"
#include "shots.h"

#include <QGraphicsDropShadowEffect>
#include <QSignalSpy>
#include <QTest>

using namespace ravelin;
using namespace ravelin::test;

class tst_RoundedView : public QObject
{
    Q_OBJECT

private slots:
    void defaults();
    void borderGeometry_data();
    void borderGeometry();
    void backgroundColourPaintsTheCardNotTheWidget();
    void paletteWindowColourBecomesTheCardColour();
    void roundedCornersStayClear();
    void borderIsStrokedInsideTheBounds();
    void shadowFollowsTheShadowColour();
    void settersSignalOnlyOnChange();
    void render();
};

void tst_RoundedView::defaults()
{
    RoundedView view;
    QCOMPARE(view.cornerRadius(), 0.0);
    QCOMPARE(view.borderWidth(), 0.0);
    QCOMPARE(view.borderColor(), QColor(Qt::black));
    QCOMPARE(view.customBackgroundColor(), QColor(Qt::white));
    QCOMPARE(view.shadowColor(), NamedColors::color(ColorNames::viewBackgroundReverted, QColor(Qt::white)));
    QCOMPARE(view.backgroundColor().alpha(), 0);
}

void tst_RoundedView::borderGeometry_data()
{
    QTest::addColumn<qreal>("borderWidth");
    QTest::addColumn<qreal>("cornerRadius");
    QTest::addColumn<QRectF>("expectedRect");
    QTest::addColumn<qreal>("expectedRadius");

    QTest::newRow("width 4 radius 10") << 4.0 << 10.0 << QRectF(2, 2, 116, 56) << 8.0;
    QTest::newRow("width 2 radius 14") << 2.0 << 14.0 << QRectF(1, 1, 118, 58) << 13.0;
}

void tst_RoundedView::borderGeometry()
{
    QFETCH(qreal, borderWidth);
    QFETCH(qreal, cornerRadius);
    QFETCH(QRectF, expectedRect);
    QFETCH(qreal, expectedRadius);

    RoundedView view;
    view.resize(120, 60);
    view.setBorderWidth(borderWidth);
    view.setCornerRadius(cornerRadius);
    const RoundedBorder border = view.borderGeometry();
    QCOMPARE(border.rect, expectedRect);
    QCOMPARE(border.cornerRadius, expectedRadius);
    QCOMPARE(border.lineWidth, borderWidth);
}

void tst_RoundedView::backgroundColourPaintsTheCardNotTheWidget()
{
    RoundedView view;
    view.resize(100, 60);
    view.setCornerRadius(10);
    view.setBackgroundColor(Qt::red);

    QCOMPARE(view.customBackgroundColor(), QColor(Qt::red));
    QCOMPARE(view.backgroundColor().alpha(), 0);
    QVERIFY(!view.autoFillBackground());

    const QImage image = grabShot(view, QStringLiteral("roundedview-red"));
    QCOMPARE(image.pixelColor(50, 30), QColor(Qt::red));
}

void tst_RoundedView::paletteWindowColourBecomesTheCardColour()
{
    RoundedView view;
    view.resize(100, 60);
    QPalette palette = view.palette();
    palette.setColor(QPalette::Window, Qt::blue);
    view.setPalette(palette);

    QCOMPARE(view.customBackgroundColor(), QColor(Qt::blue));
    QCOMPARE(view.palette().color(QPalette::Window).alpha(), 0);
    QCOMPARE(view.backgroundColor().alpha(), 0);
    QCOMPARE(view.grab().toImage().pixelColor(50, 30), QColor(Qt::blue));
}

void tst_RoundedView::roundedCornersStayClear()
{
    RoundedView view;
    view.resize(100, 60);
    view.setCornerRadius(12);
    view.setBackgroundColor(Qt::red);
    const QImage image = view.grab().toImage();
    QCOMPARE(image.pixelColor(0, 0).red() == 255 && image.pixelColor(0, 0).alpha() == 255, false);
    QCOMPARE(image.pixelColor(12, 12), QColor(Qt::red));

    view.setCornerRadius(0);
    QCOMPARE(view.grab().toImage().pixelColor(0, 0), QColor(Qt::red));
}

void tst_RoundedView::borderIsStrokedInsideTheBounds()
{
    RoundedView view;
    view.resize(100, 60);
    view.setCornerRadius(10);
    view.setBorderWidth(4);
    view.setBorderColor(Qt::blue);
    view.setBackgroundColor(Qt::white);
    const QImage image = grabShot(view, QStringLiteral("roundedview-border"));

    // The whole line lies in the outer 4 pixels: blue at x 1 and 2 on the middle
    // row, white from x 4 on.
    QCOMPARE(image.pixelColor(1, 30), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(2, 30), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(4, 30), QColor(Qt::white));
    QCOMPARE(image.pixelColor(50, 1), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(50, 58), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(98, 30), QColor(Qt::blue));
}

void tst_RoundedView::shadowFollowsTheShadowColour()
{
    RoundedView view;
    auto *effect = qobject_cast<QGraphicsDropShadowEffect *>(view.graphicsEffect());
    QVERIFY(effect != nullptr);
    QCOMPARE(effect->offset(), QPointF(0, 0));
    QCOMPARE(effect->blurRadius(), 2 * RoundedView::shadowRadius);

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

void tst_RoundedView::render()
{
    QWidget backdrop;
    backdrop.resize(390, 220);
    backdrop.setAutoFillBackground(true);
    QPalette palette = backdrop.palette();
    palette.setColor(QPalette::Window, NamedColors::color(ColorNames::groupedBackground, QColor(Qt::lightGray)));
    backdrop.setPalette(palette);

    auto *plain = new RoundedView(&backdrop);
    plain->setGeometry(16, 16, 358, 80);
    plain->setCornerRadius(12);
    plain->setBackgroundColor(NamedColors::color(ColorNames::viewBackground, QColor(Qt::white)));

    auto *bordered = new RoundedView(&backdrop);
    bordered->setGeometry(16, 116, 358, 80);
    bordered->setCornerRadius(12);
    bordered->setBorderWidth(2);
    bordered->setBorderColor(NamedColors::color(ColorNames::customBlue, QColor(Qt::blue)));
    bordered->setBackgroundColor(NamedColors::color(ColorNames::viewBackground, QColor(Qt::white)));

    backdrop.show();
    QVERIFY(QTest::qWaitForWindowExposed(&backdrop));
    const QImage image = grabShot(backdrop, QStringLiteral("roundedview"));
    QCOMPARE(image.pixelColor(195, 56), plain->customBackgroundColor());
    QCOMPARE(image.pixelColor(195, 156), bordered->customBackgroundColor());
}

QTEST_MAIN(tst_RoundedView)
#include "tst_roundedview.moc"
