#include "filter/inputfield.h"

#include "filter/inputsheet.h"
#include "resources/namedcolors.h"
#include "views/focuschain.h"
#include "views/textscale.h"
#include "views/touchtarget.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

namespace ravelin {

namespace {

// A small chevron at the end of the field: it opens a picker.
QIcon chevronIcon(const QColor &color)
{
    QIcon icon;
    for (const qreal ratio : {1.0, 2.0, 3.0}) {
        QPixmap pixmap(QSize(16, 16) * ratio);
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(color, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF{QPointF(4, 6), QPointF(8, 10), QPointF(12, 6)});
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace

InputField::InputField(QWidget *parent)
    : QLineEdit(parent)
{
    setReadOnly(true);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumHeight(std::max(TextScale::scaled(40), TouchTarget::minimumSide));
    auto *open = addAction(chevronIcon(NamedColors::color(ColorNames::secondaryLabelText, QColor(Qt::gray))),
                           QLineEdit::TrailingPosition);
    open->setObjectName(QStringLiteral("openPicker"));
    open->setText(tr("Choose"));
    connect(open, &QAction::triggered, this, &InputField::becomeFirstResponder);
    const QString text = NamedColors::color(ColorNames::labelText, QColor(0x1F, 0x29, 0x37)).name();
    const QString border = NamedColors::color(ColorNames::separator, QColor(0xDD, 0xE1, 0xE6)).name();
    const QString accent = NamedColors::color(ColorNames::accent, QColor(0x25, 0x63, 0xC4)).name();
    const QString fill = NamedColors::color(ColorNames::viewBackground, QColor(Qt::white)).name();
    setStyleSheet(
        QStringLiteral("QLineEdit { border: 1px solid %2; border-radius: 9px; padding: 0 8px;"
                       " background: %4; color: %1; %5 }"
                       "QLineEdit:focus, QLineEdit[editing=\"true\"] { border: 2px solid %3; padding: 0 7px; }")
            .arg(text, border, accent, fill, TextScale::styleSize(15)));
    showEditing(false);
}

void InputField::keep(QWidget *view)
{
    if (view && !view->parent()) {
        // Held out of sight until the sheet shows it.
        view->hide();
        view->setParent(this);
    }
}

void InputField::setInputView(QWidget *view)
{
    if (m_inputView == view)
        return;
    m_inputView = view;
    keep(view);
}

void InputField::setInputAccessoryView(QWidget *view)
{
    if (m_inputAccessoryView == view)
        return;
    m_inputAccessoryView = view;
    keep(view);
}

InputSheet *InputField::inputSheet() const
{
    return m_sheet;
}

void InputField::setInputSheet(InputSheet *sheet)
{
    if (m_sheet == sheet)
        return;
    resignFirstResponder();
    m_sheet = sheet;
}

bool InputField::becomeFirstResponder()
{
    if (!m_sheet)
        return false;
    if (isFirstResponder())
        return true;
    if (InputField *previous = m_sheet->responder())
        previous->resignFirstResponder();
    m_sheet->present(this);
    setFocus(Qt::OtherFocusReason);
    showEditing(true);
    emit editingDidBegin();
    return true;
}

void InputField::resignFirstResponder()
{
    if (!isFirstResponder())
        return;
    // Edited from the keyboard (the focus went into the sheet): the focus comes
    // back to the field, to go on from there.
    const QWidget *focus = QApplication::focusWidget();
    const bool fromKeyboard = focus && m_sheet->isAncestorOf(focus);
    m_sheet->dismiss();
    if (fromKeyboard)
        setFocus(Qt::OtherFocusReason);
    else
        clearFocus();
    showEditing(false);
    emit editingDidEnd();
}

bool InputField::isFirstResponder() const
{
    return m_sheet && m_sheet->responder() == this;
}

void InputField::showEditing(bool editing)
{
    setProperty("editing", editing);
    style()->unpolish(this);
    style()->polish(this);
    update();
}

void InputField::mousePressEvent(QMouseEvent *event)
{
    QLineEdit::mousePressEvent(event);
    if (event->button() == Qt::LeftButton)
        becomeFirstResponder();
}

void InputField::keyPressEvent(QKeyEvent *event)
{
    // Space or Enter opens the picker from the keyboard, and the keyboard goes
    // on in it; Escape closes it.
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (becomeFirstResponder()) {
            if (QWidget *first = FocusChain::first(m_sheet))
                first->setFocus(Qt::TabFocusReason);
        }
        return;
    case Qt::Key_Escape:
        if (isFirstResponder()) {
            resignFirstResponder();
            setFocus(Qt::OtherFocusReason);
            return;
        }
        break;
    default: break;
    }
    QLineEdit::keyPressEvent(event);
}

} // namespace ravelin
