# The Palettes, Convert and Contrast tabs and the small widgets they share.
target_sources(tintwright_ui PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/RoundedLineEdit.h ${CMAKE_CURRENT_LIST_DIR}/RoundedLineEdit.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RoundedSwatch.h ${CMAKE_CURRENT_LIST_DIR}/RoundedSwatch.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ConvertRowLabel.h ${CMAKE_CURRENT_LIST_DIR}/ConvertRowLabel.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ConvertInputRow.h ${CMAKE_CURRENT_LIST_DIR}/ConvertInputRow.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ConvertGroupRow.h ${CMAKE_CURRENT_LIST_DIR}/ConvertGroupRow.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ConvertSmallInput.h ${CMAKE_CURRENT_LIST_DIR}/ConvertSmallInput.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ConvertView.h ${CMAKE_CURRENT_LIST_DIR}/ConvertView.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ContrastInputRow.h ${CMAKE_CURRENT_LIST_DIR}/ContrastInputRow.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ContrastView.h ${CMAKE_CURRENT_LIST_DIR}/ContrastView.cpp
)
target_sources(tintwright_ui PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/ElidedLabel.h ${CMAKE_CURRENT_LIST_DIR}/ElidedLabel.cpp
  ${CMAKE_CURRENT_LIST_DIR}/CardPainting.h ${CMAKE_CURRENT_LIST_DIR}/CardPainting.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PaletteViewParts.h ${CMAKE_CURRENT_LIST_DIR}/PaletteViewParts.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PaletteColorRow.h ${CMAKE_CURRENT_LIST_DIR}/PaletteColorRow.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MenuBarPaletteRow.h ${CMAKE_CURRENT_LIST_DIR}/MenuBarPaletteRow.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MenuBarPaletteDetailView.h ${CMAKE_CURRENT_LIST_DIR}/MenuBarPaletteDetailView.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MenuBarPalettesView.h ${CMAKE_CURRENT_LIST_DIR}/MenuBarPalettesView.cpp
)
