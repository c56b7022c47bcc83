#include "CssFormat.h"

#include "ColorFormats.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <cmath>

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

// Characters of a CSS or SCSS name, as a regular expression.
#define NAME_CHAR "(?:[-\\w]|[^\\x00-\\x7F])"

constexpr double pi = 3.141592653589793;

// A CSS number with an optional unit ("12", "-4.5e1", "50%", "0.5turn").
struct Quantity
{
    double value = 0.0;
    QString unit;
};

std::optional<Quantity> readQuantity(const QString &token)
{
    static const QRegularExpression number(
        QStringLiteral("^([+-]?(?:\\d+\\.?\\d*|\\.\\d+)(?:[eE][+-]?\\d+)?)(.*)$"),
        QRegularExpression::DotMatchesEverythingOption);
    if (token.compare("none"_L1, Qt::CaseInsensitive) == 0)
        return Quantity{};
    const QRegularExpressionMatch match = number.match(token);
    if (!match.hasMatch())
        return std::nullopt;
    bool ok = false;
    const double value = match.captured(1).toDouble(&ok);
    if (!ok && !std::isinf(value))
        return std::nullopt;
    return Quantity{value, match.captured(2).toLower()};
}

std::optional<RgbColor> rgbFunction(const QStringList &values)
{
    double channels[3];
    for (int i = 0; i < 3; ++i) {
        const std::optional<Quantity> q = readQuantity(values[i]);
        if (!q || (!q->unit.isEmpty() && q->unit != "%"_L1))
            return std::nullopt;
        channels[i] = q->unit.isEmpty() ? q->value / 255.0 : q->value / 100.0;
    }
    return RgbColor{channels[0], channels[1], channels[2]};
}

std::optional<RgbColor> hslFunction(const QStringList &values)
{
    const std::optional<Quantity> hue = readQuantity(values[0]);
    const std::optional<Quantity> saturation = readQuantity(values[1]);
    const std::optional<Quantity> lightness = readQuantity(values[2]);
    const auto isPercent = [](const Quantity &q) { return q.unit.isEmpty() || q.unit == "%"_L1; };
    if (!hue || !saturation || !lightness || !isPercent(*saturation) || !isPercent(*lightness))
        return std::nullopt;
    const std::pair<const char *, double> degreesPer[] = {
        {"", 1.0}, {"deg", 1.0}, {"turn", 360.0}, {"rad", 180.0 / pi}, {"grad", 0.9}};
    const auto unit = std::find_if(std::begin(degreesPer), std::end(degreesPer),
                                   [&hue](const auto &u) { return hue->unit == QLatin1String(u.first); });
    if (unit == std::end(degreesPer))
        return std::nullopt;
    double degrees = hue->value * unit->second;
    if (!std::isfinite(degrees))
        return std::nullopt;
    // hslToRGB wraps a hue only once: bring it into 0..360 first.
    degrees = std::fmod(degrees, 360.0);
    if (degrees < 0)
        degrees += 360.0;
    return hslToRGB(degrees, qBound(0.0, saturation->value, 100.0), qBound(0.0, lightness->value, 100.0));
}

std::optional<RgbColor> colorFunction(const QString &function, const QString &arguments)
{
    static const QRegularExpression separators(QStringLiteral("[\\s,/]+"));
    const QStringList values = arguments.split(separators, Qt::SkipEmptyParts);
    if (arguments.contains(u'(') || (values.size() != 3 && values.size() != 4))
        return std::nullopt;
    return function.startsWith(u'r', Qt::CaseInsensitive) ? rgbFunction(values) : hslFunction(values);
}

// Every color of the text, named after its declaration's --property or
// $variable; an rgb() or hsl() that cannot be read is counted as
// unreadable. Returns why the text is refused, or an empty text.
QString readColors(const QByteArray &data, FilePalette &palette)
{
    // /* */ comments, and // line comments after a blank or at a line's start
    // (not the one in "url(http://"), taken in one pass from the left.
    static const QRegularExpression comments(QStringLiteral("/\\*.*?(?:\\*/|\\z)|(?:^|(?<=[\\s;]))//[^\\n]*"),
                                             QRegularExpression::DotMatchesEverythingOption);
    // What the reader looks at: a block's start (what came before was a
    // selector), a declaration's end, a hex color, the "--name:" or "$name:"
    // that names a declaration's colors, and rgb()/rgba()/hsl()/hsla(), read
    // only as far as a color function can reach.
    static const QRegularExpression tokens(QStringLiteral(
        "(?<open>\\{)|(?<end>[;}])|#(?<hex>" NAME_CHAR "*)"
        "|(?<!" NAME_CHAR ")(?:--|\\$)(?<name>" NAME_CHAR "+)\\s*:"
        "|(?<!" NAME_CHAR ")(?<function>(?i:rgba?|hsla?))\\((?:(?<arguments>[^)]{0,255})\\))?"));
    QString text = QString::fromUtf8(data);
    text.replace(comments, QStringLiteral(" "));
    QString name;
    QList<std::pair<QString, RgbColor>> pending; // the declaration's colors
    int pendingUnreadable = 0;
    const auto forget = [&] {
        pending.clear();
        pendingUnreadable = 0;
        name.clear();
    };
    const auto flush = [&]() -> QString {
        for (const auto &[colorName, color] : std::as_const(pending)) {
            const QString error = palette.addUnitColor(colorName, color.red, color.green, color.blue);
            if (!error.isEmpty())
                return error;
        }
        palette.skippedUnreadable += pendingUnreadable;
        forget();
        return {};
    };
    for (const QRegularExpressionMatch &match : tokens.globalMatch(text)) {
        std::optional<RgbColor> color;
        if (match.hasCaptured("open")) {
            forget();
        } else if (match.hasCaptured("end")) {
            if (const QString error = flush(); !error.isEmpty())
                return error;
        } else if (match.hasCaptured("name")) {
            name = match.captured("name");
        } else if (match.hasCaptured("hex")) {
            color = parseCssHex(match.capturedView(u"hex"));
        } else if (!(color = colorFunction(match.captured("function"), match.captured("arguments")))) {
            ++pendingUnreadable;
        }
        if (color)
            pending.append({name, *color});
        // Refused now rather than after gathering a whole file of them.
        if (pending.size() > FilePalette::maxColors)
            return FilePalette::tooManyColors();
    }
    return flush();
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

FileReadResult read(const QByteArray &data)
{
    FilePalette palette;
    const QString error = readColors(data, palette);
    if (!error.isEmpty())
        return FileReadResult::refused(error);
    return {std::move(palette), {}};
}

QByteArray write(const FilePalette &palette)
{
    QStringList names;
    for (const FileColor &color : palette.colors)
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
