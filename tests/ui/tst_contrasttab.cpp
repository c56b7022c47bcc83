#include "storage/ContrastStorage.h"
#include "ui/ContrastTab.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include <memory>

namespace {

// Replaces a field's text keystroke by keystroke, as a user would.
void retype(QLineEdit *edit, const QString &text)
{
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(edit, Qt::Key_Backspace);
    QTest::keyClicks(edit, text);
}

// The color of the preview away from its centred sample text and corners.
QColor previewBackground(const ContrastTab &view)
{
    QWidget *preview = nullptr;
    for (QWidget *w : view.findChildren<QWidget *>())
        if (w->accessibleName() == QLatin1String("Sample Text"))
            preview = w;
    Q_ASSERT(preview);
    const QImage image = preview->grab().toImage();
    return image.pixelColor(image.width() - 20, image.height() / 2);
}

} // namespace

class TestContrastTab : public QObject
{
    Q_OBJECT

private slots:
    void everyKeystrokeIsStored();
    void followsTheStore();
    void textsOutliveTheView();
    void clearedFieldsFallBackPerRow();
};

void TestContrastTab::everyKeystrokeIsStored()
{
    ContrastStorage storage;
    ContrastTab view(storage);
    QLineEdit *background = view.backgroundField();
    QTest::keyClick(background, Qt::Key_Backspace);
    QCOMPARE(storage.hex2(), QStringLiteral("#FFFFF"));
    QCOMPARE(view.ratioText(), QStringLiteral("21.00")); // invalid: white fallback
    QTest::keyClick(background, Qt::Key_0);
    QCOMPARE(storage.hex2(), QStringLiteral("#FFFFF0"));
    QCOMPARE(view.ratioText(), QStringLiteral("20.81"));

    retype(view.foregroundField(), "#FFFFF");
    QCOMPARE(storage.hex1(), QStringLiteral("#FFFFF"));
    QCOMPARE(view.ratioText(), QStringLiteral("20.81")); // still black text
    QTest::keyClick(view.foregroundField(), Qt::Key_0);
    QCOMPARE(view.ratioText(), QStringLiteral("1.00"));
    QCOMPARE(view.levelText(), QStringLiteral("Fail"));
}

void TestContrastTab::followsTheStore()
{
    ContrastStorage storage;
    ContrastTab view(storage);
    storage.setHex1(QStringLiteral("#767676"));
    QCOMPARE(view.foregroundField()->text(), QStringLiteral("#767676"));
    QCOMPARE(view.ratioText(), QStringLiteral("4.54"));
    QCOMPARE(view.levelText(), QStringLiteral("AA"));
    storage.setHex2(QStringLiteral("#767676"));
    QCOMPARE(view.backgroundField()->text(), QStringLiteral("#767676"));
    QCOMPARE(view.levelText(), QStringLiteral("Fail"));
}

void TestContrastTab::textsOutliveTheView()
{
    ContrastStorage storage;
    auto view = std::make_unique<ContrastTab>(storage);
    retype(view->backgroundField(), "#1E1E1E");
    retype(view->foregroundField(), "#not a color");
    view.reset(); // the tab is left

    ContrastTab again(storage);
    QCOMPARE(again.backgroundField()->text(), QStringLiteral("#1E1E1E"));
    QCOMPARE(again.foregroundField()->text(), QStringLiteral("#not a color"));
    QCOMPARE(again.ratioText(), QStringLiteral("1.26")); // black text fallback
    QCOMPARE(again.levelText(), QStringLiteral("Fail"));
}

void TestContrastTab::clearedFieldsFallBackPerRow()
{
    ContrastStorage storage;
    storage.setHex1(QStringLiteral("#FF0000"));
    storage.setHex2(QStringLiteral("#0000FF"));
    ContrastTab view(storage);
    view.resize(300, 360);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QCOMPARE(previewBackground(view), QColor(0, 0, 255));

    retype(view.backgroundField(), "");
    QCOMPARE(previewBackground(view), QColor(Qt::white));

    retype(view.foregroundField(), "");
    QCOMPARE(view.ratioText(), QStringLiteral("21.00"));
}

QTEST_MAIN(TestContrastTab)
#include "tst_contrasttab.moc"
