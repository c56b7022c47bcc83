#include "ui/ContrastInputRow.h"
#include "ui/ContrastView.h"
#include "storage/ContrastStorage.h"

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

QLineEdit *fieldOf(ContrastInputRow *row)
{
    return row->findChild<QLineEdit *>();
}

// The color of the preview away from its centred sample text and corners.
QColor previewBackground(const ContrastView &view)
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

class TestContrastView : public QObject
{
    Q_OBJECT

private slots:
    void defaults();
    void grading_data();
    void grading();
    void everyKeystrokeIsStored();
    void followsTheStore();
    void textsOutliveTheView();
    void clearedFieldsFallBackPerRow();
    void fieldsReachableWithTab();
};

void TestContrastView::defaults()
{
    ContrastStorage storage;
    ContrastView view(storage);
    QCOMPARE(view.backgroundRow()->label(), QStringLiteral("Background"));
    QCOMPARE(view.foregroundRow()->label(), QStringLiteral("Foreground"));
    QCOMPARE(view.backgroundRow()->value(), QStringLiteral("#FFFFFF"));
    QCOMPARE(view.foregroundRow()->value(), QStringLiteral("#000000"));
    QCOMPARE(view.ratioText(), QStringLiteral("21.00"));
    QCOMPARE(view.levelText(), QStringLiteral("AAA"));
    // The background row comes first, above or before the foreground row.
    view.resize(300, 360);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QVERIFY(view.backgroundRow()->geometry().x() < view.foregroundRow()->geometry().x());
}

void TestContrastView::grading_data()
{
    QTest::addColumn<QString>("background");
    QTest::addColumn<QString>("foreground");
    QTest::addColumn<QString>("ratio");
    QTest::addColumn<QString>("level");

    QTest::newRow("equal colors") << "#777777" << "#777777" << "1.00" << "Fail";
    QTest::newRow("swapped defaults") << "#000000" << "#FFFFFF" << "21.00" << "AAA";
    QTest::newRow("grey on white AA") << "#FFFFFF" << "#767676" << "4.54" << "AA";
    QTest::newRow("grey on white AA Large") << "#FFFFFF" << "#949494" << "3.03" << "AA Large";
    QTest::newRow("grey on white fail") << "#FFFFFF" << "#AAAAAA" << "2.32" << "Fail";
    QTest::newRow("lower case, no #") << "ffffff" << "595959" << "7.00" << "AAA";
    QTest::newRow("empty background is white") << "" << "#000000" << "21.00" << "AAA";
    QTest::newRow("empty foreground is black") << "#000000" << "" << "1.00" << "Fail";
    QTest::newRow("both invalid") << "#GG" << "nonsense" << "21.00" << "AAA";
    QTest::newRow("partial text") << "#FF" << "#FFFFFF" << "1.00" << "Fail";
}

void TestContrastView::grading()
{
    QFETCH(QString, background);
    QFETCH(QString, foreground);
    QFETCH(QString, ratio);
    QFETCH(QString, level);

    ContrastStorage storage;
    ContrastView view(storage);
    retype(fieldOf(view.backgroundRow()), background);
    retype(fieldOf(view.foregroundRow()), foreground);
    QCOMPARE(view.ratioText(), ratio);
    QCOMPARE(view.levelText(), level);
    QCOMPARE(storage.hex2(), background);
    QCOMPARE(storage.hex1(), foreground);
}

void TestContrastView::everyKeystrokeIsStored()
{
    ContrastStorage storage;
    ContrastView view(storage);
    QLineEdit *background = fieldOf(view.backgroundRow());
    QTest::keyClick(background, Qt::Key_Backspace);
    QCOMPARE(storage.hex2(), QStringLiteral("#FFFFF"));
    QCOMPARE(view.ratioText(), QStringLiteral("21.00")); // invalid: white fallback
    QTest::keyClick(background, Qt::Key_0);
    QCOMPARE(storage.hex2(), QStringLiteral("#FFFFF0"));
    QCOMPARE(view.ratioText(), QStringLiteral("20.81"));

    retype(fieldOf(view.foregroundRow()), "#FFFFF");
    QCOMPARE(storage.hex1(), QStringLiteral("#FFFFF"));
    QCOMPARE(view.ratioText(), QStringLiteral("20.81")); // still black text
    QTest::keyClick(fieldOf(view.foregroundRow()), Qt::Key_0);
    QCOMPARE(view.ratioText(), QStringLiteral("1.00"));
    QCOMPARE(view.levelText(), QStringLiteral("Fail"));
}

void TestContrastView::followsTheStore()
{
    ContrastStorage storage;
    ContrastView view(storage);
    storage.setHex1(QStringLiteral("#767676"));
    QCOMPARE(view.foregroundRow()->value(), QStringLiteral("#767676"));
    QCOMPARE(view.ratioText(), QStringLiteral("4.54"));
    QCOMPARE(view.levelText(), QStringLiteral("AA"));
    storage.setHex2(QStringLiteral("#767676"));
    QCOMPARE(view.backgroundRow()->value(), QStringLiteral("#767676"));
    QCOMPARE(view.levelText(), QStringLiteral("Fail"));
}

void TestContrastView::textsOutliveTheView()
{
    ContrastStorage storage;
    auto view = std::make_unique<ContrastView>(storage);
    retype(fieldOf(view->backgroundRow()), "#1E1E1E");
    retype(fieldOf(view->foregroundRow()), "#not a color");
    view.reset(); // the tab is left

    ContrastView again(storage);
    QCOMPARE(again.backgroundRow()->value(), QStringLiteral("#1E1E1E"));
    QCOMPARE(again.foregroundRow()->value(), QStringLiteral("#not a color"));
    QCOMPARE(again.ratioText(), QStringLiteral("1.26")); // black text fallback
    QCOMPARE(again.levelText(), QStringLiteral("Fail"));
}

void TestContrastView::clearedFieldsFallBackPerRow()
{
    ContrastStorage storage;
    storage.setHex1(QStringLiteral("#FF0000"));
    storage.setHex2(QStringLiteral("#0000FF"));
    ContrastView view(storage);
    view.resize(300, 360);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QCOMPARE(previewBackground(view), QColor(0, 0, 255));

    retype(fieldOf(view.backgroundRow()), "");
    QCOMPARE(view.backgroundRow()->color(), QColor(Qt::white));
    QCOMPARE(previewBackground(view), QColor(Qt::white));

    retype(fieldOf(view.foregroundRow()), "");
    QCOMPARE(view.foregroundRow()->color(), QColor(Qt::black));
    QCOMPARE(view.ratioText(), QStringLiteral("21.00"));
}

void TestContrastView::fieldsReachableWithTab()
{
    ContrastStorage storage;
    ContrastView view(storage);
    view.show();
    view.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    fieldOf(view.backgroundRow())->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), fieldOf(view.foregroundRow()));
}

QTEST_MAIN(TestContrastView)
#include "tst_contrastview.moc"
