#include "views/segmentedcontrol.h"

#include "resources/namedcolors.h"
#include "views/focusring.h"
#include "views/textscale.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QResizeEvent>

#include <algorithm>

namespace ravelin {

namespace {

constexpr int inset = 2;
constexpr qreal trackRadius = 9;
// The titles' designed size, and the smallest they shrink to when they do not fit.
constexpr int textSize = 13;
constexpr int minimumTextSize = 9;

QColor trackColor()
{
    QColor fill = NamedColors::color(ColorNames::labelText, QColor(0x1F, 0x29, 0x37));
    fill.setAlphaF(0.08f);
    return fill;
}

} // namespace

SegmentedControl::SegmentedControl(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_row = new QHBoxLayout(this);
    m_row->setContentsMargins(inset, inset, inset, inset);
    m_row->setSpacing(inset);
}

void SegmentedControl::removeAllSegments()
{
    for (QPushButton *button : std::as_const(m_segments)) {
        delete button;
    }
    m_segments.clear();
    m_selected = noSegment;
    update();
}

void SegmentedControl::insertSegment(const QString &title, int index)
{
    index = std::clamp(index, 0, numberOfSegments());
    auto *button = new QPushButton(title, this);
    button->setObjectName(QStringLiteral("segment"));
    button->setAccessibleName(title);
    // A tap leaves the focus where it is; Tab reaches the segment.
    button->setFocusPolicy(Qt::TabFocus);
    button->setCheckable(true);
    button->setCursor(Qt::PointingHandCursor);
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Expanding);
    button->setMinimumWidth(0);
    connect(button, &QPushButton::clicked, this, [this, button] { segmentClicked(button); });
    m_segments.insert(index, button);
    m_row->insertWidget(index, button, 1);
    // Tab goes through the segments from left to right.
    for (qsizetype i = 1; i < m_segments.size(); ++i)
        setTabOrder(m_segments.at(i - 1), m_segments.at(i));
    if (m_selected >= index)
        ++m_selected;
    restyle();
    fitTitles();
}

QString SegmentedControl::titleForSegment(int index) const
{
    const QPushButton *button = segmentButton(index);
    return button ? button->text() : QString();
}

QPushButton *SegmentedControl::segmentButton(int index) const
{
    return m_segments.value(index);
}

void SegmentedControl::setSelectedSegmentIndex(int index)
{
    if (index < 0 || index >= numberOfSegments())
        index = noSegment;
    if (m_selected == index)
        return;
    m_selected = index;
    restyle();
}

void SegmentedControl::setSelectedSegmentTintColor(const QColor &color)
{
    if (m_selectedTint == color)
        return;
    m_selectedTint = color;
    restyle();
}

void SegmentedControl::segmentClicked(QPushButton *button)
{
    const auto index = int(m_segments.indexOf(button));
    if (index == m_selected) {
        // Tapping the selected segment keeps it selected.
        restyle();
        return;
    }
    setSelectedSegmentIndex(index);
    emit selectedSegmentChanged(index);
}

void SegmentedControl::restyle()
{
    const QColor text = NamedColors::color(ColorNames::labelText, QColor(0x1F, 0x29, 0x37));
    // The selected segment's text stays readable on its tint in either appearance.
    const QColor selectedText = m_selectedTint.lightnessF() > 0.6
        ? NamedColors::color(ColorNames::labelText, Appearance::light, QColor(0x1F, 0x29, 0x37))
        : NamedColors::color(ColorNames::labelText, Appearance::dark, QColor(0xE5, 0xE8, 0xEC));
    const QString sheet
        = QStringLiteral("QPushButton { border: 2px solid transparent; border-radius: 7px;"
                         " background: transparent; color: %1; padding: 0; }"
                         "QPushButton:checked { background: %2; color: %4; font-weight: 600; }"
                         "QPushButton:pressed:!checked { background: rgba(0,0,0,14); }"
                         "QPushButton:focus { border-color: %3; }")
              .arg(text.name(), m_selectedTint.name(QColor::HexArgb), FocusRing::color().name(), selectedText.name());
    for (int i = 0; i < m_segments.size(); ++i) {
        QPushButton *button = m_segments.at(i);
        button->setChecked(i == m_selected);
        if (button->styleSheet() != sheet)
            button->setStyleSheet(sheet);
    }
    update();
}

void SegmentedControl::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitTitles();
}

void SegmentedControl::fitTitles()
{
    if (m_segments.isEmpty())
        return;
    // The titles at the worker's text size, smaller where the widest one (in the
    // selected segment's weight) would not fit its segment.
    const auto count = int(m_segments.size());
    const int room = (width() - 2 * inset - inset * (count - 1)) / count - 8;
    QFont font = TextScale::font(this->font(), textSize, QFont::DemiBold);
    int widest = 0;
    for (const QPushButton *button : std::as_const(m_segments))
        widest = std::max(widest, QFontMetrics(font).horizontalAdvance(button->text()));
    if (room > 0 && widest > room)
        font.setPixelSize(std::max(minimumTextSize, font.pixelSize() * room / widest));
    font.setWeight(QFont::Normal);
    for (QPushButton *button : std::as_const(m_segments)) {
        if (button->font() != font)
            button->setFont(font);
    }
}

int SegmentedControl::preferredHeight()
{
    return TextScale::scaled(controlHeight);
}

QSize SegmentedControl::sizeHint() const
{
    int width = 2 * inset;
    for (const QPushButton *button : m_segments)
        width += button->fontMetrics().horizontalAdvance(button->text()) + 24 + inset;
    return {width, preferredHeight()};
}

QSize SegmentedControl::minimumSizeHint() const
{
    return {numberOfSegments() * 24, preferredHeight()};
}

void SegmentedControl::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath track;
    track.addRoundedRect(QRectF(rect()), trackRadius, trackRadius);
    painter.fillPath(track, trackColor());

    // Hairlines between neighbouring segments that are not selected.
    QColor line = trackColor();
    line.setAlphaF(0.16f);
    painter.setPen(QPen(line, 1));
    for (int i = 1; i < m_segments.size(); ++i) {
        if (i == m_selected || i - 1 == m_selected)
            continue;
        const QRect left = m_segments.at(i - 1)->geometry();
        const qreal x = left.right() + 1 + inset / 2.0;
        painter.drawLine(QPointF(x, height() * 0.28), QPointF(x, height() * 0.72));
    }

    // A soft shadow under the selected segment lifts it off the track.
    if (const QPushButton *selected = segmentButton(m_selected)) {
        const QRectF lifted = QRectF(selected->geometry()).translated(0, 1);
        QPainterPath shadow;
        shadow.addRoundedRect(lifted.adjusted(-0.5, -0.5, 0.5, 0.5), 7.5, 7.5);
        painter.fillPath(shadow, QColor(0, 0, 0, 26));
    }
}

} // namespace ravelin
