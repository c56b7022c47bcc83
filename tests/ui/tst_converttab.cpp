#include "ui/ConvertTab.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

Q_DECLARE_METATYPE(Notation)

namespace {

const QStringList hexNames{"HEX"};
const QStringList rgbNames{"RGB R", "RGB G", "RGB B"};
const QStringList hslNames{"HSL H", "HSL S", "HSL L"};
const QStringList oklchNames{"OKLCH L", "OKLCH C", "OKLCH H"};
const QStringList cmykNames{"CMYK C", "CMYK M", "CMYK Y", "CMYK K"};

QStringList namesOf(Notation notation)
{
    switch (notation) {
    case Notation::Hex:
        return hexNames;
    case Notation::Rgb:
        return rgbNames;
    case Notation::Hsl:
        return hslNames;
    case Notation::Oklch:
        return oklchNames;
    case Notation::Cmyk:
        return cmykNames;
    }
    return {};
}

QLineEdit *field(const QWidget &view, const QString &accessibleName)
{
    for (QLineEdit *edit : view.findChildren<QLineEdit *>())
        if (edit->accessibleName() == accessibleName)
            return edit;
    qFatal("no field named %s", qPrintable(accessibleName));
    return nullptr;
}

QStringList shown(const QWidget &view, Notation notation)
{
    QStringList texts;
    for (const QString &name : namesOf(notation))
        texts.append(field(view, name)->text());
    return texts;
}

// Replaces a field's text by keyboard, as a user would.
void retype(QLineEdit *edit, const QString &text)
{
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(edit, Qt::Key_Backspace);
    QTest::keyClicks(edit, text);
}

// Types every field of a group, then presses Return in its last field.
void typeAndCommit(QWidget &view, Notation notation, const QStringList &texts)
{
    const QStringList names = namesOf(notation);
    for (qsizetype i = 0; i < names.size(); ++i)
        retype(field(view, names.at(i)), texts.at(i));
    QTest::keyClick(field(view, names.last()), Qt::Key_Return);
}

const QStringList whiteHex{"#FFFFFF"};
const QStringList whiteRgb{"255", "255", "255"};
const QStringList whiteHsl{"0", "0", "100"};
const QStringList whiteOklch{"100.0", "0.00", "0"};
const QStringList whiteCmyk{"0", "0", "0", "0"};

} // namespace

class TestConvertTab : public QObject
{
    Q_OBJECT

private slots:
    void initialTexts();
    void commit_data();
    void commit();
    void typingAloneChangesNothing();
    void commitOnlyFromReturnNotFocusLoss();
    void guardDropsCommitsUntilNextTurn();
    void everyFieldReachableWithTab();
};

void TestConvertTab::initialTexts()
{
    ConvertTab view;
    QCOMPARE(shown(view, Notation::Hex), whiteHex);
    QCOMPARE(shown(view, Notation::Rgb), whiteRgb);
    QCOMPARE(shown(view, Notation::Hsl), whiteHsl);
    QCOMPARE(shown(view, Notation::Oklch), whiteOklch);
    QCOMPARE(shown(view, Notation::Cmyk), whiteCmyk);
    QCOMPARE(view.color(), (RgbColor{1.0, 1.0, 1.0}));
    QVERIFY(!view.isUpdating());
    // Each small field names what it holds while empty.
    QCOMPARE(field(view, "CMYK K")->placeholderText(), QStringLiteral("K"));
    QCOMPARE(field(view, "OKLCH C")->placeholderText(), QStringLiteral("C"));
}

