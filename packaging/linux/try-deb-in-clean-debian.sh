#!/usr/bin/env bash
# Installs the Debian package into a freshly made minimal Debian of the given release and starts it
# there, on an X display of its own: what a user who installs the package gets. Needs root (for
# the chroots) and Debian's package mirror; takes a few minutes, so scripts/test leaves it out.
#   packaging/linux/try-deb-in-clean-debian.sh RELEASE      (bookworm, trixie, ...)
# The package is built for that release: here when this machine runs it, else inside the chroot
# of scripts/test-in-debian. Leaves the package, the install log and a screenshot in
# build/clean-debian/RELEASE/.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
release=${1:?usage: packaging/linux/try-deb-in-clean-debian.sh RELEASE}
out=$root/build/clean-debian/$release
[ "$(id -u)" = 0 ] || { echo "needs root, for the chroot" >&2; exit 2; }
for tool in mmdebstrap Xvfb xdotool import; do
  command -v "$tool" >/dev/null || { echo "needs $tool (apt-get install mmdebstrap xvfb xdotool imagemagick)" >&2; exit 2; }
done

rm -rf "$out"
mkdir -p "$out"
build_deb='scripts/setup && cmake --preset release >/dev/null &&
  cmake --build --preset release --target marzipel >/dev/null &&
  packaging/linux/check-deb.sh build/release build/package'
echo "Building the package for $release ..."
if [ "$(. /etc/os-release && echo "${VERSION_CODENAME:-}")" = "$release" ]; then
  (cd "$root" && bash -c "$build_deb") >"$out/build.log" 2>&1 || { tail -20 "$out/build.log" >&2; exit 1; }
  deb=$(ls "$root"/build/package/marzipel_*.deb)
else
  "$root/scripts/test-in-debian" "$release" bash -c "$build_deb" >"$out/build.log" 2>&1 ||
    { tail -20 "$out/build.log" >&2; exit 1; }
  deb=$(ls "${MARZIPEL_CHROOTS:-/var/tmp/marzipel-chroots}/$release"/root/marzipel/build/package/marzipel_*.deb)
fi
cp "$deb" "$out/"
deb=$out/$(basename "$deb")

work=$(mktemp -d /tmp/marzipel-clean-debian.XXXXXX)
system=$work/root
xvfb=
program=
cleanup() {
  [ -n "$program" ] && kill "$program" 2>/dev/null && wait "$program" 2>/dev/null
  [ -n "$xvfb" ] && kill "$xvfb" 2>/dev/null && wait "$xvfb" 2>/dev/null
  for mount in "$system/tmp/.X11-unix" "$system/proc"; do
    mountpoint -q "$mount" && umount "$mount"
  done
  # Only once nothing of the host is mounted inside any more.
  if ! grep -q " $work/" /proc/mounts; then rm -rf "$work"; fi
}
trap cleanup EXIT

echo "Making a minimal Debian $release in $system ..."
mmdebstrap --variant=apt --quiet --aptopt='Acquire::Check-Valid-Until "false"' "$release" "$system" >"$out/mmdebstrap.log" 2>&1 ||
  { tail -20 "$out/mmdebstrap.log" >&2; exit 1; }
cp "$deb" "$system/tmp/"
cp /etc/resolv.conf "$system/etc/resolv.conf"
echo "Installing $(basename "$deb") with its dependencies and nothing recommended ..."
{ chroot "$system" apt-get update &&
  chroot "$system" apt-get install -y --no-install-recommends "/tmp/$(basename "$deb")"; } \
  >"$out/install.log" 2>&1 || { tail -20 "$out/install.log" >&2; exit 1; }
chroot "$system" test -x /usr/bin/marzipel
chroot "$system" test -f /usr/share/applications/com.orsavelt.Marzipel.desktop

mount -t proc proc "$system/proc"
mkdir -p "$system/tmp/.X11-unix"
mount --bind /tmp/.X11-unix "$system/tmp/.X11-unix"
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$work/display" >/dev/null 2>&1 &
xvfb=$!
deadline=$((SECONDS + 20))
until grep -q . "$work/display"; do
  [ $SECONDS -lt $deadline ] || { echo "Xvfb did not start" >&2; exit 1; }
  sleep 0.1
done
display=:$(head -1 "$work/display")

echo "Starting marzipel on $display inside the new system (no session bus, no tray) ..."
chroot "$system" env -i DISPLAY="$display" HOME=/root LANG=C.UTF-8 PATH=/usr/bin:/bin \
  QT_QPA_PLATFORM=xcb marzipel >"$out/marzipel.log" 2>&1 &
program=$!
# On a first start the welcome window opens; its appearing shows the program is up.
deadline=$((SECONDS + 30))
until DISPLAY=$display xdotool search --classname marzipel >/dev/null 2>&1; do
  kill -0 "$program" 2>/dev/null || { echo "marzipel ended early:" >&2; cat "$out/marzipel.log" >&2; exit 1; }
  [ $SECONDS -lt $deadline ] || { echo "no marzipel window within 30 s" >&2; exit 1; }
  sleep 0.2
done
DISPLAY=$display import -window root "$out/welcome.png"
kill -TERM "$program"
status=0
wait "$program" || status=$?
program=
[ $status -eq 0 ] || { echo "marzipel ended with status $status on SIGTERM" >&2; cat "$out/marzipel.log" >&2; exit 1; }
echo "Installed and started on a clean Debian $release; SIGTERM ended it cleanly."
echo "Package: $deb"
echo "Logs and a screenshot of the welcome window: $out/"
