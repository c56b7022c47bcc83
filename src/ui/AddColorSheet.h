#pragma once

#include <QDialog>
#include <QUuid>

#include <optional>

class PaletteStorage;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

// The window-modal sheet in which the user names a color and chooses its
// palette. It files nothing itself: "Add" hands the palette id and the name
// to the caller (addRequested) and closes; with no palette chosen it does
// nothing. The menu follows the store while the sheet is open.
class AddColorSheet : public QDialog
{
    Q_OBJECT

public:
    // Preselects selectedPaletteId when given (as it is, even if that palette
    // is gone), else the first palette, else none.
    AddColorSheet(PaletteStorage &paletteStorage, const QString &colorName,
                  std::optional<QUuid> selectedPaletteId, QWidget *parent);

    std::optional<QUuid> selectedPalette() const { return m_selectedPalette; }
    // Chooses an entry of the palette menu; none is "Select a palette".
    void setSelectedPalette(std::optional<QUuid> id);

    QLineEdit *nameField() const { return m_nameField; }
    QComboBox *paletteMenu() const { return m_paletteMenu; }
    QPushButton *addButton() const { return m_addButton; }
    QPushButton *cancelButton() const { return m_cancelButton; }

    // "Add".
    void add();

signals:
    void addRequested(const QUuid &paletteId, const QString &name);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void fillPaletteMenu();

    PaletteStorage &m_paletteStorage;
    std::optional<QUuid> m_selectedPalette;
    bool m_finished = false;
    QLineEdit *m_nameField;
    QComboBox *m_paletteMenu;
    QLabel *m_noPalettesLabel;
    QPushButton *m_cancelButton;
    QPushButton *m_addButton;
};
