#include "UiTestSupport.h"

#include "ui/AddColorSheet.h"
#include "ui/ColorDisplayView.h"
#include "ui/FormatRow.h"
#include "ui/MenuBarPickerView.h"
#include "ui/PickedColorPreview.h"
#include "ui/StyledButton.h"
#include "ui/TextPromptDialog.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include <memory>

class TestPickerView : public QObject
{
    Q_OBJECT

private slots:
    void opensOnWhite();
    void placeholderCard();
    void pickEndingAddsToHistory_data();
    void pickEndingAddsToHistory();
    void pickButtonDisabledWhilePicking();
    void historyFilledEvenIfViewIsGone();
    void paletteRow_data();
    void paletteRow();
    void newPalettePrompt();
    void createPalette_data();
    void createPalette();
    void addToPaletteFilesCopyWithSameId();
    void sheetRemembersPalette();
    void cancelKeepsTypedName();

private:
    struct Fixture
    {
        SharedObjects shared;
        std::unique_ptr<MenuBarPickerView> view;
        Fixture()
        {
            view = std::make_unique<MenuBarPickerView>(shared.tintwrightService, shared.paletteStorage,
                                                       shared.historyStorage);
            view->resize(300, 357);
            view->show();
        }
    };
};

void TestPickerView::opensOnWhite()
{
    Fixture f;
    auto *preview = findShown<PickedColorPreview>(f.view.get());
    QVERIFY(preview);
    QVERIFY(!preview->showsPlaceholder());
    QCOMPARE(preview->colorItem()->name, QStringLiteral("White"));
    auto *display = findShown<ColorDisplayView>(f.view.get());
    QVERIFY(display);
    QCOMPARE(display->rows()[0]->value(), QStringLiteral("#FFFFFF"));
    auto *pick = findShown<StyledButton>(f.view.get(), QStringLiteral("pickButton"));
    QVERIFY(pick);
    QCOMPARE(pick->text(), QStringLiteral("Pick Color"));
    QCOMPARE(pick->symbol(), QStringLiteral("eyedropper"));
    QVERIFY(f.shared.historyStorage.colors().isEmpty());
}

void TestPickerView::placeholderCard()
{
    PickedColorPreview preview;
    preview.resize(200, 120);
    preview.setColorItem(std::nullopt);
    QVERIFY(preview.showsPlaceholder());
    QCOMPARE(preview.accessibleName(), QStringLiteral("Pick a color"));
    // Paints without a color.
    QImage image(preview.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::black);
    preview.render(&image);
    QVERIFY(image.pixelColor(100, 60) != QColor(Qt::white));
}

void TestPickerView::pickEndingAddsToHistory_data()
{
    QTest::addColumn<bool>("chosen");
    QTest::addColumn<QString>("expectedHex");
    QTest::newRow("a color is chosen") << true << "#3366CC";
    // The picked color is still present after a cancel, so it is added.
    QTest::newRow("cancelled: the current color goes in") << false << "#FFFFFF";
}

void TestPickerView::pickEndingAddsToHistory()
{
    QFETCH(bool, chosen);
    QFETCH(QString, expectedHex);
    Fixture f;
    const ColorItem white = *f.shared.tintwrightService.pickedColor();
    QTest::mouseClick(findShown<StyledButton>(f.view.get(), QStringLiteral("pickButton")), Qt::LeftButton);
    QVERIFY(f.shared.sampler() && f.shared.sampler()->started);
    QVERIFY(f.shared.historyStorage.colors().isEmpty());
    if (chosen)
        f.shared.sampler()->finishWith(0.2, 0.4, 0.8);
    else
        f.shared.sampler()->cancel();
    QCOMPARE(f.shared.historyStorage.colors().size(), 1);
    const ColorItem first = f.shared.historyStorage.colors().first();
    QCOMPARE(first, *f.shared.tintwrightService.pickedColor());
    QCOMPARE(findShown<ColorDisplayView>(f.view.get())->rows()[0]->value(), expectedHex);
    if (!chosen)
        QCOMPARE(first.id, white.id);
}

