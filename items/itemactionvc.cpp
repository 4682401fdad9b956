#include "items/itemactionvc.h"

#include "api/fatalerror.h"
#include "host/ownedviewmodel.h"
#include "items/itemactionvcdelegate.h"
#include "items/itemstexts.h"
#include "resources/namedcolors.h"
#include "resources/namedimages.h"
#include "views/sheetbar.h"
#include "views/textscale.h"
#include "views/textviewwithplaceholder.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace ravelin {

ItemActionVC::ItemActionVC(QWidget *parent)
    : NoteSheet(QString(), parent)
{
    setObjectName(QStringLiteral("ItemActionVC"));
    QWidget *body = scrollView()->widget();

    auto *titleRow = new QHBoxLayout;
    titleRow->setSpacing(10);
    m_titleLabel = makeLabel(body, 20, QFont::DemiBold, NamedColors::color(ColorNames::labelText, Qt::black),
                             QStringLiteral("titleLabel"));
    titleRow->addWidget(m_titleLabel, 1);
    m_checkpointImage = new QLabel(body);
    m_checkpointImage->setObjectName(QStringLiteral("checkpointImageView"));
    m_checkpointImage->setAccessibleName(tr("QR checkpoint"));
    m_checkpointImage->setPixmap(NamedImages::pixmap(ImageNames::qrCode, QSize(30, 30), devicePixelRatioF()));
    m_checkpointImage->hide();
    titleRow->addWidget(m_checkpointImage, 0, Qt::AlignTop);
    headerColumn()->addLayout(titleRow);
    m_detailLabel = makeLabel(body, 15, QFont::Normal, NamedColors::color(ColorNames::secondaryLabelText, Qt::darkGray),
                              QStringLiteral("detailLabel"));
    headerColumn()->addWidget(m_detailLabel);
    m_infoLabel
        = makeLabel(body, 14, QFont::DemiBold, NamedColors::color(ColorNames::customOrange, QColor(255, 149, 0)),
                    QStringLiteral("infoLabel"));
    m_infoLabel->hide();
    headerColumn()->addWidget(m_infoLabel);

    noteField()->setAccessibleName(tr("Note"));
    noteField()->setObjectName(ItemsTexts::reportIncidentTxt);
    requiredLabel()->setText(ItemsTexts::reportNeedsNote());

    m_reportButton = makeActionButton(tr("Report"), QStringLiteral("reportButton"),
                                      NamedColors::color(ColorNames::customRed, Qt::red), false);
    m_completeButton = makeActionButton(tr("Complete"), QStringLiteral("completeButton"),
                                        NamedColors::color(ColorNames::customGreen, Qt::darkGreen), true);
    m_reportButton->setAccessibleDescription(tr("Reports an incident; needs a note"));
    m_completeButton->setAccessibleDescription(tr("Marks as completed"));
    connect(m_completeButton, &QPushButton::clicked, this, &ItemActionVC::complete);
    connect(m_reportButton, &QPushButton::clicked, this, &ItemActionVC::report);
    connect(noteField(), &TextViewWithPlaceholder::textEdited, this, &ItemActionVC::updateButtons);
}

void ItemActionVC::setViewModel(ItemActionVM *viewModel)
{
    adoptViewModel(m_viewModel, viewModel, this);
}

ItemActionVM &ItemActionVC::requireViewModel() const
{
    return requiredViewModel(m_viewModel, "The item action screen has no view model", "ItemActionVC");
}

void ItemActionVC::viewDidLoad()
{
    NoteSheet::viewDidLoad();
    const ItemActionVM &viewModel = requireViewModel();
    const QList<ItemPtr> &items = viewModel.items();
    if (items.size() == 1) {
        setTitle(items.first()->name);
        m_titleLabel->setText(items.first()->name);
        m_detailLabel->setText(items.first()->details);
    } else {
        setTitle(ItemsTexts::completeSelectedItems());
        m_titleLabel->setText(ItemsTexts::completeSelectedItems());
        QStringList names;
        for (const ItemPtr &item : items)
            names.append(QStringLiteral("• ") + item->name);
        m_detailLabel->setText(names.join(QLatin1Char('\n')));
    }
    sheetBar()->setTitle(items.size() == 1 ? tr("Checkpoint") : ItemsTexts::completeSelectedItems());
    m_checkpointImage->setVisible(viewModel.showsQRIndicator());
    noteField()->setPlaceholderText(viewModel.placeholderNote());
    updateButtons();
}

void ItemActionVC::updateButtons()
{
    if (!m_viewModel)
        return;
    const std::optional<QString> blocker = m_viewModel->completeBlocker();
    m_infoLabel->setText(blocker.value_or(QString()));
    m_infoLabel->setVisible(blocker.has_value());
    m_completeButton->setEnabled(!m_sending && !blocker);
    m_reportButton->setEnabled(!m_sending && ItemActionVM::canReport(noteField()->text()));
}

void ItemActionVC::complete()
{
    update(ItemStatus::ok);
}

void ItemActionVC::report()
{
    update(ItemStatus::nok);
}

void ItemActionVC::update(ItemStatus status)
{
    ItemActionVM &viewModel = requireViewModel();
    if (m_sending)
        return;
    m_sending = true;
    updateButtons();
    const std::optional<QImage> picture = attachedPicture();
    const QString note = noteField()->text();
    viewModel.update(status, note, picture, [self = QPointer<ItemActionVC>(this)](bool success) {
        if (!self)
            return;
        // The sheet goes first; the delegate is told once it is closed.
        const GuardedDelegate<ItemActionVCDelegate> delegate = self->m_delegate;
        self->dismiss([delegate, success] {
            if (delegate)
                delegate->didUpdateItemStatus(success);
        });
    });
}

} // namespace ravelin
