// 10,000 hostile strings typed and pasted into the real text fields of the
// Convert and Contrast tabs, the "New Palette" prompt and the add-color
// sheet, each confirmed with Return, offscreen. Nothing crashes, nothing
// leaves the 300 x 400 window (or its dialog), and the only things stored
// are what each field's rules accept: a Convert group changes the color only
// when it parses, the Contrast store holds the text exactly as typed, and a
// palette or color name is stored exactly as the field holds it, on disk too.
#include "HostileText.h"

#include "model/Contrast.h"
#include "model/ConvertRules.h"
#include "storage/ContrastStorage.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"
#include "ui/AddColorSheet.h"
#include "ui/ContrastTab.h"
#include "ui/ConvertTab.h"
#include "ui/ListActions.h"
#include "ui/PalettesTab.h"
#include "ui/TextPromptDialog.h"
#include "ui/Theme.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

#include <cmath>

namespace {

// The sanitizer pass (scripts/sanitize-tests.sh) runs a tenth: the same
// paths, at the sanitizers' cost per string.
const int scaleDown = qEnvironmentVariableIsSet("TINTWRIGHT_SANITIZER_RUN") ? 10 : 1;
const int convertInputs = 5000 / scaleDown;
const int contrastInputs = 2500 / scaleDown;
const int paletteNameInputs = 1250 / scaleDown;
const int colorNameInputs = 1250 / scaleDown;
constexpr qsizetype longText = 100000;

// Five texts of each field's share are 100,000 characters long.
bool longTurn(int n, int count)
{
    const int every = std::max(1, count / 5);
    return n % every == every - 1;
}

quint32 testSeed()
{
    static const quint32 seed = QRandomGenerator::system()->generate();
    return seed;
}

// Puts the text into the field the way a user would: typed key by key when
// it is short and plain, otherwise pasted over the whole content (which a
// 100,000-character text is, keyClicks being far too slow for it).
void enter(QLineEdit *field, const QString &text, HostileText &random)
{
    bool basicPlane = true;
    for (const QChar c : text)
        basicPlane = basicPlane && !c.isSurrogate();
    if (text.size() <= 12 && basicPlane && random.chance(30)) {
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        // Key by key with the character as the event's text; keyClicks()
        // only knows ASCII.
        for (const QChar c : text)
            QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(c), Qt::NoModifier);
    } else {
        field->selectAll();
        field->insert(text);
    }
}

// Every visible widget below root lies inside it.
QString outside(QWidget *root)
{
    if (root->layout())
        root->layout()->activate();
    const QRect bounds = root->rect();
    const auto scrolled = [root](QWidget *widget) {
        // Content of a scroll area is clipped by its viewport; the area itself is checked.
        for (QWidget *w = widget->parentWidget(); w && w != root; w = w->parentWidget()) {
            const auto *area = qobject_cast<QAbstractScrollArea *>(w->parentWidget());
            if (area && area->viewport() == w)
                return true;
        }
        return false;
    };
    for (QWidget *widget : root->findChildren<QWidget *>()) {
        if (widget->isWindow() || !widget->isVisibleTo(root) || scrolled(widget))
            continue;
        const QRect area(widget->mapTo(root, QPoint(0, 0)), widget->size());
        if (!bounds.contains(area))
            return QStringLiteral("%1 %2 at %3,%4 %5x%6 leaves %7x%8")
                .arg(QString::fromLatin1(widget->metaObject()->className()), widget->objectName())
                .arg(area.x())
                .arg(area.y())
                .arg(area.width())
                .arg(area.height())
                .arg(bounds.width())
                .arg(bounds.height());
    }
    return {};
}

// The window the tab views live in: 300 x 400, fixed.
std::unique_ptr<QWidget> windowFor(QWidget *view)
{
    auto window = std::make_unique<QWidget>();
    window->setFixedSize(300, 400);
    Theme::applyDarkPalette(window.get());
    auto *layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view);
    window->show();
    return window;
}

void settle()
{
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool inUnitRange(const RgbColor &c)
{
    const auto ok = [](double v) { return std::isfinite(v) && v >= 0 && v <= 1; };
    return ok(c.red) && ok(c.green) && ok(c.blue);
}

const Notation notations[] = {Notation::Hex, Notation::Rgb, Notation::Hsl, Notation::Oklch, Notation::Cmyk};

} // namespace

class TestHostileInput : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void convertFields();
    void contrastFields();
    void paletteNameField();
    void colorNameField();
};

