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
    void copyPutsExactlyTheText_data();
    void copyPutsExactlyTheText();
    void checkmarkRevertsOneSecondAfterFirstClick();
    void copyingOneRowLeavesOthersAlone();
    void newColorStartsWithFreshMarks();
};

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
