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
    void preselection_data();
    void preselection();
    void addPassesNameAsTyped_data();
    void addPassesNameAsTyped();
    void paletteMenuFollowsTheStore();

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

QTEST_MAIN(TestAddColorSheet)
#include "tst_addcolorsheet.moc"
