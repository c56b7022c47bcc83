#pragma once

#include "model/ConvertRules.h"

#include <QList>
#include <QWidget>

#include <array>

class QLineEdit;
class RoundedSwatch;

// The Convert tab: one color of its own, shown as a swatch and in five
// editable notations. Return in any field commits that notation's group;
// the other groups are rewritten from the new color while the committed one
// keeps the text exactly as typed. Invalid input is ignored silently.
class ConvertView : public QWidget
{
    Q_OBJECT

public:
    explicit ConvertView(QWidget *parent = nullptr);

    RgbColor color() const { return m_color; }
    // True from a successful commit until the next turn of the event loop;
    // commits arriving meanwhile are dropped.
    bool isUpdating() const { return m_isUpdating; }

    // The texts of one notation's fields, in order.
    QStringList texts(Notation notation) const;

    // What Return does in a field of the group.
    void commit(Notation notation);

signals:
    void colorChanged();

private:
    void addGroup(class QVBoxLayout *layout, Notation notation, const QString &label,
                  const QStringList &placeholders, const QStringList &initialTexts);
    void setTexts(Notation notation, const QStringList &texts);

    RgbColor m_color{1.0, 1.0, 1.0};
    bool m_isUpdating = false;
    RoundedSwatch *m_swatch = nullptr;
    std::array<QList<QLineEdit *>, 5> m_fields;
};
