#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace ravelin {

// The top of a screen presented as a sheet: "Cancel" on the left, the title in
// the middle, a hairline below.
class SheetBar : public QWidget
{
    Q_OBJECT

public:
    static constexpr int barHeight = 52;

    explicit SheetBar(const QString &title, QWidget *parent = nullptr);

    [[nodiscard]] QString title() const;
    void setTitle(const QString &title);
    [[nodiscard]] QPushButton *cancelButton() const { return m_cancel; }

signals:
    void cancelled();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QLabel *m_title = nullptr;
    QPushButton *m_cancel = nullptr;
};

} // namespace ravelin
