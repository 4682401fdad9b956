#pragma once

#include "api/outboxentry.h"
#include "api/pendingresults.h"

#include <QAbstractListModel>
#include <QList>

namespace ravelin {

// The results of the signed-in user that are not on the server yet, oldest
// first, as the rows of the "Not sent" list: waiting ones and refused ones
// with the server's reason. New rows of the outbox are rows inserted, rows that
// left it rows removed, and a row whose state changed a dataChanged.
class OutboxListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        EntryIdRole = Qt::UserRole + 1,
        // What the result is ("Task 12 · Comment: Valve replaced").
        SummaryRole,
        // "Waiting", or "Not sent: " and the server's reason.
        StateRole,
        // SyncMark: waiting or not sent.
        SyncMarkRole,
    };
    Q_ENUM(Role)

    explicit OutboxListModel(QObject *parent = nullptr);

    // Takes the outbox rows (in the order they were made), row by row.
    void setEntries(const QList<OutboxEntry> &entries);
    [[nodiscard]] const QList<OutboxEntry> &entries() const { return m_entries; }
    [[nodiscard]] std::optional<OutboxEntry> entry(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    QList<OutboxEntry> m_entries;
};

} // namespace ravelin