void TestConvertTab::commit_data()
{
    QTest::addColumn<Notation>("notation");
    QTest::addColumn<QStringList>("typed");
    // Empty: the commit is refused and every other group keeps white.
    QTest::addColumn<QStringList>("hex");
    QTest::addColumn<QStringList>("rgb");
    QTest::addColumn<QStringList>("hsl");
    QTest::addColumn<QStringList>("oklch");
    QTest::addColumn<QStringList>("cmyk");

    const QStringList refused;
    const QStringList red{"#FF0000"}, redRgb{"255", "0", "0"}, redHsl{"0", "100", "50"},
        redOklch{"62.8", "0.26", "29"}, redCmyk{"0", "100", "100", "0"};

    QTest::newRow("hex without #") << Notation::Hex << QStringList{"ff0000"} << red << redRgb << redHsl
                                   << redOklch << redCmyk;
    QTest::newRow("hex with blanks") << Notation::Hex << QStringList{" #ff0000 "} << red << redRgb << redHsl
                                     << redOklch << redCmyk;
    QTest::newRow("hex leading digits")
        << Notation::Hex << QStringList{"12345G"} << QStringList{"#012345"} << QStringList{"1", "35", "69"}
        << QStringList{"210", "97", "14"} << QStringList{"25.5", "0.07", "252"}
        << QStringList{"99", "49", "0", "73"};
    QTest::newRow("hex short form") << Notation::Hex << QStringList{"FFF"} << refused << refused << refused
                                    << refused << refused;
    QTest::newRow("hex with alpha") << Notation::Hex << QStringList{"#FF000080"} << refused << refused
                                    << refused << refused << refused;
    QTest::newRow("hex no digits") << Notation::Hex << QStringList{"GGGGGG"} << refused << refused << refused
                                   << refused << refused;

    QTest::newRow("rgb red") << Notation::Rgb << QStringList{"255", "0", "0"} << red << redRgb << redHsl
                             << redOklch << redCmyk;
    QTest::newRow("rgb signs") << Notation::Rgb << QStringList{"+255", "-0", "0"} << red << redRgb << redHsl
                               << redOklch << redCmyk;
    QTest::newRow("rgb 256") << Notation::Rgb << QStringList{"256", "0", "0"} << refused << refused << refused
                             << refused << refused;
    QTest::newRow("rgb fraction") << Notation::Rgb << QStringList{"12.5", "0", "0"} << refused << refused
                                  << refused << refused << refused;
    QTest::newRow("rgb negative") << Notation::Rgb << QStringList{"0", "-1", "0"} << refused << refused
                                  << refused << refused << refused;
    QTest::newRow("rgb blank") << Notation::Rgb << QStringList{"0", " 1", "0"} << refused << refused
                               << refused << refused << refused;
    QTest::newRow("rgb empty") << Notation::Rgb << QStringList{"0", "", "0"} << refused << refused << refused
                               << refused << refused;

    QTest::newRow("hsl 360") << Notation::Hsl << QStringList{"360", "100", "50"} << red << redRgb << redHsl
                             << redOklch << redCmyk;
    QTest::newRow("hsl decimals kept")
        << Notation::Hsl << QStringList{"120.0", "1e2", "25"} << QStringList{"#008000"}
        << QStringList{"0", "128", "0"} << QStringList{"120", "100", "25"}
        << QStringList{"51.8", "0.18", "142"} << QStringList{"100", "0", "100", "50"};
    QTest::newRow("hsl hue 361") << Notation::Hsl << QStringList{"361", "100", "50"} << refused << refused
                                 << refused << refused << refused;
    QTest::newRow("hsl comma") << Notation::Hsl << QStringList{"0", "50,5", "50"} << refused << refused
                               << refused << refused << refused;
    QTest::newRow("hsl nan") << Notation::Hsl << QStringList{"nan", "100", "50"} << refused << refused
                             << refused << refused << refused;
    QTest::newRow("hsl trailing blank") << Notation::Hsl << QStringList{"0", "100", "50 "} << refused
                                        << refused << refused << refused << refused;

    QTest::newRow("oklch clipped") << Notation::Oklch << QStringList{"70", "0.5", "150"}
                                   << QStringList{"#00DF00"} << QStringList{"0", "223", "0"}
                                   << QStringList{"120", "100", "44"} << QStringList{"70", "0.5", "150"}
                                   << QStringList{"100", "0", "100", "12"};
    QTest::newRow("oklch large chroma")
        << Notation::Oklch << QStringList{"50", "5", "200"} << QStringList{"#0000FF"}
        << QStringList{"0", "0", "255"} << QStringList{"240", "100", "50"} << QStringList{"50", "5", "200"}
        << QStringList{"100", "100", "0", "0"};
    QTest::newRow("oklch lightness 101") << Notation::Oklch << QStringList{"101", "0", "0"} << refused
                                         << refused << refused << refused << refused;
    QTest::newRow("oklch negative chroma") << Notation::Oklch << QStringList{"50", "-0.1", "0"} << refused
                                           << refused << refused << refused << refused;
    QTest::newRow("oklch hue 360.5") << Notation::Oklch << QStringList{"50", "0.1", "360.5"} << refused
                                     << refused << refused << refused << refused;

    QTest::newRow("cmyk black") << Notation::Cmyk << QStringList{"0", "0", "0", "100"}
                                << QStringList{"#000000"} << QStringList{"0", "0", "0"}
                                << QStringList{"0", "0", "0"} << QStringList{"0.0", "0.00", "0"}
                                << QStringList{"0", "0", "0", "100"};
    QTest::newRow("cmyk 101") << Notation::Cmyk << QStringList{"101", "0", "0", "0"} << refused << refused
                              << refused << refused << refused;
}

