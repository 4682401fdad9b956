#include "demo/app/hostpanel.h"

#include "demo/app/hostbrand.h"

#include <QEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <QVariantAnimation>

namespace ravelin {

namespace {

struct Entry
{
    const char *glyph;
    const char *title;
    const char *detail;
};

// The host's own places, as a field service app would have them.
constexpr Entry kEntries[] = {
    {"\u25F7", "My day", "3 visits, first at 08:00"},
    {"\u2714", "Vehicle check", "Van 14 · due today"},
    {"\u2709", "Messages", "2 unread from dispatch"},
    {"\u2699", "Settings", "Notifications, units, language"},
};

QPushButton *entryButton(const Entry &entry, QWidget *parent)
{
    auto *button = new QPushButton(parent);
    button->setObjectName(QStringLiteral("hostEntry"));
    button->setCursor(Qt::PointingHandCursor);
    button->setMinimumHeight(58);
    auto *row = new QHBoxLayout(button);
    row->setContentsMargins(18, 6, 12, 6);
    row->setSpacing(14);
    auto *glyph = new QLabel(QString::fromUtf8(entry.glyph), button);
    glyph->setFixedSize(34, 34);
    glyph->setAlignment(Qt::AlignCenter);
    glyph->setFont(hostbrand::font(17));
    glyph->setStyleSheet(
        QStringLiteral("background: #E6F4F2; color: %1; border-radius: 10px;").arg(hostbrand::primary().name()));
    glyph->setAttribute(Qt::WA_TransparentForMouseEvents);
    row->addWidget(glyph);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(1);
    auto *title = new QLabel(QString::fromUtf8(entry.title), button);
    title->setFont(hostbrand::font(15, QFont::DemiBold));
    title->setStyleSheet(QStringLiteral("color: %1;").arg(hostbrand::text().name()));
    auto *detail = new QLabel(QString::fromUtf8(entry.detail), button);
    detail->setFont(hostbrand::font(12));
    detail->setStyleSheet(QStringLiteral("color: %1;").arg(hostbrand::secondaryText().name()));
    for (QLabel *l : {title, detail}) {
        l->setAttribute(Qt::WA_TransparentForMouseEvents);
        texts->addWidget(l);
    }
    row->addLayout(texts, 1);
    return button;
}

} // namespace

HostPanel::HostPanel(QWidget *window)
    : QWidget(window)
{
    setObjectName(QStringLiteral("hostPanel"));
    setAttribute(Qt::WA_NoSystemBackground);
    window->installEventFilter(this);

    m_sheet = new QWidget(this);
    m_sheet->setObjectName(QStringLiteral("hostPanelSheet"));
    m_sheet->setAttribute(Qt::WA_StyledBackground);
    m_sheet->setStyleSheet(
        QStringLiteral("QWidget#hostPanelSheet { background: %1; }"
                       "QPushButton#hostEntry { background: transparent; border: none; text-align: left; }"
                       "QPushButton#hostEntry:hover { background: #F0F7F6; }")
            .arg(hostbrand::surface().name()));
    auto *column = new QVBoxLayout(m_sheet);
    column->setContentsMargins(0, 0, 0, 16);
    column->setSpacing(0);

    // The header in the host's colours: brand, then the signed-in person.
    auto *header = new QWidget(m_sheet);
    header->setObjectName(QStringLiteral("hostPanelHeader"));
    header->setAttribute(Qt::WA_StyledBackground);
    header->setStyleSheet(
        QStringLiteral("QWidget#hostPanelHeader { background: qlineargradient(x1:0, y1:0, x2:1, y2:1, "
                       "stop:0 %1, stop:1 %2); }")
            .arg(hostbrand::primary().name(), hostbrand::primaryDark().name()));
    auto *headerColumn = new QVBoxLayout(header);
    headerColumn->setContentsMargins(20, 28, 20, 20);
    headerColumn->setSpacing(0);
    auto *brand = new QLabel(hostbrand::productName.toUpper(), header);
    brand->setFont(hostbrand::font(12, QFont::Bold));
    brand->setStyleSheet(QStringLiteral("color: rgba(255,255,255,190); letter-spacing: 2px;"));
    headerColumn->addWidget(brand);
    headerColumn->addSpacing(18);
    m_avatar = new QLabel(header);
    m_avatar->setFixedSize(56, 56);
    headerColumn->addWidget(m_avatar);
    headerColumn->addSpacing(10);
    m_name = new QLabel(header);
    m_name->setObjectName(QStringLiteral("hostPanelUser"));
    m_name->setFont(hostbrand::font(19, QFont::DemiBold));
    m_name->setStyleSheet(QStringLiteral("color: white;"));
    headerColumn->addWidget(m_name);
    m_detail = new QLabel(header);
    m_detail->setFont(hostbrand::font(13));
    m_detail->setStyleSheet(QStringLiteral("color: rgba(255,255,255,200);"));
    m_detail->setWordWrap(true);
    headerColumn->addWidget(m_detail);
    column->addWidget(header);
    column->addSpacing(10);

    for (const Entry &entry : kEntries)
        column->addWidget(entryButton(entry, m_sheet));
    column->addStretch(1);

    m_signOut = new QPushButton(QStringLiteral("Sign out"), m_sheet);
    m_signOut->setObjectName(QStringLiteral("hostSignOut"));
    m_signOut->setCursor(Qt::PointingHandCursor);
    m_signOut->setMinimumHeight(44);
    m_signOut->setFont(hostbrand::font(15, QFont::DemiBold));
    m_signOut->setStyleSheet(QStringLiteral("QPushButton { color: %1; background: transparent; border: 1px solid %2;"
                                            " border-radius: 12px; margin: 0 18px; }"
                                            "QPushButton:hover { background: #FDF2F2; }")
                                 .arg(hostbrand::danger().name(), hostbrand::hairline().name()));
    connect(m_signOut, &QPushButton::clicked, this, &HostPanel::signOutRequested);
    column->addWidget(m_signOut);
    column->addSpacing(8);
    auto *footer = new QLabel(QStringLiteral("Host panel · not part of the Ravelin library"), m_sheet);
    footer->setAlignment(Qt::AlignCenter);
    footer->setFont(hostbrand::font(11));
    footer->setStyleSheet(QStringLiteral("color: %1;").arg(hostbrand::secondaryText().name()));
    column->addWidget(footer);

    m_slide = new QVariantAnimation(this);
    m_slide->setDuration(int(slideDuration.count()));
    m_slide->setEasingCurve(QEasingCurve::OutCubic);
    connect(m_slide, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &value) { applyProgress(value.toReal()); });
    connect(m_slide, &QVariantAnimation::finished, this, [this] {
        if (!m_shown)
            hide();
    });

