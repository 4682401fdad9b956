#pragma once

#include <QListView>

namespace ravelin {

// A list laid out at its full height inside a screen's scrolling area, which
// does the scrolling (and the pull to refresh): the list never scrolls itself
// and asks for as much height as its rows take at its width, as its item
// delegate measures them. Only the rows in sight are painted. A row reached by
// the keyboard is brought into sight by the scrolling area.
class FullHeightListView : public QListView
{
    Q_OBJECT

public:
    explicit FullHeightListView(QWidget *parent = nullptr);

    // Takes the model and follows its changes with its height.
    void setModel(QAbstractItemModel *model) override;

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    // Rows are measured again (after a change that alters their heights).
    void remeasure();

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void resizeEvent(QResizeEvent *event) override;
};

} // namespace ravelin
