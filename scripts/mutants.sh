#!/usr/bin/env bash
# Plants realistic one-line faults in the program, one at a time, rebuilds
# and runs the tests of the layer it is in and the layers above (model and
# storage: the GUI-free tests and the fuzz corpus replay; picking, ui, app:
# their own and the app's); a fault they let pass is printed as SURVIVED.
# The sources (src/, data/, packaging/) are restored after each one (and on
# interruption).
# Usage: scripts/mutants.sh [build dir]. MUTANTS_FILES, a regular
# expression, plants only the faults in files it matches.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(realpath "${1:-$root/build}")
cd "$root"

# file @ sed expression @ the fault it plants
mutants=$(cat <<'EOF'
src/model/ColorFormats.cpp@s/std::round(value)/std::nearbyint(value)/@halves round to even
src/model/ColorFormats.cpp@s/s = std::min(s, 1.0)/s = s/@saturation not capped next to white
src/model/ColorFormats.cpp@s/%02llX%02llX%02llX/%02llx%02llx%02llx/@lower-case hex
src/model/ColorFormats.cpp@s/hsl(%1, %2%, %3%)/hsl(%1, %2, %3%)/@hsl text loses a percent sign
src/model/ColorFormats.cpp@s/formatFixed(c.chroma, 2)/formatFixed(c.chroma, 3)/@oklch chroma decimals
src/model/ColorFormats.cpp@s/graphemeCount(hex) != 6/hex.size() != 6/@hex length counted in code units
src/model/ColorFormats.cpp@s/QString hex = text.trimmed()/QString hex = text/@hex not trimmed
src/model/ColorFormats.cpp@s/if (t > 1)/if (t > 2)/@hsl hue wrap dropped
src/model/ColorFormats.cpp@s/(1 - c) \* (1 - k)/(1 - c) - k/@cmyk formula
src/model/ColorFormats.cpp@s/std::max(std::min(v, 1.0), 0.0)/std::min(v, 1.0)/@oklch not clipped at 0
src/model/Contrast.cpp@s/value_or(RgbColor{1.0, 1.0, 1.0})/value_or(RgbColor{0.0, 0.0, 0.0})/@invalid background not white
src/model/Contrast.cpp@s/ratio >= 4.5/ratio > 4.5/@AA boundary
src/model/Notation.cpp@s/\*value > 255/*value > 256/@rgb upper limit
src/model/Notation.cpp@s/{{{0, 360}, {0, 100}, {0, 100}}}/{{{0, 359}, {0, 100}, {0, 100}}}/@hsl hue limit
src/model/NumberParsing.cpp@s/text.isEmpty() || hasSurroundingBlanks(text)/text.isEmpty()/@blanks around decimals accepted
src/model/RecordFields.cpp@s/ && text != QLatin1StringView("00000000-0000-0000-0000-000000000000")//@nil UUID refused
src/model/RecordFields.cpp@s/"a number"/"number"/@type name in the message
src/model/RecordFields.cpp@s/!day.isValid() || !time.isValid()/!day.isValid()/@impossible time accepted
src/model/RecordFields.h@s/"%1\[%2\]"/"%1.%2"/@where an error stands
src/model/ColorItem.cpp@s/date(json, "dateAdded"_L1)/date(json, "date"_L1)/@field name read
src/model/ColorItem.cpp@s/u"blue"_s, u"dateAdded"_s/u"blue"_s, u"dateadded"_s/@field name written
src/model/JsonText.cpp@s/out += " : ";/out += ": ";/@key separator
src/storage/HistoryStorage.cpp@s/ \&\& std::fabs(a.green - b.green) < 0.01//@near-duplicate ignores green
src/storage/HistoryStorage.cpp@s/colors.resize(maxColors)/colors.resize(maxColors - 1)/@history keeps one too few
src/storage/RecordFile.cpp@s/yyyyMMdd'T'HHmmss'Z'/yyyyMMddHHmmss/@corrupt copy's time stamp
src/storage/RecordFile.cpp@s/onlyLetters \&\& has(u'a', u'z') \&\& /onlyLetters \&\& /@user's upper-case files removed
src/storage/RecordFile.cpp@s/if (m_writesRefused)/if (false)/@file kept nowhere is overwritten
src/storage/RecordFile.cpp@s/(syncthing || dropbox)/syncthing/@the conflict copies of Dropbox and Nextcloud left unmerged
src/picking/LoupeOverlay.cpp@s/QRect(int(centre.x - reach), int(centre.y - reach)/QRect(int(centre.x - reach + 1), int(centre.y - reach)/@loupe centre cell off by one
src/picking/LoupeColorSampler.cpp@s/{pixel.x + delta.x(), pixel.y + delta.y()}/{pixel.x + 2 * delta.x(), pixel.y + delta.y()}/@arrow step not one device pixel
src/picking/LoupeGeometry.cpp@s/if (screenRight < left + size + edgeMargin)/if (screenRight <= left + size + edgeMargin)/@loupe flips one point early
src/picking/LoupeGeometry.cpp@s/constexpr double slack = 1e-6/constexpr double slack = 0/@pixel a hair short of itself at fractional ratios
src/picking/LoupeGeometry.cpp@s/return value > high ? std::max(low, high) : std::max(value, low)/return value > high + 1 ? high + 1 : std::max(value, low)/@arrows leave the screen at its far edge
src/picking/PortalRequest.cpp@s/m_bus.connect(portalService, path/m_bus.connect(QString(), path/@portal response from another sender accepted
src/picking/PortalRequest.cpp@s/handle != m_subscribedPath \&\& !subscribe(handle)/false/@mismatched request handle not followed
src/picking/TintwrightService.cpp@s/finishPick({PickResult::Outcome::Unavailable, {}, why});/finishPick({});/@no way to pick ends as a plain cancel
src/picking/TintwrightService.cpp@s/if (!order.isEmpty()) {/if (false) {/@a failed way to pick not followed by the next
src/app/PickCommand.cpp@s/code = unavailable;/code = cancelled;/@wrong exit code when picking is unavailable
src/app/PickCommand.cpp@s/            history.addColor(color);/            ;/@history not recorded on a command pick
src/app/PickCommand.cpp@s/} else if (!reply.result.reason.isEmpty()) {/} else if (false) {/@why the portal ended a pick not said
src/main.cpp@s/std::signal(SIGXFSZ, SIG_IGN);/;/@a save over the file size limit kills the program
src/app/GlobalPickShortcut.cpp@s/session.path() == m_sessionHandle \&\& //@shortcut activation from another session accepted
src/storage/DataLocation.cpp@s/QFileInfo(existing).canonicalFilePath()/QFileInfo(existing).absoluteFilePath()/@instance not keyed on the real folder
src/model/CssFormat.cpp@s/if (arguments.contains(u'(') || (values.size() != 3/if ((values.size() != 3/@nested css function read as a color
src/model/GplFormat.cpp@s/(?=\[ \\\\t\\\\v\\\\f\]|\$)//@gpl number run into its name
src/model/AseFormat.cpp@s/const QString name = readName(group);/const QString name;/@ase group name dropped
src/picking/TintwrightService.cpp@s/        m_pickedColor = result.colors.last();//@picked color not kept
src/app/TintwrightApp.cpp@s/if (!result.isPicked() \&\& m_tintwrightService.pickedColor())/if (false)/@cancelled window pick not recorded
src/app/TintwrightApp.cpp@s/    if (m_tintwrightService.isPicking()) {/    if (false) {/@command pick interrupts a running one
src/app/SingleInstance.cpp@s/return receive(socket, answerTimeoutMs, answer) \&\& answer == acknowledgement;/return true;/@hand-over not acknowledged
src/ui/StoreListModel.cpp@s/        removeRecord(id);//@removing a row leaves its record
src/ui/StoreListModel.h@s/if (record.id == id \&\& nth-- == 0)/if (record.id == id)/@a record listed twice shows its first twice
src/ui/ColorListModel.cpp@s/m_paletteStorage->removeColor(id, m_paletteId);/m_paletteStorage->deletePalette(m_paletteId);/@deleting a color deletes its palette
src/ui/PaletteListModel.cpp@s/m_paletteStorage.renamePalette(index.data(IdRole).toUuid(), value.toString());/m_paletteStorage.renamePalette(index.data(IdRole).toUuid(), value.toString().trimmed());/@rename trims the name
src/ui/DarkStyle.cpp@s/button->setAutoDefault(true);/;/@Return does not press a button
src/ui/DarkStyle.cpp@s/|| reason == Qt::ShortcutFocusReason || reason == Qt::OtherFocusReason/|| reason == Qt::MouseFocusReason/@focus ring after a click
src/ui/PaletteFiles.cpp@s/        format = \*named;/        ;/@export ignores the suffix typed
src/ui/PaletteFiles.cpp@s/return FileReadResult::refused(u"it is a folder"_s);/;/@a folder read as a file
src/ui/PickerTab.cpp@s/        m_unavailableReason = result.reason;/        ;/@no way to pick not shown
src/ui/ConvertTab.cpp@s/        if (other == notation)/        if (false)/@committed group rewritten
src/ui/HistoryTab.cpp@s/tr("Remove"), this, \[this, kept\] { m_model->removeRow(kept.row()); }/tr("Remove"), this, [this, kept] { m_model->removeRow(0); }/@menu removes the first row
src/storage/RecordMerge.cpp@s/report.colorsTaken += int(palette.colors.size());/;/@the colors of a palette taken in not counted
src/storage/RecordMerge.cpp@s/        else if (before \&\& \*before == item)/        else if (false)/@a color deleted there comes back
src/storage/RecordMerge.cpp@s/const bool renamedThere = before ? there->name != before->name : base.has_value();/const bool renamedThere = true;/@an old name there undoes a rename here
src/storage/RecordMerge.cpp@s/if (palettesStayedDeleted > 0)/if (palettesStayedDeleted > 1)/@one palette that stayed deleted is not said
src/storage/SyncedRecords.h@s/if (bytes \&\& m_known.wrote(\*bytes))/if (false)/@merges answering each other never settle
src/storage/SyncedRecords.h@s/|| (version.origin == Origin::Read \&\& version.time > written))/)/@a base newer than their version
src/model/Apca.cpp@s/return sapc < clip ? 0.0 : (sapc - offset) \* 100.0;/return sapc < clip ? 0.0 : (sapc + offset) * 100.0;/@apca offset sign on light backgrounds
src/model/Apca.cpp@s/std::abs(formatFixed(lc, 1).toDouble())/std::abs(lc)/@apca use graded from the unrounded value
src/model/NearestPassingColor.cpp@s/darker \&\& (!lighter || \*darker < \*lighter)/darker \&\& !lighter/@the farther fix chosen
src/model/NearestPassingColor.cpp@s/halving < 20/halving < 0/@fix not halved back to the boundary
src/model/ColorVision.cpp@s/0.004733, 0.691367, 0.303900/0.004733, 0.961367, 0.303900/@tritanopia matrix typo
src/app/ContrastCommand.cpp@s/return int(wcagLevel(result.ratio)) <= int(least) ? 0 : 1;/return int(wcagLevel(result.ratio)) < int(least) ? 0 : 1;/@required level met counts as failing
src/picking/LoupeGeometry.cpp@s/const std::int64_t reach = areaSize \/ 2;/const std::int64_t reach = areaSize \/ 2 + 1;/@area one pixel too wide
src/picking/LoupeGeometry.cpp@s/for (int x = pixels.left(); x <= pixels.right(); ++x)/for (int x = pixels.left(); x < pixels.right(); ++x)/@the area's last column left out of the mean
src/picking/FrozenScreen.cpp@s/right = std::min(right, o.x());/;/@a screen's pixels run into its right neighbour
src/app/CommandLine.cpp@s/command.copy = !parser.isSet(noCopyOption);/command.copy = true;/@--no-copy ignored
src/app/CommandLine.cpp@s/: {formatOption, noCopyOption})/: {noCopyOption})/@--format without --pick accepted
src/storage/RecordMerge.cpp@0,/if (there == theirs.cend() || \*there != i.value())/s//if (there == theirs.cend() || (was != before.cend() \&\& *there != i.value()))/@a record they hold otherwise taken as seen from here
src/picking/FrozenScreen.cpp@s/screen->geometry().translated(-layout.topLeft())/QRect(QPoint(), screen->geometry().size())/@every output shows the screenshot's first part
src/picking/FrozenScreen.cpp@s/const double scaleX = double(picture.width()) \/ layout.width();/const double scaleX = 1.0;/@a scaled output's screenshot read at scale 1
src/storage/RecordFile.cpp@s/if (wasKnown || !old)/if (true)/@a version another program saved is swapped out unseen
src/picking/TintwrightService.cpp@s/        sampler->disconnect(this);/        ;/@a sampler's second report ends the pick again
src/ui/StoreListModel.cpp@s/        ++tail;/        break;/@rows after a change lose their place
src/model/GplFormat.cpp@s/.arg(int(color.red), 3)/.arg(int(color.red))/@gpl components not padded
src/model/CssFormat.cpp@s/for (int n = 2; taken.contains(id); ++n)/for (int n = 2; taken.contains(id) \&\& n == 2; ++n)/@css names clash after a second duplicate
src/ui/HistoryTab.cpp@s/    m_list->setAccessibleName(tr("Recent Colors"));/    ;/@history list unnamed
src/ui/PalettesTab.cpp@s/            storage.createPalette(name);/            storage.createPalette(name.trimmed());/@a new palette's name trimmed
src/storage/SyncedRecords.h@s/if (!m_unreadableSince.hasExpired(giveUpMs))/if (false)/@a half-written file given up on at once
src/ui/AddColorSheet.cpp@s/    if (selectedPaletteId)/    if (false)/@the add sheet forgets the palette used last
src/ui/HistoryRowDelegate.cpp@s/index.data(Qt::DecorationRole)/index.siblingAtRow(0).data(Qt::DecorationRole)/@history rows painted in the first row's color
src/ui/PaletteColorDelegate.cpp@s/index.data(Qt::DecorationRole)/index.siblingAtRow(0).data(Qt::DecorationRole)/@a palette's colors painted in its first color
src/ui/PaletteCardDelegate.cpp@s/index.data(StoreListModel::StripRole)/index.siblingAtRow(0).data(StoreListModel::StripRole)/@palette cards show the first palette's strip
data/io.github.tintwright.Tintwright.desktop@s/^Actions=PickColor;/Actions=PickColour;/@the launcher's action without its group
data/icons/render-icon.cpp@s/QImage image(size, size,/QImage image(48, 48,/@every icon rendered at 48 px
packaging/CPack.cmake@s/DEPENDS "qt6-qpa-plugins, libqt6svg6"/DEPENDS "libqt6svg6"/@the package without the X11 platform plugin
EOF
)

# The tests each layer's faults are planted against.
selection() {
  case "$1" in
    # The folder's key serves the single instance too.
    src/storage/DataLocation.cpp) echo "-L gui-free|app -E ^app_(package|metadata|install_layout)$" ;;
    src/model/* | src/storage/*) echo "-L gui-free" ;;
    src/picking/*) echo "-L picking|app -E ^app_(package|metadata|install_layout)$" ;;
    src/ui/*) echo "-R ^tst_(views|listmodels|accessibility|tintwrightapp|wayland)$" ;;
    # The launcher entry and the icons; the package (as root, with dpkg).
    data/*) echo "-R ^app_(metadata|install_layout)$" ;;
    packaging/*) echo "-R ^app_package$" ;;
    *) echo "-L app -E ^app_(package|metadata|install_layout)$" ;;
  esac
}

restore() { git checkout -q -- src data packaging; }
trap restore EXIT
ninja -C "$build" >/dev/null
run() {
  rm -f "$build/Testing/Temporary/CTestCostData.txt" # in the order given, not slowest first
  # shellcheck disable=SC2046
  ctest --test-dir "$build" $(selection "$1") -j2 "${@:2}" >/dev/null 2>&1
}
# Each layer a selected fault is in, passing first.
layers=$(while IFS='@' read -r file _; do
  [[ -n "$file" && "$file" =~ ${MUTANTS_FILES:-.} ]] || continue
  if [[ $file == src/* ]]; then echo "${file%/*}"; else echo "${file%%/*}"; fi
done <<<"$mutants" | sort -u)
for layer in $layers; do
  run "$layer/" || { echo "the suite fails without faults ($layer)"; exit 1; }
done
caught=0 total=0
while IFS='@' read -r file expr what; do
  [[ -z "$file" ]] && continue
  [[ "$file" =~ ${MUTANTS_FILES:-.} ]] || continue
  total=$((total + 1))
  before=$(md5sum "$file")
  sed -i "$expr" "$file"
  if [[ "$(md5sum "$file")" == "$before" ]]; then
    echo "NOT APPLIED  $what"
  elif ! ninja -C "$build" >/dev/null 2>&1; then
    echo "NO BUILD     $what"
  elif run "$file" --stop-on-failure; then
    echo "SURVIVED     $what"
  else
    echo "caught       $what"
    caught=$((caught + 1))
  fi
  restore
done <<<"$mutants"
ninja -C "$build" >/dev/null
echo "$caught of $total faults caught"