void TestHostileInput::initTestCase()
{
    // Scripts without OpenType shaping in the test fonts warn on every
    // layout, and the offscreen platform on every dialog; the flood would
    // hide the test's own messages.
    static QtMessageHandler previous = nullptr;
    previous =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &text) {
            if (!text.contains(QLatin1String("OpenType support missing"))
                && !text.contains(QLatin1String("does not support propagateSizeHints")))
                previous(type, context, text);
        });
    qInfo("random seed %u", testSeed());
}

// TINTWRIGHT_SHOTS=<folder> keeps a picture of a window now and then.
static void keepShot(QWidget *window, const QString &name)
{
    const QString folder = qEnvironmentVariable("TINTWRIGHT_SHOTS");
    if (!folder.isEmpty())
        window->grab().save(folder + u'/' + name + QStringLiteral(".png"));
}

void TestHostileInput::convertFields()
{
    HostileText random(testSeed());
    auto *view = new ConvertTab;
    const auto window = windowFor(view);

    // The fields in the order the groups show them.
    QList<QLineEdit *> fields;
    QList<std::pair<Notation, qsizetype>> fieldGroup;
    for (const Notation notation : notations) {
        for (qsizetype i = 0; i < view->fields(notation).size(); ++i) {
            fields.append(view->fields(notation).at(i));
            fieldGroup.append({notation, i});
        }
    }

    int accepted = 0;
    for (int n = 0; n < convertInputs; ++n) {
        const qsizetype f = random.bounded(quint32(fields.size()));
        const Notation notation = fieldGroup.at(f).first;
        const bool wholeGroup = random.chance(15);
        if (n == 0) {
            // The fields' own valid texts first, so that at least one commit
            // succeeds whatever the seed.
        } else if (wholeGroup) { // every field of the group, so that some commits succeed
            for (qsizetype g = 0; g < fields.size(); ++g) {
                if (fieldGroup.at(g).first == notation)
                    enter(fields.at(g), random.plausible(), random);
            }
        } else {
            enter(fields.at(f), longTurn(n, convertInputs) ? random.next(longText) : random.next(), random);
        }
        const QStringList typed = view->texts(notation);
        const RgbColor before = view->color();
        const std::optional<RgbColor> expected = parseNotation(notation, typed);

        QTest::keyClick(fields.at(f), Qt::Key_Return);
        settle();
        QVERIFY(!view->isUpdating());
        QCOMPARE(view->texts(notation), typed); // the committed group keeps its text
        if (expected) {
            ++accepted;
            QVERIFY(view->color() == *expected);
            QVERIFY(inUnitRange(view->color()));
            for (const Notation other : notations) {
                if (other != notation)
                    QCOMPARE(view->texts(other), notationTexts(other, view->color()));
            }
        } else {
            QVERIFY(view->color() == before);
        }
        const QString problem = outside(window.get());
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        QCOMPARE(window->size(), QSize(300, 400));
        if (longTurn(n, convertInputs) || n == 10)
            keepShot(window.get(), QStringLiteral("convert-%1").arg(n));
    }
    qInfo("%d of %d Convert commits accepted", accepted, convertInputs);
    QVERIFY(accepted > 0);
}

void TestHostileInput::contrastFields()
{
    HostileText random(testSeed() + 1);
    ContrastStorage storage;
    auto *view = new ContrastTab(storage);
    const auto window = windowFor(view);
    QLineEdit *background = view->backgroundField();
    QLineEdit *foreground = view->foregroundField();

    for (int n = 0; n < contrastInputs; ++n) {
        QLineEdit *field = random.chance(50) ? background : foreground;
        const QString text = longTurn(n, contrastInputs) ? random.next(longText)
            : random.chance(30)                          ? random.plausible()
                                                         : random.next();
        enter(field, text, random);
        QTest::keyClick(field, Qt::Key_Return);
        settle();
        // Stored exactly as the field holds it, valid or not.
        QCOMPARE(storage.hex2(), background->text());
        QCOMPARE(storage.hex1(), foreground->text());
        const double ratio = contrastRatio(storage.hex1(), storage.hex2());
        QVERIFY(ratio >= 1.0 && ratio <= 21.0 + 1e-9);
        QCOMPARE(view->ratioText(), contrastRatioText(ratio));
        QCOMPARE(view->levelText(), wcagLabel(wcagLevel(ratio)));
        const QString problem = outside(window.get());
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        QCOMPARE(window->size(), QSize(300, 400));
        if (longTurn(n, contrastInputs) || n == 10)
            keepShot(window.get(), QStringLiteral("contrast-%1").arg(n));
    }
}

