#include "ContrastStorage.h"

#include "model/Contrast.h"

ContrastStorage::ContrastStorage(QObject *parent)
    : QObject(parent)
{
}

void ContrastStorage::setHex1(const QString &text)
{
    if (text == m_hex1)
        return;
    m_hex1 = text;
    emit hex1Changed(m_hex1);
}

void ContrastStorage::setHex2(const QString &text)
{
    if (text == m_hex2)
        return;
    m_hex2 = text;
    emit hex2Changed(m_hex2);
}

double ContrastStorage::contrastRatio() const
{
    return ::contrastRatio(m_hex1, m_hex2);
}
