#include "CssFormat.h"

#include "CssColorScanner.h"

#include <QSet>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isAsciiLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

QString identifier(const QString &name)
{
    QString id;
    bool blankPending = false;
    for (const QChar c : name.normalized(QString::NormalizationForm_KD)) {
        if (c.isSpace()) {
            blankPending = !id.isEmpty();
            continue;
        }
        const QChar lower = c.unicode() < 0x80 ? c.toLower() : c;
        if (!isAsciiLetter(lower) && !isDigit(lower) && lower != u'-' && lower != u'_')
            continue;
        if (blankPending)
            id.append(u'-');
        blankPending = false;
        id.append(lower);
    }
    if (id.isEmpty())
        return u"color"_s;
    if (isDigit(id.front()))
        id.prepend("color-"_L1);
    return id;
}

} // namespace

namespace CssFormat {

ExchangeResult read(const QByteArray &data)
{
    ExchangePalette palette;
    const QString error = scanCssColors(data, palette);
    if (!error.isEmpty())
        return ExchangeResult::refused(error);
    return {std::move(palette), {}};
}

QByteArray write(const ExchangePalette &palette)
{
    QStringList names;
    for (const ExchangeColor &color : palette.colors)
        names.append(color.name);
    const QStringList ids = identifiers(names);
    QByteArray out = ":root {\n";
    for (qsizetype i = 0; i < ids.size(); ++i)
        out += "  --" + ids[i].toLatin1() + ": " + palette.colors[i].hexText().toLatin1() + ";\n";
    out += "}\n";
    return out;
}

QStringList identifiers(const QStringList &names)
{
    QStringList ids;
    QSet<QString> taken;
    for (const QString &name : names) {
        const QString base = identifier(name);
        QString id = base;
        for (int n = 2; taken.contains(id); ++n)
            id = base + u'-' + QString::number(n);
        taken.insert(id);
        ids.append(id);
    }
    return ids;
}

} // namespace CssFormat
