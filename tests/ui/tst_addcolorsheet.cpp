#include "UiTestSupport.h"

#include "ui/AddColorSheet.h"
#include "ui/StyledButton.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

// Which palette the sheet is opened with.
enum class Remembered { None, Second, Unknown };
Q_DECLARE_METATYPE(Remembered)

class TestAddColorSheet : public QObject
{
    Q_OBJECT

private slots:
    void noPalettes();
    void preselection_data();
    void preselection();
    void keys_data();
    void keys();
    void addPassesNameAsTyped_data();
    void addPassesNameAsTyped();
    void paletteMenuFollowsTheStore();
    void longPaletteNameIsElided();

private:
    static QWidget *host();
};

QWidget *TestAddColorSheet::host()
{
    static QWidget *window = [] {
        auto *w = new QWidget;
        w->resize(300, 400);
        w->show();
        return w;
    }();
    return window;
}

void TestAddColorSheet::noPalettes()
{
    SharedObjects shared;
    auto *sheet = new AddColorSheet(shared.paletteStorage, QStringLiteral("x"), std::nullopt, host());
    QSignalSpy added(sheet, &AddColorSheet::addRequested);
    sheet->open();
    QVERIFY(shownTexts(sheet).contains(QStringLiteral("No palettes available. Create one first.")));
    QVERIFY(!sheet->paletteMenu()->isVisibleTo(sheet));
    QVERIFY(!sheet->selectedPalette());
    QTest::mouseClick(sheet->addButton(), Qt::LeftButton);
    QVERIFY(sheet->isVisible());
    QCOMPARE(added.size(), 0);
    sheet->close();
}

void TestAddColorSheet::preselection_data()
{
    QTest::addColumn<Remembered>("remembered");
    QTest::addColumn<int>("expectedIndex"); // in the store; -1: the id as given
    QTest::newRow("nothing remembered: first palette") << Remembered::None << 0;
    QTest::newRow("remembered palette") << Remembered::Second << 1;
    QTest::newRow("remembered id taken as it is") << Remembered::Unknown << -1;
}

void TestAddColorSheet::preselection()
{
    QFETCH(Remembered, remembered);
    QFETCH(int, expectedIndex);
    SharedObjects shared;
    const Palette first = shared.paletteStorage.createPalette(QStringLiteral("One"));
    const Palette second = shared.paletteStorage.createPalette(QStringLiteral("Two"));
    const QUuid unknown = QUuid::createUuid();
    std::optional<QUuid> given;
    if (remembered == Remembered::Second)
        given = second.id;
    else if (remembered == Remembered::Unknown)
        given = unknown;

    auto *sheet = new AddColorSheet(shared.paletteStorage, QStringLiteral("x"), given, host());
    const QUuid expected = expectedIndex < 0 ? unknown : shared.paletteStorage.palettes()[expectedIndex].id;
    QCOMPARE(sheet->selectedPalette(), std::optional<QUuid>(expected));
    if (expectedIndex >= 0)
        QCOMPARE(sheet->paletteMenu()->currentText(), shared.paletteStorage.palettes()[expectedIndex].name);
    Q_UNUSED(first);
    delete sheet;
}

void TestAddColorSheet::keys_data()
{
    QTest::addColumn<bool>("choosePlaceholder");
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("staysOpen");
    QTest::addColumn<int>("adds");
    QTest::newRow("Return with a palette adds") << false << int(Qt::Key_Return) << false << 1;
    QTest::newRow("Enter with a palette adds") << false << int(Qt::Key_Enter) << false << 1;
    QTest::newRow("Return on \"Select a palette\" stays") << true << int(Qt::Key_Return) << true << 0;
    QTest::newRow("Escape cancels") << false << int(Qt::Key_Escape) << false << 0;
    QTest::newRow("Escape on placeholder cancels") << true << int(Qt::Key_Escape) << false << 0;
}

