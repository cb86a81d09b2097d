#!/bin/sh
# Makes the Debian package of a release build, examines it, and installs, runs and removes it in a clean system that is
# made for that and goes again. Takes root's rights, and the mirror that apt knows.
set -eu
cd "$(dirname "$0")/.."

if [ "$(id -u)" -ne 0 ]; then
  echo "check-package: a clean system takes root's rights" >&2
  exit 1
fi
scripts/setup.sh lintian debootstrap
cmake --preset release >/dev/null
cmake --build --preset release

Step() { printf '== package: %s\n' "$1"; }
Package() { (umask "$1" && cpack --config build/release/CPackConfig.cmake >/dev/null 2>&1); }
Work=$(mktemp -d)
Root=$Work/root
trap 'rm -rf --one-file-system "$Work"' EXIT
trap 'exit 1' HUP INT TERM

Step "two of one commit are equal, whatever the umask"
rm -f build/release/*.deb
Package 077
cp build/release/*.deb "$Work"
Package 002
cmp "$Work"/*.deb build/release/*.deb

Step "lintian"
lintian --allow-root --fail-on error,warning build/release/*.deb

Step "a clean system"
Release=$(. /etc/os-release && echo "$VERSION_CODENAME")
Mirror=$(apt-get indextargets --format '$(SITE)' "Codename: $Release" 'Created-By: Packages' | head -n 1)
if ! timeout 600 debootstrap --variant=minbase "$Release" "$Root" "$Mirror" >"$Work/log" 2>&1; then
  tail -n 20 "$Work/log" >&2
  exit 1
fi
# Services are not started there.
printf '#!/bin/sh\nexit 101\n' >"$Root/usr/sbin/policy-rc.d"
chmod 755 "$Root/usr/sbin/policy-rc.d"

In() { timeout 300 env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 TZ=Europe/Berlin chroot "$@"; }
AsVelmora() { In --userspec=velmora:velmora "$Root" sh -ec "$1"; }

Step "installation"
cp "$Work"/*.deb "$Root/velmora.deb"
In "$Root" apt-get install --yes --no-install-recommends /velmora.deb >"$Work/log" 2>&1 || {
  tail -n 20 "$Work/log" >&2
  exit 1
}
In "$Root" sh -c '! ldd /usr/bin/velmora-console | grep "not found"'
In "$Root" dpkg --verify velmora-console

Step "jobs of its account"
install -d -o "$(In "$Root" id -u velmora)" -m 750 "$Root/var/lib/velmora" "$Root/job"
AsVelmora 'cd /job
  cp /usr/share/doc/velmora-console/examples/* .
  mv schule.velmora plan.velmora
  velmora-console export -s file -fn plan.velmora -o console
  velmora-host export ocf-export.json
  mkdir in
  cp ocf/Rooms.csv in/
  velmora-host import ocf-import.json
  velmora-host publish publish.json
  velmora-console newguids -f plan.velmora' >/dev/null
TZ=Europe/Berlin build/release/velmora-console export -s file -fn samples/schule.velmora -o "$Work/out" >/dev/null
diff -r "$Work/out" "$Root/job/console"
test -s "$Root/job/screen.json"
if command -v systemd-analyze >/dev/null; then
  systemd-analyze --root="$Root" --man=no --offline=true --threshold=30 security velmora@.service >"$Work/log" || {
    cat "$Work/log"
    exit 1
  }
fi

Step "removal"
Wanted=$Root/etc/systemd/system/timers.target.wants
install -d "$Wanted" "$Root/var/lib/velmora/nightly"
ln -s /usr/lib/systemd/system/velmora@.timer "$Wanted/velmora@nightly.timer"
In "$Root" apt-get purge --yes velmora-console >/dev/null 2>&1
test -z "$(find "$Root/usr" "$Root/lib" "$Root/etc" -name '*velmora*')"
test -d "$Root/var/lib/velmora/nightly"
echo "package: all well"
