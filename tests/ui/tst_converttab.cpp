// The Convert tab commits a group on Return only: the committed group keeps
// its text as typed, the others show the parsed color in their notation, and
// a refused group changes nothing.
#include "ui/ConvertTab.h"

#include <QLineEdit>
#include <QTest>

Q_DECLARE_METATYPE(Notation)

namespace {

const Notation notations[] = {Notation::Hex, Notation::Rgb, Notation::Hsl, Notation::Oklch, Notation::Cmyk};
const RgbColor white{1.0, 1.0, 1.0};

// Replaces a field's text by keyboard, as a user would.
void retype(QLineEdit *edit, const QString &text)
{
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(edit, Qt::Key_Backspace);
    QTest::keyClicks(edit, text);
}

// Types every field of a group, then presses Return in its last field.
void typeAndCommit(ConvertTab &view, Notation notation, const QStringList &texts)
{
    for (qsizetype i = 0; i < texts.size(); ++i)
        retype(view.fields(notation).at(i), texts.at(i));
    QTest::keyClick(view.fields(notation).last(), Qt::Key_Return);
}

} // namespace

class TestConvertTab : public QObject
{
    Q_OBJECT

private slots:
    void commit_data();
    void commit();
    void commitOnlyFromReturnNotFocusLoss();
    void guardDropsCommitsUntilNextTurn();
};

void TestConvertTab::commit_data()
{
    QTest::addColumn<Notation>("notation");
    QTest::addColumn<QStringList>("typed");
    QTest::newRow("hex with blanks") << Notation::Hex << QStringList{" #ff0000 "};
    QTest::newRow("hex short form") << Notation::Hex << QStringList{"FFF"};
    QTest::newRow("rgb signs") << Notation::Rgb << QStringList{"+255", "-0", "0"};
    QTest::newRow("rgb 256") << Notation::Rgb << QStringList{"256", "0", "0"};
    QTest::newRow("hsl decimals kept") << Notation::Hsl << QStringList{"120.0", "1e2", "25"};
    QTest::newRow("hsl trailing blank") << Notation::Hsl << QStringList{"0", "100", "50 "};
    QTest::newRow("oklch clipped") << Notation::Oklch << QStringList{"70", "0.5", "150"};
    QTest::newRow("oklch hue 360.5") << Notation::Oklch << QStringList{"50", "0.1", "360.5"};
    QTest::newRow("cmyk black") << Notation::Cmyk << QStringList{"0", "0", "0", "100"};
    QTest::newRow("cmyk 101") << Notation::Cmyk << QStringList{"101", "0", "0", "0"};
}

void TestConvertTab::commit()
{
    QFETCH(Notation, notation);
    QFETCH(QStringList, typed);
    ConvertTab view;
    QList<QStringList> before;
    for (const Notation group : notations)
        before.append(view.texts(group));
    typeAndCommit(view, notation, typed);
    const std::optional<RgbColor> parsed = parseNotation(notation, typed);
    QVERIFY(view.color() == parsed.value_or(white));
    for (const Notation group : notations) {
        // The committed group keeps exactly what was typed, valid or not.
        const QStringList others = parsed ? notationTexts(group, *parsed) : before.at(int(group));
        QCOMPARE(view.texts(group), group == notation ? typed : others);
    }
    QCOMPARE(view.isUpdating(), parsed.has_value());
    QTRY_VERIFY(!view.isUpdating());
}

void TestConvertTab::commitOnlyFromReturnNotFocusLoss()
{
    ConvertTab view;
    view.show();
    view.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    QLineEdit *hex = view.fields(Notation::Hex).first();
    hex->setFocus();
    retype(hex, "#0000FF");
    retype(view.fields(Notation::Rgb).at(1), "12"); // typing alone changes nothing
    QTest::keyClick(hex, Qt::Key_Tab);
    QVERIFY(!hex->hasFocus());
    QVERIFY(view.color() == white);
    QCOMPARE(view.texts(Notation::Hsl), notationTexts(Notation::Hsl, white));
    // Enter on the keypad confirms as Return does.
    QTest::keyClick(hex, Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(view.texts(Notation::Rgb), (QStringList{"0", "0", "255"}));
}

void TestConvertTab::guardDropsCommitsUntilNextTurn()
{
    ConvertTab view;
    typeAndCommit(view, Notation::Hex, {"ff0000"});
    QVERIFY(view.isUpdating());
    // A second commit before the event loop has turned is dropped whole.
    typeAndCommit(view, Notation::Rgb, {"0", "0", "255"});
    QVERIFY(view.color() == (RgbColor{1.0, 0.0, 0.0}));
    QCOMPARE(view.texts(Notation::Hex), QStringList{"ff0000"});
    QCoreApplication::processEvents();
    QVERIFY(!view.isUpdating());
    QTest::keyClick(view.fields(Notation::Rgb).last(), Qt::Key_Return);
    QVERIFY(view.color() == (RgbColor{0.0, 0.0, 1.0}));
    QCOMPARE(view.texts(Notation::Hex), QStringList{"#0000FF"});
}

QTEST_MAIN(TestConvertTab)
#include "tst_converttab.moc"
