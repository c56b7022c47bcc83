#pragma once

#include <QString>

#include <array>

// The five tabs of the window, in the order of the tab bar.
enum class MenuTab { Picker, History, Palettes, Convert, Contrast };

namespace MenuTabs {

inline constexpr std::array<MenuTab, 5> all{MenuTab::Picker, MenuTab::History, MenuTab::Palettes,
                                            MenuTab::Convert, MenuTab::Contrast};

// The tab's title, spoken by screen readers and shown as its tooltip.
inline QString title(MenuTab tab)
{
    static const char *const titles[] = {"Picker", "History", "Palettes", "Convert", "Contrast"};
    return QString::fromLatin1(titles[int(tab)]);
}

// The tab's symbol name for Icons.
inline QString icon(MenuTab tab)
{
    static const char *const icons[] = {"eyedropper", "clock", "swatchpalette", "arrow.triangle.2.circlepath",
                                        "circle.lefthalf.filled"};
    return QString::fromLatin1(icons[int(tab)]);
}

} // namespace MenuTabs
