#include "items/blocktaskvc.h"

#include "api/fatalerror.h"
#include "host/ownedviewmodel.h"
#include "items/itemstexts.h"
#include "resources/namedcolors.h"
#include "views/alertpresenter.h"
#include "views/textscale.h"
#include "views/textviewwithplaceholder.h"

#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

namespace ravelin {

BlockTaskVC::BlockTaskVC(QWidget *parent)
    : NoteSheet(screenTitle(), parent)
{
    setObjectName(QStringLiteral("BlockTaskVC"));
    QWidget *body = scrollView()->widget();
    const QColor label = NamedColors::color(ColorNames::labelText, Qt::black);
    const QColor secondary = NamedColors::color(ColorNames::secondaryLabelText, Qt::darkGray);
    m_titleLabel = makeLabel(body, 20, QFont::DemiBold, label, ItemsTexts::markAsBlockedTitle);
    m_itemNamesLabel = makeLabel(body, 16, QFont::Medium, label, QStringLiteral("itemNamesLabel"));
    m_detailLabel = makeLabel(body, 15, QFont::Normal, secondary, QStringLiteral("detailLabel"));
    headerColumn()->addWidget(m_titleLabel);
    headerColumn()->addWidget(m_itemNamesLabel);
    headerColumn()->addWidget(m_detailLabel);
    notesLabel()->setText(tr("REASON"));
    noteField()->setObjectName(ItemsTexts::markAsBlockedText);
    noteField()->setAccessibleName(tr("Reason"));
    requiredLabel()->setText(ItemsTexts::mandatoryField());
    m_blockButton = makeActionButton(screenTitle(), ItemsTexts::markAsBlockedBtn,
                                     NamedColors::color(ColorNames::customRed, Qt::red), true);
    connect(m_blockButton, &QPushButton::clicked, this, &BlockTaskVC::block);
}

void BlockTaskVC::setViewModel(BlockTaskVM *viewModel)
{
    adoptViewModel(m_viewModel, viewModel, this);
}

BlockTaskVM &BlockTaskVC::requireViewModel() const
{
    return requiredViewModel(m_viewModel, "The block task screen has no view model", "BlockTaskVC");
}

void BlockTaskVC::viewDidLoad()
{
    NoteSheet::viewDidLoad();
    const BlockTaskVM &viewModel = requireViewModel();
    m_titleLabel->setText(viewModel.task()->name);
    m_itemNamesLabel->setText(viewModel.itemLine());
    m_itemNamesLabel->setHidden(viewModel.itemLine().isEmpty());
    m_detailLabel->setText(viewModel.detailsLine());
    m_detailLabel->setHidden(viewModel.detailsLine().isEmpty());
    noteField()->setPlaceholderText(viewModel.placeholderNote());
}

void BlockTaskVC::viewDidAppear()
{
    NoteSheet::viewDidAppear();
    // The scroll indicator shows for a moment, to tell that there is more below.
    QScrollArea *scroll = scrollView();
    if (scroll->verticalScrollBar()->maximum() <= 0)
        return;
    scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    QTimer::singleShot(1000, scroll, [scroll] { scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded); });
}

void BlockTaskVC::block()
{
    BlockTaskVM &viewModel = requireViewModel();
    if (m_sending)
        return;
    m_sending = true;
    m_blockButton->setEnabled(false);
    const QString reason = noteField()->text();
    viewModel.block(reason, attachedPicture(), [self = QPointer<BlockTaskVC>(this)](BlockTaskVM::Outcome outcome) {
        if (!self)
            return;
        if (outcome == BlockTaskVM::Outcome::failed) {
            self->m_sending = false;
            self->m_blockButton->setEnabled(true);
            AlertPresenter::presentTransient(self, ItemsTexts::blockFailureTitle(), QString(),
                                             self->delays().shortAlert);
            return;
        }
        const GuardedDelegate<BlockTaskVCDelegate> delegate = self->m_delegate;
        self->dismiss([delegate] {
            if (delegate)
                delegate->didBlockTask();
        });
    });
}

} // namespace ravelin
