#!/usr/bin/env bash
# Plants realistic one-line faults in the model and storage code, one at a
# time, rebuilds the tests of those libraries and runs them; a fault they let
# pass is printed as SURVIVED. The sources are restored after each one (and
# on interruption). Usage: scripts/mutants.sh [build dir] [ctest selection],
# the selection by default the GUI-free tests and the fuzz corpus replay.
# MUTANTS_FILES, a regular expression, plants only the faults in files it matches.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(realpath "${1:-$root/build}")
select=("${@:2}")
[[ ${#select[@]} -gt 0 ]] || select=(-L gui-free)
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
src/model/ConvertRules.cpp@s/\*value > 255/*value > 256/@rgb upper limit
src/model/ConvertRules.cpp@s/{{{0, 360}, {0, 100}, {0, 100}}}/{{{0, 359}, {0, 100}, {0, 100}}}/@hsl hue limit
src/model/NumberParsing.cpp@s/text.isEmpty() || hasSurroundingBlanks(text)/text.isEmpty()/@blanks around decimals accepted
src/model/RecordFields.cpp@s/ && text != QLatin1StringView("00000000-0000-0000-0000-000000000000")//@nil UUID refused
src/model/RecordFields.cpp@s/"a number"/"number"/@type name in the message
src/model/RecordFields.cpp@s/!day.isValid() || !time.isValid()/!day.isValid()/@impossible time accepted
src/model/RecordFields.h@s/"%1\[%2\]"/"%1.%2"/@where an error stands
src/model/ColorItem.cpp@46s/"dateAdded"/"date"/@field name read
src/model/ColorItem.cpp@65s/"dateAdded"/"dateadded"/@field name written
src/model/JsonWriter.cpp@s/putAscii(name.data(), name.size(), " : ")/putAscii(name.data(), name.size(), ": ")/@key separator
src/storage/HistoryStorage.cpp@s/ \&\& std::fabs(a.green - b.green) < 0.01//@near-duplicate ignores green
src/storage/HistoryStorage.cpp@s/colors.resize(maxColors)/colors.resize(maxColors - 1)/@history keeps one too few
src/storage/RecordFile.cpp@s/yyyyMMdd'T'HHmmss'Z'/yyyyMMddHHmmss/@corrupt copy's time stamp
src/storage/RecordFile.cpp@s/(?=.\*\[a-z\])//@user's upper-case files removed
src/storage/RecordFile.cpp@s/if (m_writesRefused)/if (false)/@file kept nowhere is overwritten
src/picking/LoupeOverlay.cpp@s/int(centre.x - gridReach), int(centre.y - gridReach)/int(centre.x - gridReach + 1), int(centre.y - gridReach)/@loupe centre cell off by one
src/picking/LoupeColorSampler.cpp@s/{pixel.x + delta.x(), pixel.y + delta.y()}/{pixel.x + 2 * delta.x(), pixel.y + delta.y()}/@arrow step not one device pixel
src/picking/LoupeGeometry.cpp@s/if (screenRight < left + size + edgeMargin)/if (screenRight <= left + size + edgeMargin)/@loupe flips one point early
src/picking/LoupeGeometry.cpp@s/constexpr double slack = 1e-6/constexpr double slack = 0/@pixel a hair short of itself at fractional ratios
src/picking/LoupeGeometry.cpp@s/return value > high ? std::max(low, high) : std::max(value, low)/return value > high + 1 ? high + 1 : std::max(value, low)/@arrows leave the screen at its far edge
src/picking/PortalColorSampler.cpp@s/m_bus.connect(portalService, path/m_bus.connect(QString(), path/@portal response from another sender accepted
src/picking/PortalColorSampler.cpp@s/handle != m_subscribedPath \&\& !subscribe(handle)/false/@mismatched request handle not followed
src/picking/PortalAvailability.cpp@s/if (m_answer == answer || m_answer == Answer::Present)/if (m_answer == answer)/@portal's presence forgotten
src/picking/TintwrightService.cpp@s/if (!qobject_cast<LoupeColorSampler \*>(sampler))/if (false)/@failed portal not followed by the loupe
src/app/PickCommand.cpp@s/code = unavailable;/code = cancelled;/@wrong exit code when picking is unavailable
src/app/PickCommand.cpp@s/PickRecording::recordPicks(service, history, PickRecording::Cancels::RecordNothing);//@history not recorded on a command pick
src/app/GlobalPickShortcut.cpp@s/session.path() == m_sessionHandle \&\& //@shortcut activation from another session accepted
src/app/SingleInstance.cpp@s/QFileInfo(existing).canonicalFilePath()/QFileInfo(existing).absoluteFilePath()/@instance not keyed on the real folder
EOF
)

tests=$(ctest --test-dir "$build" -N "${select[@]}" | sed -n 's/^ *Test *#[0-9]*: //p')
known=$(ninja -C "$build" -t targets all | sed 's/:.*//')
targets=$(grep -Fxf <(printf '%s\n' "$tests") <(printf '%s\n' "$known") || true)
# Tests that run the program itself need it built with the fault too.
grep -q '^app_\|^tst_pickcommand$' <<<"$tests" && targets+=" tintwright"

restore() { git checkout -q -- src; }
trap restore EXIT
ninja -C "$build" $targets >/dev/null
run() {
  rm -f "$build/Testing/Temporary/CTestCostData.txt" # in the order given, not slowest first
  ctest --test-dir "$build" "${select[@]}" -j2 "$@" >/dev/null 2>&1
}
run || { echo "the suite fails without faults"; exit 1; }
caught=0 total=0
while IFS='@' read -r file expr what; do
  [[ -z "$file" ]] && continue
  [[ "$file" =~ ${MUTANTS_FILES:-.} ]] || continue
  total=$((total + 1))
  before=$(md5sum "$file")
  sed -i "$expr" "$file"
  if [[ "$(md5sum "$file")" == "$before" ]]; then
    echo "NOT APPLIED  $what"
  elif ! ninja -C "$build" $targets >/dev/null 2>&1; then
    echo "NO BUILD     $what"
  elif run --stop-on-failure; then
    echo "SURVIVED     $what"
  else
    echo "caught       $what"
    caught=$((caught + 1))
  fi
  restore
done <<<"$mutants"
ninja -C "$build" $targets >/dev/null
echo "$caught of $total faults caught"
