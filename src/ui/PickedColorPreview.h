#pragma once

#include "model/ColorItem.h"

#include <QWidget>

#include <optional>

// The Picker tab's large preview: the picked color on a rounded card, or,
// with no color, a placeholder card with the eyedropper and "Pick a color".
class PickedColorPreview : public QWidget
{
    Q_OBJECT

public:
    explicit PickedColorPreview(QWidget *parent = nullptr);

    std::optional<ColorItem> colorItem() const { return m_colorItem; }
    void setColorItem(const std::optional<ColorItem> &colorItem);
    bool showsPlaceholder() const { return !m_colorItem.has_value(); }

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::optional<ColorItem> m_colorItem;
};
