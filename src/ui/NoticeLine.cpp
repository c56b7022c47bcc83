#include "NoticeLine.h"

#include "Theme.h"

#include <QMouseEvent>

NoticeLine::NoticeLine(QWidget *parent)
    : QLabel(parent)
{
    setFont(Theme::font(11));
    // A long file name or reason wraps rather than being cut off.
    setWordWrap(true);
    setContentsMargins(4, 2, 4, 2);
    setTextFormat(Qt::PlainText);
    hide();
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &NoticeLine::dismiss);
}

void NoticeLine::showNotice(const QString &text, Kind kind)
{
    QPalette palette = this->palette();
    palette.setColor(QPalette::WindowText,
                     kind == Kind::Failed ? QColor(255, 105, 97) : Theme::secondaryText());
    setPalette(palette);
    setText(text);
    setAccessibleName(text);
    show();
    m_timer.start(kind == Kind::Failed ? 8000 : 4000);
}

void NoticeLine::dismiss()
{
    m_timer.stop();
    hide();
    clear();
    setAccessibleName(QString());
}

void NoticeLine::mousePressEvent(QMouseEvent *event)
{
    dismiss();
    event->accept();
}
