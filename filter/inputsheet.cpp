#include "filter/inputsheet.h"

#include "filter/inputfield.h"
#include "resources/namedcolors.h"
#include "views/focuschain.h"

#include <QAbstractButton>
#include <QEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <QVariantAnimation>

namespace ravelin {

InputSheet::InputSheet(QWidget *host)
    : QWidget(host)
    , m_host(host)
{
    setObjectName(QStringLiteral("inputSheet"));
    m_column = new QVBoxLayout(this);
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(0);
    m_slide = new QVariantAnimation(this);
    m_slide->setDuration(int(slideDuration.count()));
    m_slide->setEasingCurve(QEasingCurve::OutCubic);
    connect(m_slide, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_shown = value.toReal();
        place();
    });
    connect(m_slide, &QVariantAnimation::finished, this, [this] {
        if (!m_responder)
            hide();
    });
    hide();
    if (host)
        host->installEventFilter(this);
}

void InputSheet::adopt(QWidget *view)
{
    if (!view || view->parentWidget() == this)
        return;
    view->setParent(this);
    m_column->addWidget(view);
}

void InputSheet::present(InputField *field)
{
    if (!field || field == m_responder)
        return;
    m_responder = field;
    // Only the field's own views show.
    for (QObject *child : children()) {
        if (auto *widget = qobject_cast<QWidget *>(child))
            widget->hide();
    }
    QWidget *accessory = field->inputAccessoryView();
    QWidget *input = field->inputView();
    adopt(accessory);
    adopt(input);
    if (accessory)
        accessory->show();
    if (input)
        input->show();
    m_column->activate();

    show();
    raise();
    // Also turns round a sheet that was sliding away for the previous field.
    m_slide->stop();
    if (m_shown < 1.0) {
        m_slide->setStartValue(m_shown);
        m_slide->setEndValue(1.0);
        m_slide->start();
    }
    place();
    emit coveredHeightChanged(coveredHeight());
}

void InputSheet::dismiss()
{
    if (!m_responder)
        return;
    m_responder = nullptr;
    m_slide->stop();
    m_slide->setStartValue(m_shown);
    m_slide->setEndValue(0.0);
    m_slide->start();
    emit coveredHeightChanged(0);
}

int InputSheet::coveredHeight() const
{
    return m_responder ? m_column->sizeHint().height() : 0;
}

bool InputSheet::isMoving() const
{
    return m_slide->state() == QAbstractAnimation::Running;
}

void InputSheet::place()
{
    if (!m_host)
        return;
    const int full = m_column->sizeHint().height();
    const int visible = qRound(full * m_shown);
    setGeometry(0, m_host->height() - visible, m_host->width(), full);
}

bool InputSheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_host && event->type() == QEvent::Resize)
        place();
    return QWidget::eventFilter(watched, event);
}

bool InputSheet::focusNextPrevChild(bool next)
{
    // Like the keyboard it stands in for, the sheet keeps Tab until it is done.
    if (m_responder)
        return FocusChain::moveWithin(this, next);
    return QWidget::focusNextPrevChild(next);
}

void InputSheet::keyPressEvent(QKeyEvent *event)
{
    if (FocusChain::clickFocusedButton(this, event))
        return;
    const bool closing
        = event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!closing || !m_responder) {
        QWidget::keyPressEvent(event);
        return;
    }
    // Escape and Enter end editing as the accessory bar's button (Done) does.
    QWidget *accessory = m_responder->inputAccessoryView();
    if (auto *done = accessory ? accessory->findChild<QAbstractButton *>() : nullptr)
        done->click();
    else
        m_responder->resignFirstResponder();
}

void InputSheet::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), NamedColors::color(ColorNames::viewBackground, QColor(Qt::white)));
}

} // namespace ravelin
