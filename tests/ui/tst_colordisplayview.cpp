#include "UiTestSupport.h"

#include "ui/ColorDisplayView.h"
#include "ui/IconButton.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMimeData>
#include <QTest>

namespace {

ColorItem color(double r, double g, double b)
{
    return ColorItem::create(QStringLiteral("c"), r, g, b);
}

} // namespace

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
    void newColorStartsWithFreshMarks();
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
    QTest::newRow("grey has no chroma")
        << 0.5 << 0.5 << 0.5
        << QStringList{"#808080", "rgb(128, 128, 128)", "hsl(0, 0%, 50%)", "oklch(59.8% 0.00 90)"};
}

void TestColorDisplayView::showsFourNotationsInOrder()
{
    QFETCH(double, r);
    QFETCH(double, g);
    QFETCH(double, b);
    QFETCH(QStringList, values);
    ColorDisplayView view;
    view.setColorItem(color(r, g, b));
    for (int i = 0; i < ColorDisplayView::rowCount; ++i)
        QCOMPARE(view.value(i), values[i]);
}

void TestColorDisplayView::copyPutsExactlyTheText_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("expected");
    QTest::newRow("HEX") << 0 << "#FF8000";
    QTest::newRow("OKLCH") << 3 << "oklch(73.2% 0.19 53)";
}

void TestColorDisplayView::copyPutsExactlyTheText()
{
    QFETCH(int, row);
    QFETCH(QString, expected);
    ColorDisplayView view;
    view.setColorItem(color(1.0, 128 / 255.0, 0.0));
    view.show();
    auto *html = new QMimeData;
    html->setHtml(QStringLiteral("<b>old</b>"));
    QGuiApplication::clipboard()->setMimeData(html);

    QTest::mouseClick(view.copyButton(row), Qt::LeftButton);
    QCOMPARE(clipboardText(), expected);
    QCOMPARE(QGuiApplication::clipboard()->mimeData()->formats(), QStringList{"text/plain"});
    QVERIFY(view.isCopied(row));
    QCOMPARE(view.copyButton(row)->symbol(), QStringLiteral("checkmark"));
}

void TestColorDisplayView::checkmarkRevertsOneSecondAfterFirstClick()
{
    ColorDisplayView view;
    view.setColorItem(color(0.2, 0.4, 0.8));
    QElapsedTimer clock;
    clock.start();
    view.copy(0);
    QTest::qWait(600);
    view.copy(0);
    QVERIFY(view.isCopied(0));
    // Reverts at 1.0 s after the first click, not 1.6 s.
    QTRY_VERIFY_WITH_TIMEOUT(!view.isCopied(0), 1000);
    QVERIFY2(clock.elapsed() < 1400, QByteArray::number(clock.elapsed()));
    QCOMPARE(view.copyButton(0)->symbol(), QStringLiteral("clipboard"));
}

void TestColorDisplayView::copyingOneRowLeavesOthersAlone()
{
    ColorDisplayView view;
    view.setColorItem(color(0.2, 0.4, 0.8));
    view.copy(2);
    for (int i : {0, 1, 3})
        QVERIFY(!view.isCopied(i));
}

void TestColorDisplayView::newColorStartsWithFreshMarks()
{
    ColorDisplayView view;
    view.setColorItem(color(0.2, 0.4, 0.8));
    view.copy(0);
    view.setColorItem(color(1.0, 0.0, 0.0));
    QCOMPARE(view.value(0), QStringLiteral("#FF0000"));
    QVERIFY(!view.isCopied(0));
    // The first color's reset, a second later, leaves a new copy's mark alone.
    QTest::qWait(500);
    view.copy(0);
    QTest::qWait(700);
    QVERIFY(view.isCopied(0));
}

QTEST_MAIN(TestColorDisplayView)
#include "tst_colordisplayview.moc"