void TestAddColorSheet::keys()
{
    QFETCH(bool, choosePlaceholder);
    QFETCH(int, key);
    QFETCH(bool, staysOpen);
    QFETCH(int, adds);
    SharedObjects shared;
    const Palette palette = shared.paletteStorage.createPalette(QStringLiteral("Brand"));
    auto *sheet = new AddColorSheet(shared.paletteStorage, QStringLiteral("Sky"), std::nullopt, host());
    QPointer<AddColorSheet> guard(sheet);
    QSignalSpy added(sheet, &AddColorSheet::addRequested);
    sheet->open();
    QVERIFY(QTest::qWaitForWindowExposed(sheet));
    if (choosePlaceholder) {
        sheet->paletteMenu()->setCurrentIndex(0);
        emit sheet->paletteMenu()->activated(0);
        QVERIFY(!sheet->selectedPalette());
    }
    QTest::keyClick(sheet->nameField(), Qt::Key(key));
    QCOMPARE(added.size(), adds);
    if (adds) {
        QCOMPARE(added[0][0].toUuid(), palette.id);
        QCOMPARE(added[0][1].toString(), QStringLiteral("Sky"));
    }
    if (staysOpen) {
        QVERIFY(guard && guard->isVisible());
        sheet->close();
    } else {
        QTRY_VERIFY(!guard || !guard->isVisible());
    }
}

void TestAddColorSheet::addPassesNameAsTyped_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("empty") << QString();
    QTest::newRow("blanks kept") << QStringLiteral("  Sky  ");
    QTest::newRow("punctuation") << QStringLiteral("Sky (alt) #2");
}

void TestAddColorSheet::addPassesNameAsTyped()
{
    QFETCH(QString, typed);
    SharedObjects shared;
    shared.paletteStorage.createPalette(QStringLiteral("Brand"));
    auto *sheet = new AddColorSheet(shared.paletteStorage, QStringLiteral("White"), std::nullopt, host());
    QSignalSpy added(sheet, &AddColorSheet::addRequested);
    sheet->open();
    sheet->nameField()->clear();
    QTest::keyClicks(sheet->nameField(), typed);
    QTest::mouseClick(sheet->addButton(), Qt::LeftButton);
    QCOMPARE(added.size(), 1);
    QCOMPARE(added[0][1].toString(), typed);
}

void TestAddColorSheet::paletteMenuFollowsTheStore()
{
    SharedObjects shared;
    auto *sheet = new AddColorSheet(shared.paletteStorage, QStringLiteral("x"), std::nullopt, host());
    QVERIFY(!sheet->paletteMenu()->isVisibleTo(sheet));
    const Palette made = shared.paletteStorage.createPalette(QStringLiteral("Later"));
    QVERIFY(sheet->paletteMenu()->isVisibleTo(sheet));
    QCOMPARE(sheet->paletteMenu()->count(), 2);
    sheet->setSelectedPalette(made.id);
    QCOMPARE(sheet->paletteMenu()->currentIndex(), 1);
    delete sheet;
}

void TestAddColorSheet::longPaletteNameIsElided()
{
    SharedObjects shared;
    const QString longName = QString(200, QLatin1Char('W'));
    shared.paletteStorage.createPalette(longName);
    auto *sheet = new AddColorSheet(shared.paletteStorage, longName, std::nullopt, host());
    sheet->open();
    QVERIFY(QTest::qWaitForWindowExposed(sheet));
    QCOMPARE(sheet->width(), 350);
    QVERIFY(sheet->paletteMenu()->currentText().endsWith(QChar(0x2026)));
    QVERIFY(sheet->paletteMenu()->geometry().right() < sheet->width());
    QCOMPARE(sheet->paletteMenu()->itemData(1, Qt::ToolTipRole).toString(), longName);
    sheet->close();
}

QTEST_MAIN(TestAddColorSheet)
#include "tst_addcolorsheet.moc"
