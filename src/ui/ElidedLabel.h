#pragma once

#include <QWidget>

// One line of text that shortens itself with an ellipsis instead of
// widening its layout; the full text is its tooltip.
class ElidedLabel : public QWidget
{
    Q_OBJECT

public:
    explicit ElidedLabel(const QString &text, QWidget *parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString &text);
    void setAlignment(Qt::Alignment alignment);
    // The text on one line: line and paragraph breaks read as blanks.
    static QString singleLine(QString text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_text;
    Qt::Alignment m_alignment = Qt::AlignLeft | Qt::AlignVCenter;
};
