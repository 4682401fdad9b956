#include "host/outboxvc.h"

#include "api/outboxsender.h"
#include "host/outboxlistmodel.h"
#include "resources/namedcolors.h"
#include "views/buttonrow.h"
#include "views/textscale.h"
#include "views/touchtarget.h"

#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>

namespace ravelin {

OutboxVC::OutboxVC(QWidget *parent)
    : Screen(parent)
{
    setObjectName(QStringLiteral("outboxVC"));
    setTitle(tr("Not sent"));
    auto *syncNow = new QAction(tr("Sync now"), this);
    syncNow->setObjectName(QStringLiteral("syncNowButton"));
    connect(syncNow, &QAction::triggered, this, [this] {
        if (OutboxSender *sender = outbox())
            sender->syncNow();
    });
    setRightBarActions({syncNow});

    m_model = new OutboxListModel(this);
    m_list = new QListView(this);
    m_list->setObjectName(QStringLiteral("outboxList"));
    m_list->setModel(m_model);
    m_list->setWordWrap(true);
    m_list->setResizeMode(QListView::Adjust);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setTextElideMode(Qt::ElideNone);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setStyleSheet(QStringLiteral("QListView { border: none; background: transparent; }"
                                         "QListView::item { min-height: %1px; padding: 8px;"
                                         " border-bottom: 1px solid rgba(0,0,0,30); }")
                              .arg(TouchTarget::minimumSide));

    m_emptyLabel = new QLabel(tr("Everything has reached the server."), this);
    m_emptyLabel->setObjectName(QStringLiteral("outboxEmptyLabel"));
    m_emptyLabel->setAlignment(Qt::AlignCenter);
    m_emptyLabel->setWordWrap(true);

    m_retryButton = new QPushButton(tr("Send again"), this);
    m_retryButton->setObjectName(QStringLiteral("retryButton"));
    m_discardButton = new QPushButton(tr("Discard"), this);
    m_discardButton->setObjectName(QStringLiteral("discardButton"));
    auto *buttons = new ButtonRow(this);
    for (QPushButton *button : {m_retryButton, m_discardButton}) {
        button->setMinimumHeight(TouchTarget::minimumSide);
        buttons->addButton(button);
    }
    connect(m_retryButton, &QPushButton::clicked, this, [this] {
        if (const auto id = currentRefused(); id && outbox())
            outbox()->retry(*id);
    });
    connect(m_discardButton, &QPushButton::clicked, this, [this] {
        if (const auto id = currentRefused(); id && outbox())
            outbox()->discard(*id);
    });

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 8, 12, 12);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_emptyLabel, 1);
    layout->addWidget(buttons);
}

void OutboxVC::viewDidLoad()
{
    Screen::viewDidLoad();
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this, &OutboxVC::updateButtons);
    connect(m_model, &QAbstractItemModel::dataChanged, this, &OutboxVC::updateButtons);
    followOutbox([this](bool) { reload(); });
    reload();
}

void OutboxVC::reload()
{
    const OutboxSender *sender = outbox();
    m_model->setEntries(sender ? sender->entries() : QList<OutboxEntry>());
    const bool empty = m_model->rowCount() == 0;
    m_list->setVisible(!empty);
    m_emptyLabel->setVisible(empty);
    updateButtons();
}

std::optional<qint64> OutboxVC::currentRefused() const
{
    const std::optional<OutboxEntry> entry = m_model->entry(m_list->currentIndex().row());
    if (!entry || entry->state != OutboxEntry::State::refused)
        return std::nullopt;
    return entry->id;
}

void OutboxVC::updateButtons()
{
    const bool refused = currentRefused().has_value();
    m_retryButton->setEnabled(refused);
    m_discardButton->setEnabled(refused);
}

} // namespace ravelin
