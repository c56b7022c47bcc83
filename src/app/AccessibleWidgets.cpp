#include "AccessibleWidgets.h"

#include "AccessibleCardRow.h"
#include "AccessibleTabButton.h"

#include "ui/MenuBarPaletteRow.h"
#include "ui/PaletteColorRow.h"
#include "ui/TabButton.h"

namespace AccessibleWidgets {

namespace {

QAccessibleInterface *factory(const QString &className, QObject *object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    // The frameless top-level is a plain QWidget to Qt, which would expose
    // it as a "filler"; screen readers announce a window by its frame.
    if (className == QLatin1String("MenuBarView") && static_cast<QWidget *>(object)->isWindow())
        return new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::Window);
    if (className == QLatin1String("TabButton"))
        return new AccessibleTabButton(static_cast<TabButton *>(object));
    if (className == QLatin1String("MenuBarPaletteRow")) {
        auto *row = static_cast<MenuBarPaletteRow *>(object);
        // Opens the palette: a button, with its color count after the name.
        return new AccessibleCardRow(row, QAccessible::Button, "tapped", [row] { return row->countText(); });
    }
    if (className == QLatin1String("PaletteColorRow")) {
        auto *row = static_cast<PaletteColorRow *>(object);
        return new AccessibleCardRow(row, QAccessible::ListItem, "", [row] { return row->hexText(); });
    }
    return nullptr;
}

} // namespace

void install()
{
    QAccessible::installFactory(factory);
}

} // namespace AccessibleWidgets
