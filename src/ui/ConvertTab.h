#pragma once

#include "model/Notation.h"

#include <QList>
#include <QWidget>

#include <array>

class QLineEdit;
class RoundedSwatch;

// The Convert tab: one color of its own, shown as a swatch and in five
// editable notations, a caption column beside each notation's fields.
// Return in any field commits that notation's group; the other groups are
// rewritten from the new color while the committed one keeps the text
// exactly as typed. Invalid input is ignored silently.
class ConvertTab : public QWidget
{
    Q_OBJECT

public:
    explicit ConvertTab(QWidget *parent = nullptr);

    RgbColor color() const { return m_color; }
    // True from a successful commit until the next turn of the event loop;
    // commits arriving meanwhile are dropped.
    bool isUpdating() const { return m_isUpdating; }

    // The fields of one notation, in order, and their texts.
    const QList<QLineEdit *> &fields(Notation notation) const { return m_fields[size_t(notation)]; }
    QStringList texts(Notation notation) const;

    // What Return does in a field of the group.
    void commit(Notation notation);

private:
    void addRow(class QVBoxLayout *layout, Notation notation, const QString &label,
                const QStringList &placeholders, const QStringList &initialTexts);

    RgbColor m_color{1.0, 1.0, 1.0};
    bool m_isUpdating = false;
    RoundedSwatch *m_swatch;
    std::array<QList<QLineEdit *>, 5> m_fields;
};
