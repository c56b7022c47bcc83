// Odd text typed or pasted into every kind of text field, confirmed with
// Return: nothing leaves the window or its dialog, and only what the field's
// rules accept is stored, exactly as the field holds it.
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
#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

namespace {

// What lies outside root among its visible widgets, bar content a scroll
// area's viewport clips; empty when nothing.
QString outside(QWidget *root)
{
    for (QWidget *widget : root->findChildren<QWidget *>()) {
        bool scrolled = false;
        for (QWidget *w = widget->parentWidget(); w && w != root; w = w->parentWidget()) {
            const auto *area = qobject_cast<QAbstractScrollArea *>(w->parentWidget());
            scrolled = scrolled || (area && area->viewport() == w);
        }
        if (!widget->isWindow() && widget->isVisibleTo(root) && !scrolled
            && !root->rect().contains(QRect(widget->mapTo(root, QPoint(0, 0)), widget->size())))
            return QString::fromLatin1(widget->metaObject()->className())
                + QStringLiteral(" leaves the window");
    }
    return {};
}

// Puts the text in as a paste does, then confirms it; what the field held.
QString enter(QLineEdit *field, const QString &text)
{
    field->selectAll();
    field->insert(text);
    const QString held = field->text();
    QTest::keyClick(field, Qt::Key_Return);
    return held;
}

} // namespace

class TestOddInput : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Scripts without shaping support in the test fonts warn on every layout.
        static QtMessageHandler previous = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext &context, const QString &text) {
                if (!text.contains(QLatin1String("OpenType support missing")))
                    previous(type, context, text);
            });
    }

    void fields_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("text");
        const QList<std::pair<const char *, QString>> texts = {
            {"control characters", QString::fromUtf16(u"1\u0001\u0007\t\r\n\u007f2")},
            {"bidi controls and emoji",
             QString::fromUtf16(u"\u202e\u05e9\u05dc 12\u2066\U0001F469\u200D\U0001F4BB")},
            {"stacked combining marks", QStringLiteral("a") + QString(40, QChar(0x0301))},
            {"lone surrogates", QString(QChar(0xD83C)) + QStringLiteral("ab") + QChar(0xDF0A)},
            {"100000 characters", QString(100000, QChar(0x00E9))},
            {"blanks only", QString::fromUtf16(u" \u00a0\u2003\u3000")},
            {"empty", QString()},
            {"a number with blanks", QStringLiteral(" 128 ")},
            {"a hex color", QStringLiteral("#3366cc")},
        };
        for (const char *field : {"HEX", "RGB R", "Background", "palette name", "color name"})
            for (const auto &[what, text] : texts)
                QTest::addRow("%s: %s", field, what) << QString::fromLatin1(field) << text;
    }
    void fields()
    {
        QFETCH(QString, field);
        QFETCH(QString, text);
        QTemporaryDir dir;
        PaletteStorage palettes(dir.path());
        HistoryStorage history(dir.path());
        ContrastStorage contrast;
        ListActions actions(palettes, history);
        QWidget window;
        window.setFixedSize(300, 400);
        Theme::applyDarkPalette(&window);
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        window.show();

        if (field == QLatin1String("Background")) {
            auto *view = new ContrastTab(contrast);
            layout->addWidget(view);
            QCOMPARE(contrast.hex2(), enter(view->backgroundField(), text)); // as held, valid or not
        } else if (field == QLatin1String("palette name")) {
            auto *view = new PalettesTab(palettes, actions);
            layout->addWidget(view);
            view->showNewPalettePrompt();
            QWidget *dialog = view->newPalettePrompt();
            dialog->findChild<QLineEdit *>()->setText(text);
            QCOMPARE(outside(dialog), QString());
            const QString held = enter(dialog->findChild<QLineEdit *>(), text);
            QCOMPARE(palettes.palettes().size(), held.isEmpty() ? 0 : 1);
            if (!held.isEmpty())
                QCOMPARE(PaletteStorage(dir.path()).palettes().first().name, held); // on disk too
        } else if (field == QLatin1String("color name")) {
            const QUuid id = palettes.createPalette(QStringLiteral("Target")).id;
            auto *sheet = new AddColorSheet(palettes, QString(), id, &window);
            QSignalSpy added(sheet, &AddColorSheet::addRequested);
            sheet->open();
            sheet->nameField()->setText(text);
            QCOMPARE(outside(sheet), QString());
            const QString held = enter(sheet->nameField(), text);
            QCOMPARE(added.size(), 1);
            QCOMPARE(added.first().at(1).toString(), held); // as typed, even empty
        } else {
            auto *view = new ConvertTab;
            layout->addWidget(view);
            const Notation notation = field == QLatin1String("HEX") ? Notation::Hex : Notation::Rgb;
            const RgbColor before = view->color();
            view->fields(notation).first()->setText(text);
            const QStringList typed = view->texts(notation);
            enter(view->fields(notation).first(), text);
            QCOMPARE(view->texts(notation), typed); // the committed group keeps its text
            QVERIFY(view->color() == parseNotation(notation, typed).value_or(before));
        }
        layout->activate();
        QCOMPARE(outside(&window), QString());
        QCOMPARE(window.size(), QSize(300, 400));
    }
};

QTEST_MAIN(TestOddInput)
#include "tst_oddinput.moc"
