#pragma once

#include <QObject>
#include <QString>

// The two hex texts of the Contrast tab, exactly as typed. They live only
// while the program runs; each launch starts at black on white.
class ContrastStorage : public QObject
{
    Q_OBJECT

public:
    explicit ContrastStorage(QObject *parent = nullptr);

    QString hex1() const { return m_hex1; } // text (foreground) color
    QString hex2() const { return m_hex2; } // background color
    void setHex1(const QString &text);
    void setHex2(const QString &text);

    double contrastRatio() const;

signals:
    void hex1Changed(const QString &text);
    void hex2Changed(const QString &text);

private:
    QString m_hex1 = QStringLiteral("#000000");
    QString m_hex2 = QStringLiteral("#FFFFFF");
};
