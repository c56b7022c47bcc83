#pragma once

#include <QWidget>

class ContrastFixes;
class ContrastStorage;
class QLabel;
class QPushButton;
class QStackedWidget;
class VisionPreviews;
class QLineEdit;
class RoundedSwatch;

// The Contrast tab: "Sample Text" in the foreground color on the background
// color, the two colors as swatches over their hex fields ("Background"
// first, on purpose), the WCAG contrast ratio and grade. The texts live in
// the shared store, every keystroke goes there at once, and so they outlast
// the tab. Text that does not parse stands for the field's fallback color
// (white background, black text); it is never rejected or marked.
//
// Below the grade: the APCA contrast and the use it allows, always; under
// it either the nearest colors that pass (the default: what to do about a
// failing pair) or, one click or Alt+V away, the pair as seen with each
// color-vision deficiency. The window has room for one of the two.
class ContrastTab : public QWidget
{
    Q_OBJECT

public:
    explicit ContrastTab(ContrastStorage &contrastStorage, QWidget *parent = nullptr);

    QLineEdit *backgroundField() const { return m_backgroundField; }
    QLineEdit *foregroundField() const { return m_foregroundField; }
    QString ratioText() const;
    QString levelText() const;
    QString apcaText() const;
    QPushButton *visionButton() const { return m_visionButton; }
    ContrastFixes *fixes() const { return m_fixes; }
    VisionPreviews *visionPreviews() const { return m_vision; }

private:
    QLineEdit *addInput(class QHBoxLayout *row, const QString &label, RoundedSwatch *&swatch);
    void refresh();

    ContrastStorage &m_contrastStorage;
    QWidget *m_preview;
    RoundedSwatch *m_backgroundSwatch = nullptr;
    RoundedSwatch *m_foregroundSwatch = nullptr;
    QLineEdit *m_backgroundField;
    QLineEdit *m_foregroundField;
    QLabel *m_ratioLabel;
    QLabel *m_levelBadge;
    QLabel *m_apcaLabel;
    QLabel *m_apcaUse;
    QPushButton *m_visionButton;
    QStackedWidget *m_more;
    ContrastFixes *m_fixes;
    VisionPreviews *m_vision;
};
