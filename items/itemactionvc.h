#pragma once

#include "host/guardeddelegate.h"
#include "items/itemactionvcdelegate.h"
#include "items/itemactionvm.h"
#include "items/notesheet.h"

#include <QPointer>

class QLabel;
class QPushButton;

namespace ravelin {

// Sends the worker's result for the items handed over: "Complete" (they become
// completed) or "Report" (an incident, which needs a note), with an optional
// note and picture. Closes itself after the update and tells its delegate
// whether it went through. A single item with a QR code shows the checkpoint
// image and is completed only after its code was scanned; an item already
// completed is not completed again.
class ItemActionVC : public NoteSheet
{
    Q_OBJECT

public:
    explicit ItemActionVC(QWidget *parent = nullptr);

    // Set before the screen loads; the screen owns its view model.
    [[nodiscard]] ItemActionVM *viewModel() const { return m_viewModel; }
    void setViewModel(ItemActionVM *viewModel);
    [[nodiscard]] ItemActionVCDelegate *delegate() const { return m_delegate.get(); }
    void setDelegate(ItemActionVCDelegate *delegate) { m_delegate = delegate; }

    void viewDidLoad() override;

    // "complete" and "report": the update with the items' new status.
    void complete();
    void report();

    [[nodiscard]] QLabel *titleLabel() const { return m_titleLabel; }
    [[nodiscard]] QLabel *detailLabel() const { return m_detailLabel; }
    [[nodiscard]] QLabel *infoLabel() const { return m_infoLabel; }
    [[nodiscard]] QLabel *checkpointImageView() const { return m_checkpointImage; }
    [[nodiscard]] QPushButton *completeButton() const { return m_completeButton; }
    [[nodiscard]] QPushButton *reportButton() const { return m_reportButton; }

private:
    void update(ItemStatus status);
    void updateButtons();
    [[nodiscard]] ItemActionVM &requireViewModel() const;

    QPointer<ItemActionVM> m_viewModel;
    GuardedDelegate<ItemActionVCDelegate> m_delegate;
    QLabel *m_titleLabel = nullptr;
    QLabel *m_detailLabel = nullptr;
    QLabel *m_infoLabel = nullptr;
    QLabel *m_checkpointImage = nullptr;
    QPushButton *m_completeButton = nullptr;
    QPushButton *m_reportButton = nullptr;
    bool m_sending = false;
};

} // namespace ravelin
