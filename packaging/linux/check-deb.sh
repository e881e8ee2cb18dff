#!/usr/bin/env bash
# Builds the Debian package from a configured and built tree and checks what it holds.
#   packaging/linux/check-deb.sh BUILD_DIR [OUTPUT_DIR]
# Prints the package's path on success; says what is missing and fails otherwise.
set -euo pipefail
build=$1
out=${2:-$build/package}
mkdir -p "$out"
rm -f "$out"/marzipel_*.deb
cpack --config "$build/CPackConfig.cmake" -B "$out" >"$out/cpack.log" 2>&1 ||
  { cat "$out/cpack.log" >&2; exit 1; }
deb=$(ls "$out"/marzipel_*.deb)
contents=$(dpkg-deb -c "$deb")
depends=$(dpkg-deb -f "$deb" Depends)
status=0
for file in ./usr/bin/marzipel \
  ./usr/share/applications/com.orsavelt.Marzipel.desktop \
  ./usr/share/icons/hicolor/scalable/apps/com.orsavelt.Marzipel.svg \
  ./usr/share/metainfo/com.orsavelt.Marzipel.metainfo.xml \
  ./usr/share/gnome-shell/extensions/marzipel@orsavelt.com/metadata.json \
  ./usr/share/gnome-shell/extensions/marzipel@orsavelt.com/extension.js \
  ./usr/share/gnome-shell/extensions/marzipel@orsavelt.com/windowReport.js \
  ./usr/share/gnome-shell/extensions/marzipel@orsavelt.com/topBarMenu.js \
  ./usr/share/gnome-shell/extensions/marzipel@orsavelt.com/marzipel-symbolic.svg \
  ./usr/share/marzipel/kwin_window_reports.js; do
  grep -q " $file\$" <<<"$contents" || { echo "missing from the package: $file" >&2; status=1; }
done
for package in libqt6widgets6 libqt6dbus6 libqt6svg6 qt6-qpa-plugins qt6-wayland \
  libplist libxcb1 libglib2.0-0; do
  grep -q "$package" <<<"$depends" || { echo "not among the dependencies: $package" >&2; status=1; }
done
# Icons drawn from SVG need Qt's SVG plugin, in whichever package this release keeps it.
svg_plugin=$(dpkg-query -S '*/qt6/plugins/imageformats/libqsvg.so' | cut -d: -f1)
grep -qw "$svg_plugin" <<<"$depends" || { echo "not among the dependencies: $svg_plugin" >&2; status=1; }
[ "$(dpkg-deb -f "$deb" Architecture)" = "$(dpkg --print-architecture)" ] ||
  { echo "wrong architecture" >&2; status=1; }
[ $status -eq 0 ] && echo "$deb"
exit $status
