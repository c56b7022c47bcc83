#pragma once

#include <QRandomGenerator>
#include <QString>

// Random text of the kinds that break text fields: control characters,
// right-to-left runs and bidi controls, emoji sequences, stacked combining
// marks, lone surrogates and noncharacters, odd blanks, and now and then
// something the field accepts (numbers, hex colors) so that commits happen.
class HostileText
{
public:
    explicit HostileText(quint32 seed)
        : m_random(seed)
    {
    }

    // Mostly short; `longLength` characters when asked.
    QString next(qsizetype longLength = 0);
    // A text the Convert and Contrast rules may well accept.
    QString plausible();
    bool chance(int percent) { return int(m_random.bounded(100u)) < percent; }
    quint32 bounded(quint32 limit) { return m_random.bounded(limit); }

private:
    QString piece();

    QRandomGenerator m_random;
};
