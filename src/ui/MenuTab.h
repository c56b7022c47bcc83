#pragma once

#include <QList>
#include <QString>

// The five tabs of the window, in the order of the tab bar.
enum class MenuTab { Picker, History, Palettes, Convert, Contrast };

namespace MenuTabs {

// Every tab, in tab-bar order.
const QList<MenuTab> &all();
// The tab's title ("Picker", "History", "Palettes", "Convert", "Contrast").
QString title(MenuTab tab);
// The tab's symbol name for Icons.
QString icon(MenuTab tab);

} // namespace MenuTabs