void TestConvertTab::commit()
{
    QFETCH(Notation, notation);
    QFETCH(QStringList, typed);
    QFETCH(QStringList, hex);
    QFETCH(QStringList, rgb);
    QFETCH(QStringList, hsl);
    QFETCH(QStringList, oklch);
    QFETCH(QStringList, cmyk);
    const bool accepted = !hex.isEmpty();

    ConvertTab view;
    typeAndCommit(view, notation, typed);

    const std::pair<Notation, QStringList> groups[] = {
        {Notation::Hex, accepted ? hex : whiteHex},    {Notation::Rgb, accepted ? rgb : whiteRgb},
        {Notation::Hsl, accepted ? hsl : whiteHsl},    {Notation::Oklch, accepted ? oklch : whiteOklch},
        {Notation::Cmyk, accepted ? cmyk : whiteCmyk},
    };
    for (const auto &[group, texts] : groups) {
        // The committed group keeps exactly what was typed, valid or not.
        const QStringList want = group == notation ? typed : texts;
        QCOMPARE(shown(view, group), want);
    }
    QCOMPARE(view.isUpdating(), accepted);
    if (!accepted)
        QCOMPARE(view.color(), (RgbColor{1.0, 1.0, 1.0}));
    QTRY_VERIFY(!view.isUpdating());
}

void TestConvertTab::typingAloneChangesNothing()
{
    ConvertTab view;
    retype(field(view, "HEX"), "#00FF00");
    retype(field(view, "RGB G"), "12");
    QCOMPARE(view.color(), (RgbColor{1.0, 1.0, 1.0}));
    QCOMPARE(shown(view, Notation::Hsl), whiteHsl);
    QCOMPARE(shown(view, Notation::Cmyk), whiteCmyk);
}

void TestConvertTab::commitOnlyFromReturnNotFocusLoss()
{
    ConvertTab view;
    view.show();
    view.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    QLineEdit *hex = field(view, "HEX");
    hex->setFocus();
    retype(hex, "#0000FF");
    QTest::keyClick(hex, Qt::Key_Tab);
    QVERIFY(!hex->hasFocus());
    QCOMPARE(shown(view, Notation::Rgb), whiteRgb);

    QCOMPARE(view.color(), (RgbColor{1.0, 1.0, 1.0}));

    // Enter on the keypad confirms as Return does.
    QTest::keyClick(hex, Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(shown(view, Notation::Rgb), (QStringList{"0", "0", "255"}));
}

void TestConvertTab::guardDropsCommitsUntilNextTurn()
{
    ConvertTab view;
    typeAndCommit(view, Notation::Hex, {"ff0000"});
    QVERIFY(view.isUpdating());

    // A second commit before the event loop has turned is dropped whole.
    typeAndCommit(view, Notation::Rgb, {"0", "0", "255"});
    QCOMPARE(view.color(), (RgbColor{1.0, 0.0, 0.0}));
    QCOMPARE(shown(view, Notation::Hex), QStringList{"ff0000"});
    QCOMPARE(shown(view, Notation::Rgb), (QStringList{"0", "0", "255"}));

    QCoreApplication::processEvents();
    QVERIFY(!view.isUpdating());
    QTest::keyClick(field(view, "RGB B"), Qt::Key_Return);
    QCOMPARE(view.color(), (RgbColor{0.0, 0.0, 1.0}));
    QCOMPARE(shown(view, Notation::Hex), QStringList{"#0000FF"});
}

void TestConvertTab::everyFieldReachableWithTab()
{
    ConvertTab view;
    view.show();
    view.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    field(view, "HEX")->setFocus();
    const QStringList order = hexNames + rgbNames + hslNames + oklchNames + cmykNames;
    for (qsizetype i = 1; i < order.size(); ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(QApplication::focusWidget());
        QCOMPARE(QApplication::focusWidget()->accessibleName(), order.at(i));
    }
}

QTEST_MAIN(TestConvertTab)
#include "tst_converttab.moc"
