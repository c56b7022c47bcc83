#include "UiTestSupport.h"

#include "ui/ColorDisplayView.h"
#include "ui/FormatRow.h"
#include "ui/IconButton.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMimeData>
#include <QTest>

class TestColorDisplayView : public QObject
{
    Q_OBJECT

private slots:
    void showsFourNotationsInOrder_data();
    void showsFourNotationsInOrder();
    void copyPutsExactlyTheText_data();
    void copyPutsExactlyTheText();
    void checkmarkRevertsOneSecondAfterFirstClick();
    void copyingOneRowLeavesOthersAlone();
    void newColorRebuildsRowsWithFreshMarks();
    void valueIsSelectable();
};

void TestColorDisplayView::showsFourNotationsInOrder_data()
{
    QTest::addColumn<double>("r");
    QTest::addColumn<double>("g");
    QTest::addColumn<double>("b");
    QTest::addColumn<QStringList>("values");
    QTest::newRow("orange") << 1.0 << 128 / 255.0 << 0.0
                            << QStringList{"#FF8000", "rgb(255, 128, 0)", "hsl(30, 100%, 50%)",
                                           "oklch(73.2% 0.19 53)"};
    QTest::newRow("grey has no chroma") << 0.5 << 0.5 << 0.5
                                        << QStringList{"#808080", "rgb(128, 128, 128)", "hsl(0, 0%, 50%)",
                                                       "oklch(59.8% 0.00 90)"};
    QTest::newRow("white") << 1.0 << 1.0 << 1.0
                           << QStringList{"#FFFFFF", "rgb(255, 255, 255)", "hsl(0, 0%, 100%)",
                                          "oklch(100.0% 0.00 90)"};
}

void TestColorDisplayView::showsFourNotationsInOrder()
{
    QFETCH(double, r);
    QFETCH(double, g);
    QFETCH(double, b);
    QFETCH(QStringList, values);
    ColorDisplayView view(ColorItem::create(QStringLiteral("c"), r, g, b));
    const QList<FormatRow *> rows = view.rows();
    QCOMPARE(rows.size(), 4);
    const QStringList labels{"HEX", "RGB", "HSL", "OKLCH"};
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(rows[i]->label(), labels[i]);
        QCOMPARE(rows[i]->value(), values[i]);
        QCOMPARE(rows[i]->valueLabel()->text(), values[i]);
        QCOMPARE(rows[i]->copyButton()->toolTip(), "Copy " + labels[i]);
        QCOMPARE(rows[i]->copyButton()->accessibleName(), "Copy " + labels[i]);
    }
    // The label is only in the tooltip, never shown as text.
    view.show();
    for (const QString &label : labels)
        QVERIFY(!shownTexts(&view).contains(label));
}

void TestColorDisplayView::copyPutsExactlyTheText_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("expected");
    QTest::newRow("HEX") << 0 << "#FF8000";
    QTest::newRow("RGB") << 1 << "rgb(255, 128, 0)";
    QTest::newRow("HSL") << 2 << "hsl(30, 100%, 50%)";
    QTest::newRow("OKLCH") << 3 << "oklch(73.2% 0.19 53)";
}

void TestColorDisplayView::copyPutsExactlyTheText()
{
    QFETCH(int, row);
    QFETCH(QString, expected);
    ColorDisplayView view(ColorItem::create(QStringLiteral("c"), 1.0, 128 / 255.0, 0.0));
    view.show();
    auto *html = new QMimeData;
    html->setHtml(QStringLiteral("<b>old</b>"));
    QGuiApplication::clipboard()->setMimeData(html);

    QTest::mouseClick(view.rows()[row]->copyButton(), Qt::LeftButton);
    QCOMPARE(clipboardText(), expected);
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    QVERIFY(!data->hasHtml());
    QCOMPARE(data->formats(), QStringList{"text/plain"});
    QVERIFY(view.rows()[row]->copied());
    QCOMPARE(view.rows()[row]->copyButton()->symbol(), QStringLiteral("checkmark"));
}

void TestColorDisplayView::checkmarkRevertsOneSecondAfterFirstClick()
{
    ColorDisplayView view(ColorItem::create(QStringLiteral("c"), 0.2, 0.4, 0.8));
    view.show();
    FormatRow *hex = view.rows()[0];
    QElapsedTimer clock;
    clock.start();
    hex->copy();
    QTest::qWait(600);
    hex->copy();
    QVERIFY(hex->copied());
    // Reverts at 1.0 s after the first click, not 1.6 s.
    QTRY_VERIFY_WITH_TIMEOUT(!hex->copied(), 1000);
    QVERIFY2(clock.elapsed() < 1400, QByteArray::number(clock.elapsed()));
    QCOMPARE(hex->copyButton()->symbol(), QStringLiteral("clipboard"));
    // The second click's reset comes later and changes nothing.
    QTest::qWait(700);
    QVERIFY(!hex->copied());
}

void TestColorDisplayView::copyingOneRowLeavesOthersAlone()
{
    ColorDisplayView view(ColorItem::create(QStringLiteral("c"), 0.2, 0.4, 0.8));
    view.rows()[2]->copy();
    for (int i : {0, 1, 3}) {
        QVERIFY(!view.rows()[i]->copied());
        QCOMPARE(view.rows()[i]->copyButton()->symbol(), QStringLiteral("clipboard"));
    }
}

void TestColorDisplayView::newColorRebuildsRowsWithFreshMarks()
{
    ColorDisplayView view(ColorItem::create(QStringLiteral("c"), 0.2, 0.4, 0.8));
    view.rows()[0]->copy();
    view.setColorItem(ColorItem::create(QStringLiteral("d"), 1.0, 0.0, 0.0));
    QCOMPARE(view.rows()[0]->value(), QStringLiteral("#FF0000"));
    QVERIFY(!view.rows()[0]->copied());
}

void TestColorDisplayView::valueIsSelectable()
{
    ColorDisplayView view(ColorItem::create(QStringLiteral("c"), 0.2, 0.4, 0.8));
    QVERIFY(view.rows()[1]->valueLabel()->textInteractionFlags() & Qt::TextSelectableByMouse);
    QVERIFY(view.rows()[1]->valueLabel()->font().fixedPitch()
            || view.rows()[1]->valueLabel()->font().styleHint() == QFont::Monospace);
}

QTEST_MAIN(TestColorDisplayView)
#include "tst_colordisplayview.moc"