    coverWindow();
    applyProgress(0);
    hide();
}

void HostPanel::setUser(const QString &name, const QString &detail)
{
    m_name->setText(name);
    m_detail->setText(detail);
    m_avatar->setPixmap(hostbrand::avatar(name, 56, 2.0));
}

QString HostPanel::userName() const
{
    return m_name->text();
}

void HostPanel::setShown(bool shown, bool animated)
{
    if (m_shown == shown)
        return;
    m_shown = shown;
    m_slide->stop();
    if (shown) {
        coverWindow();
        show();
        raise();
    }
    if (animated) {
        m_slide->setStartValue(m_progress);
        m_slide->setEndValue(shown ? 1.0 : 0.0);
        m_slide->start();
    } else {
        applyProgress(shown ? 1.0 : 0.0);
        if (!shown)
            hide();
    }
    emit shownChanged(shown);
}

bool HostPanel::isSettled() const
{
    return m_slide->state() != QAbstractAnimation::Running && m_progress == (m_shown ? 1.0 : 0.0);
}

void HostPanel::applyProgress(qreal progress)
{
    m_progress = progress;
    const int width = std::min(panelWidth, this->width() - 48);
    m_sheet->setGeometry(qRound(-width + progress * width), 0, width, height());
    update();
}

void HostPanel::coverWindow()
{
    if (parentWidget())
        setGeometry(parentWidget()->rect());
    applyProgress(m_progress);
}

bool HostPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        coverWindow();
    return QWidget::eventFilter(watched, event);
}

void HostPanel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(6, 24, 23, qRound(110 * m_progress)));
    // A soft edge along the sheet.
    const int edge = m_sheet->geometry().right() + 1;
    QLinearGradient shade(edge, 0, edge + 14, 0);
    shade.setColorAt(0, QColor(0, 0, 0, qRound(60 * m_progress)));
    shade.setColorAt(1, QColor(0, 0, 0, 0));
    painter.fillRect(QRect(edge, 0, 14, height()), shade);
}

void HostPanel::mousePressEvent(QMouseEvent *event)
{
    if (!m_sheet->geometry().contains(event->position().toPoint()))
        emit closeRequested();
    event->accept();
}

} // namespace ravelin
