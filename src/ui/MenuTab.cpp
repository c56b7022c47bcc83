#include "MenuTab.h"

namespace MenuTabs {

const QList<MenuTab> &all()
{
    static const QList<MenuTab> tabs{MenuTab::Picker, MenuTab::History, MenuTab::Palettes,
                                     MenuTab::Convert, MenuTab::Contrast};
    return tabs;
}

QString title(MenuTab tab)
{
    switch (tab) {
    case MenuTab::Picker:
        return QStringLiteral("Picker");
    case MenuTab::History:
        return QStringLiteral("History");
    case MenuTab::Palettes:
        return QStringLiteral("Palettes");
    case MenuTab::Convert:
        return QStringLiteral("Convert");
    case MenuTab::Contrast:
        return QStringLiteral("Contrast");
    }
    return {};
}

QString icon(MenuTab tab)
{
    switch (tab) {
    case MenuTab::Picker:
        return QStringLiteral("eyedropper");
    case MenuTab::History:
        return QStringLiteral("clock");
    case MenuTab::Palettes:
        return QStringLiteral("swatchpalette");
    case MenuTab::Convert:
        return QStringLiteral("arrow.triangle.2.circlepath");
    case MenuTab::Contrast:
        return QStringLiteral("circle.lefthalf.filled");
    }
    return {};
}

} // namespace MenuTabs
