#pragma once

#include <QDialog>

class QLineEdit;
class QPushButton;

// A small window-modal prompt: a title, an optional message, one text field
// and two buttons. Escape cancels, Return accepts. The text is handed back
// exactly as typed (not trimmed, possibly empty); the caller decides what
// an empty text means.
class TextPromptDialog : public QDialog
{
    Q_OBJECT

public:
    TextPromptDialog(const QString &title, const QString &message, const QString &placeholder,
                     const QString &acceptText, QWidget *parent);

    // The "New Palette" prompt of the Picker and Palettes tabs, empty each
    // time it opens; the Picker's says what the name is for.
    static TextPromptDialog *newPalettePrompt(const QString &message, QWidget *parent);

    QString text() const;
    QLineEdit *lineEdit() const { return m_field; }
    QPushButton *acceptButton() const { return m_acceptButton; }
    QPushButton *cancelButton() const { return m_cancelButton; }

signals:
    // Emitted when the accept button (or Return) closes the prompt.
    void textAccepted(const QString &text);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_finished = false;
    QLineEdit *m_field;
    QPushButton *m_cancelButton;
    QPushButton *m_acceptButton;
};
