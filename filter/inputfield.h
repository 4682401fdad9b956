#pragma once

#include <QLineEdit>
#include <QPointer>

namespace ravelin {

class InputSheet;

// A text field edited through its own input view (a picker) instead of typing:
// a tap makes it the field being edited, and its input sheet slides in with its
// accessory bar over its input view until editing ends. The text is set by the
// screen; the worker cannot type into it. From the keyboard, Enter or Space
// opens the sheet and moves the focus into it; when editing ends there, the
// focus comes back to the field.
class InputField : public QLineEdit
{
    Q_OBJECT

public:
    explicit InputField(QWidget *parent = nullptr);

    // Shown in the sheet while the field is edited; kept by the field until then.
    [[nodiscard]] QWidget *inputView() const { return m_inputView; }
    void setInputView(QWidget *view);
    [[nodiscard]] QWidget *inputAccessoryView() const { return m_inputAccessoryView; }
    void setInputAccessoryView(QWidget *view);
    [[nodiscard]] InputSheet *inputSheet() const;
    void setInputSheet(InputSheet *sheet);

    // Starts editing (another field of the sheet stops); false without a sheet.
    bool becomeFirstResponder();
    // Stops editing; the sheet slides away.
    void resignFirstResponder();
    [[nodiscard]] bool isFirstResponder() const;

signals:
    void editingDidBegin();
    void editingDidEnd();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void keep(QWidget *view);
    void showEditing(bool editing);

    QPointer<QWidget> m_inputView;
    QPointer<QWidget> m_inputAccessoryView;
    QPointer<InputSheet> m_sheet;
};

} // namespace ravelin
