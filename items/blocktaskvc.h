#pragma once

#include "host/guardeddelegate.h"
#include "items/blocktaskvcdelegate.h"
#include "items/blocktaskvm.h"
#include "items/notesheet.h"

#include <QPointer>

class QLabel;
class QPushButton;

namespace ravelin {

// Marks the open task as blocked. A reason or a picture travels as an incident
// comment on the task first; with neither, the block goes ahead without one
// (the "* Mandatory field" hint notwithstanding). Once blocked, the screen
// closes and tells its delegate; when the comment fails it stays open, with a
// short alert, so that the worker can try again.
class BlockTaskVC : public NoteSheet
{
    Q_OBJECT

public:
    [[nodiscard]] static QString screenTitle() { return tr("Mark as Blocked"); }

    explicit BlockTaskVC(QWidget *parent = nullptr);

    // Set before the screen loads; the screen owns its view model.
    [[nodiscard]] BlockTaskVM *viewModel() const { return m_viewModel; }
    void setViewModel(BlockTaskVM *viewModel);
    [[nodiscard]] BlockTaskVCDelegate *delegate() const { return m_delegate.get(); }
    void setDelegate(BlockTaskVCDelegate *delegate) { m_delegate = delegate; }

    void viewDidLoad() override;
    void viewDidAppear() override;

    // "report" (the block button).
    void block();

    [[nodiscard]] QLabel *titleLabel() const { return m_titleLabel; }
    [[nodiscard]] QLabel *detailLabel() const { return m_detailLabel; }
    [[nodiscard]] QLabel *itemNamesLabel() const { return m_itemNamesLabel; }
    [[nodiscard]] QPushButton *blockButton() const { return m_blockButton; }

private:
    [[nodiscard]] BlockTaskVM &requireViewModel() const;

    QPointer<BlockTaskVM> m_viewModel;
    GuardedDelegate<BlockTaskVCDelegate> m_delegate;
    QLabel *m_titleLabel = nullptr;
    QLabel *m_detailLabel = nullptr;
    QLabel *m_itemNamesLabel = nullptr;
    QPushButton *m_blockButton = nullptr;
    bool m_sending = false;
};

} // namespace ravelin