void TestPickerView::pickButtonDisabledWhilePicking()
{
    Fixture f;
    auto *pick = findShown<StyledButton>(f.view.get(), QStringLiteral("pickButton"));
    f.view->pickColor();
    QVERIFY(f.shared.tintwrightService.isPicking());
    QVERIFY(!pick->isEnabled());
    QPointer<ManualSampler> first = f.shared.sampler();
    f.view->pickColor(); // ignored while a pick runs
    QCOMPARE(f.shared.sampler(), first.data());
    f.shared.sampler()->finishWith(1, 0, 0);
    QVERIFY(pick->isEnabled());
    QCOMPARE(f.shared.historyStorage.colors().size(), 1);
}

void TestPickerView::historyFilledEvenIfViewIsGone()
{
    Fixture f;
    f.view->pickColor();
    f.view.reset();
    f.shared.sampler()->finishWith(0, 1, 0);
    QCOMPARE(f.shared.historyStorage.colors().size(), 1);
    QCOMPARE(f.shared.historyStorage.colors().first().green, 1.0);
}

void TestPickerView::paletteRow_data()
{
    QTest::addColumn<int>("palettes");
    QTest::newRow("no palettes") << 0;
    QTest::newRow("one palette") << 1;
}

void TestPickerView::paletteRow()
{
    QFETCH(int, palettes);
    Fixture f;
    for (int i = 0; i < palettes; ++i)
        f.shared.paletteStorage.createPalette(QStringLiteral("P%1").arg(i));
    const bool none = palettes == 0;
    QCOMPARE(findShown<QWidget>(f.view.get(), QStringLiteral("noPalettesRow")) != nullptr, none);
    QCOMPARE(shownTexts(f.view.get()).contains(QStringLiteral("No palettes yet.")), none);
    QCOMPARE(findShown<StyledButton>(f.view.get(), QStringLiteral("createOneButton")) != nullptr, none);
    auto *add = findShown<StyledButton>(f.view.get(), QStringLiteral("addToPaletteButton"));
    QCOMPARE(add != nullptr, !none);
    if (add) {
        QCOMPARE(add->text(), QStringLiteral("Add to Palette"));
        QCOMPARE(add->symbol(), QStringLiteral("plus"));
    }
}

void TestPickerView::newPalettePrompt()
{
    Fixture f;
    QTest::mouseClick(findShown<StyledButton>(f.view.get(), QStringLiteral("createOneButton")), Qt::LeftButton);
    TextPromptDialog *prompt = f.view->newPalettePrompt();
    QVERIFY(prompt && prompt->isVisible());
    QCOMPARE(prompt->windowTitle(), QStringLiteral("New Palette"));
    QVERIFY(shownTexts(prompt).contains(QStringLiteral("New Palette")));
    QVERIFY(shownTexts(prompt).contains(QStringLiteral("Enter a name for the new palette.")));
    QCOMPARE(prompt->lineEdit()->placeholderText(), QStringLiteral("Palette name"));
    QCOMPARE(prompt->cancelButton()->text(), QStringLiteral("Cancel"));
    QCOMPARE(prompt->acceptButton()->text(), QStringLiteral("Create"));
    QTest::keyClicks(prompt->lineEdit(), QStringLiteral("Nope"));
    QTest::keyClick(prompt->lineEdit(), Qt::Key_Escape);
    QTRY_VERIFY(!f.view->newPalettePrompt());
    QVERIFY(f.shared.paletteStorage.palettes().isEmpty());
    QVERIFY(!f.view->addSheet());
}

void TestPickerView::createPalette_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("creates");
    QTest::newRow("empty: nothing") << QString() << false;
    QTest::newRow("blanks: a blank name") << QStringLiteral("   ") << true;
    QTest::newRow("a name") << QStringLiteral("Brand") << true;
}

