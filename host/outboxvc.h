#pragma once

#include "host/screen.h"

#include <QPointer>

class QLabel;
class QListView;
class QPushButton;

namespace ravelin {

class OutboxListModel;

// The "Not sent" list: every result of the worker that has not reached the
// server, waiting ones and refused ones with the server's reason. "Sync now"
// sends what waits at once; a refused result can be sent again or discarded.
// Opened from the count in the navigation bar.
class OutboxVC : public Screen
{
    Q_OBJECT

public:
    explicit OutboxVC(QWidget *parent = nullptr);

    [[nodiscard]] OutboxListModel *model() const { return m_model; }
    [[nodiscard]] QListView *listView() const { return m_list; }

    void viewDidLoad() override;

private:
    void reload();
    void updateButtons();
    // The refused result of the current row, if that row holds one.
    [[nodiscard]] std::optional<qint64> currentRefused() const;

    OutboxListModel *m_model = nullptr;
    QListView *m_list = nullptr;
    QLabel *m_emptyLabel = nullptr;
    QPushButton *m_retryButton = nullptr;
    QPushButton *m_discardButton = nullptr;
};

} // namespace ravelin