void TestHostileInput::paletteNameField()
{
    HostileText random(testSeed() + 2);
    QTemporaryDir dir;
    PaletteStorage storage(dir.path());
    HistoryStorage history(dir.path());
    ListActions actions(storage, history);
    auto *view = new PalettesTab(storage, actions);
    const auto window = windowFor(view);

    QList<QString> expectedNames;
    for (int n = 0; n < paletteNameInputs; ++n) {
        view->showNewPalettePrompt();
        auto *prompt = view->newPalettePrompt();
        QVERIFY(prompt && prompt->isVisible());
        QLineEdit *field = prompt->findChild<QLineEdit *>();
        QVERIFY(field);
        const QString text = longTurn(n, paletteNameInputs) ? random.next(longText)
            : random.chance(5)                              ? QString()
                                                            : random.next();
        enter(field, text, random);
        const QString held = field->text();
        const int promptWidth = prompt->width();
        if (longTurn(n, paletteNameInputs))
            keepShot(prompt, QStringLiteral("prompt-%1").arg(n));
        QString problem = outside(prompt);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        QTest::keyClick(field, Qt::Key_Return);
        settle();
        QVERIFY(!view->newPalettePrompt()); // closed and gone
        QVERIFY(promptWidth <= 400);
        if (!held.isEmpty())
            expectedNames.append(held);
        QCOMPARE(storage.palettes().size(), expectedNames.size());
        if (!held.isEmpty())
            QCOMPARE(storage.palettes().last().name, held);
        problem = outside(window.get());
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
    keepShot(window.get(), QStringLiteral("palettes"));
    // The names survive the file exactly.
    const PaletteStorage reloaded(dir.path());
    QCOMPARE(reloaded.palettes().size(), expectedNames.size());
    for (qsizetype i = 0; i < expectedNames.size(); ++i)
        QCOMPARE(reloaded.palettes().at(i).name, expectedNames.at(i));
}

void TestHostileInput::colorNameField()
{
    HostileText random(testSeed() + 3);
    QTemporaryDir dir;
    PaletteStorage storage(dir.path());
    const QUuid paletteId = storage.createPalette(QStringLiteral("Target")).id;
    QWidget parent;
    parent.setFixedSize(300, 400);
    parent.show();

    const ColorItem picked = ColorItem::create(QStringLiteral("Picked Color"), 0.2, 0.4, 0.6);
    QList<QString> expectedNames;
    for (int n = 0; n < colorNameInputs; ++n) {
        auto *sheet = new AddColorSheet(storage, QString(), paletteId, &parent);
        // What the Picker tab does with the sheet's answer.
        connect(sheet, &AddColorSheet::addRequested, &storage,
                [&storage, &picked](const QUuid &id, const QString &name) {
                    storage.addColor(picked.renamed(name), id);
                });
        QSignalSpy added(sheet, &AddColorSheet::addRequested);
        sheet->open();
        QLineEdit *field = sheet->nameField();
        const QString text = longTurn(n, colorNameInputs) ? random.next(longText)
            : random.chance(5)                            ? QString()
                                                          : random.next();
        enter(field, text, random);
        const QString held = field->text();
        const int sheetWidth = sheet->width();
        if (longTurn(n, colorNameInputs))
            keepShot(sheet, QStringLiteral("sheet-%1").arg(n));
        const QString problem = outside(sheet);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        QTest::keyClick(field, Qt::Key_Return);
        settle();
        QCOMPARE(added.size(), 1);
        QCOMPARE(added.first().at(1).toString(), held); // as typed, even empty
        QVERIFY(sheetWidth <= 400);
        expectedNames.append(held);
        QCOMPARE(storage.palette(paletteId)->colors.size(), expectedNames.size());
        QCOMPARE(storage.palette(paletteId)->colors.last().name, held);
    }
    const PaletteStorage reloaded(dir.path());
    const QList<ColorItem> colors = reloaded.palette(paletteId)->colors;
    QCOMPARE(colors.size(), expectedNames.size());
    for (qsizetype i = 0; i < colors.size(); ++i)
        QCOMPARE(colors.at(i).name, expectedNames.at(i));
}

QTEST_MAIN(TestHostileInput)
#include "tst_hostileinput.moc"