void TestPickerView::createPalette()
{
    QFETCH(QString, typed);
    QFETCH(bool, creates);
    Fixture f;
    f.view->showNewPalettePrompt();
    TextPromptDialog *prompt = f.view->newPalettePrompt();
    QTest::keyClicks(prompt->lineEdit(), typed);
    QTest::keyClick(prompt->lineEdit(), Qt::Key_Return);
    QCOMPARE(f.shared.paletteStorage.palettes().size(), creates ? 1 : 0);
    if (!creates) {
        QVERIFY(!f.view->addSheet());
        return;
    }
    const Palette made = f.shared.paletteStorage.palettes().first();
    QCOMPARE(made.name, typed);
    AddColorSheet *sheet = f.view->addSheet();
    QVERIFY(sheet && sheet->isVisible());
    QCOMPARE(sheet->selectedPalette(), std::optional<QUuid>(made.id));
    QCOMPARE(sheet->nameField()->text(), QStringLiteral("White"));
    QCOMPARE(f.view->preselectedPaletteId(), std::optional<QUuid>(made.id));
    sheet->close();
}

void TestPickerView::addToPaletteFilesCopyWithSameId()
{
    Fixture f;
    f.shared.paletteStorage.createPalette(QStringLiteral("First"));
    const Palette target = f.shared.paletteStorage.createPalette(QStringLiteral("Second"));
    f.view->pickColor();
    f.shared.sampler()->finishWith(1.0, 128 / 255.0, 0.0);
    const ColorItem picked = *f.shared.tintwrightService.pickedColor();
    const QList<ColorItem> historyBefore = f.shared.historyStorage.colors();

    QTest::mouseClick(findShown<StyledButton>(f.view.get(), QStringLiteral("addToPaletteButton")), Qt::LeftButton);
    AddColorSheet *sheet = f.view->addSheet();
    QVERIFY(sheet);
    QCOMPARE(f.view->colorName(), QStringLiteral("Picked Color"));
    QCOMPARE(sheet->nameField()->text(), QStringLiteral("Picked Color"));
    sheet->setSelectedPalette(target.id);
    sheet->nameField()->setText(QStringLiteral("Orange"));
    QTest::mouseClick(sheet->addButton(), Qt::LeftButton);

    const Palette after = *f.shared.paletteStorage.palette(target.id);
    QCOMPARE(after.colors.size(), 1);
    QCOMPARE(after.colors[0], picked.renamed(QStringLiteral("Orange")));
    QCOMPARE(after.colors[0].id, picked.id);
    QVERIFY(f.shared.paletteStorage.palettes().first().colors.isEmpty());
    QCOMPARE(f.shared.historyStorage.colors(), historyBefore);
    QCOMPARE(*f.shared.tintwrightService.pickedColor(), picked);
}

void TestPickerView::sheetRemembersPalette()
{
    Fixture f;
    f.shared.paletteStorage.createPalette(QStringLiteral("First"));
    const Palette second = f.shared.paletteStorage.createPalette(QStringLiteral("Second"));
    f.view->showAddSheet();
    QCOMPARE(f.view->addSheet()->selectedPalette(), std::optional<QUuid>(f.shared.paletteStorage.palettes()[0].id));
    f.view->addSheet()->setSelectedPalette(second.id);
    f.view->addSheet()->add();
    QTRY_VERIFY(!f.view->addSheet());
    f.view->showAddSheet();
    QCOMPARE(f.view->addSheet()->selectedPalette(), std::optional<QUuid>(second.id));
    f.view->addSheet()->close();
}

void TestPickerView::cancelKeepsTypedName()
{
    Fixture f;
    f.shared.paletteStorage.createPalette(QStringLiteral("First"));
    f.view->showAddSheet();
    AddColorSheet *sheet = f.view->addSheet();
    sheet->nameField()->selectAll();
    QTest::keyClicks(sheet->nameField(), QStringLiteral("Snow"));
    QTest::mouseClick(sheet->cancelButton(), Qt::LeftButton);
    QTRY_VERIFY(!f.view->addSheet());
    QCOMPARE(f.view->colorName(), QStringLiteral("Snow"));
    QVERIFY(f.shared.paletteStorage.palettes().first().colors.isEmpty());
}

QTEST_MAIN(TestPickerView)
#include "tst_pickerview.moc"
