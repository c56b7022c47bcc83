#pragma once

#include <QLabel>
#include <QTimer>

// A short line that tells how something the user started ended (an import,
// an export): shown for a few seconds, longer for a failure, and gone at a
// click or at the next notice. Its text is also its accessible name.
class NoticeLine : public QLabel
{
    Q_OBJECT

public:
    enum class Kind { Done, Failed };

    explicit NoticeLine(QWidget *parent = nullptr);

    void showNotice(const QString &text, Kind kind);
    void dismiss();

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    QTimer m_timer;
};
