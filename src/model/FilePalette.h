#pragma once

#include <QList>
#include <QString>
#include <QtGlobal>

#include <optional>

// One color as palette files carry it: 8-bit components and a name.
struct FileColor
{
    QString name;
    quint8 red = 0;
    quint8 green = 0;
    quint8 blue = 0;

    // "#RRGGBB", as the program writes every color.
    QString hexText() const;

    friend bool operator==(const FileColor &, const FileColor &) = default;
};

// What a palette file holds, whatever its format: the palette's name
// (empty when the file gives none), its colors in order, and how many
// entries were left out. Reading refuses a file beyond the limits below
// instead of taking part of it.
struct FilePalette
{
    static constexpr int maxColors = 10000;
    // In UTF-16 code units, for the palette's name and every color's.
    static constexpr int maxNameLength = 4096;

    QString name;
    QList<FileColor> colors;
    int skippedLab = 0;        // LAB swatches: no conversion to sRGB here
    int skippedUnreadable = 0; // entries or values that could not be read

    // Appends a color, named after its HEX text when the name is empty;
    // components outside 0..255 are clamped. Returns why the file is
    // refused (too many colors, a name too long), or an empty text.
    QString addColor(const QString &colorName, qint64 red, qint64 green, qint64 blue);
    // Same, from components in 0..1 (rounded to the nearest 8-bit step,
    // halves away from zero). A NaN counts as an unreadable entry.
    QString addUnitColor(const QString &colorName, double red, double green, double blue);
    // Returns why the name is refused, or an empty text.
    QString setName(const QString &paletteName);

    // Why a file with more than maxColors colors is refused.
    static QString tooManyColors();
};

// A file read as a palette, or the one line that says why it is refused.
struct FileReadResult
{
    std::optional<FilePalette> palette;
    QString error; // set when palette is empty

    static FileReadResult refused(const QString &why) { return {std::nullopt, why}; }
};

// An 8-bit step from a component in 0..1: clamped, halves away from zero.
quint8 byteFromUnit(double value);
