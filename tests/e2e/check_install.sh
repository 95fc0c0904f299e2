#!/usr/bin/env bash
# Installs the build into a scratch folder and checks what a desktop needs.
set -euo pipefail
build="$1"
stage="$(mktemp -d)"
direct="$(mktemp -d)"
trap 'rm -rf "$stage" "$direct"' EXIT
DESTDIR="$stage" cmake --install "$build" --prefix /usr >/dev/null
for file in usr/bin/rk4prog usr/bin/rk4 usr/bin/rk4-unitsim usr/bin/rk4-modemsim usr/bin/rk4-cellsim usr/share/applications/rk4prog.desktop \
            usr/share/mime/packages/rk4prog-data.xml usr/share/icons/hicolor/scalable/apps/rk4prog.svg; do
  [ -e "$stage/$file" ] || { echo "missing after install: $file"; exit 1; }
done
if command -v desktop-file-validate >/dev/null; then
  desktop-file-validate "$stage/usr/share/applications/rk4prog.desktop"
fi
grep -q 'MimeType=application/x-rk4-data;' "$stage/usr/share/applications/rk4prog.desktop"
grep -q '<glob pattern="\*.dat"' "$stage/usr/share/mime/packages/rk4prog-data.xml"
# The MIME cache belongs to the system the stage is finally installed on.
if [ -e "$stage/usr/share/mime/mime.cache" ]; then
  echo "a staged install ran update-mime-database inside DESTDIR"; exit 1
fi
if command -v update-mime-database >/dev/null; then
  update-mime-database "$stage/usr/share/mime" >/dev/null
  grep -q 'application/x-rk4-data' "$stage/usr/share/mime/globs2"
fi
# Without DESTDIR the cache is brought up to date where the files went: under
# the prefix given to the install, not the one the build was configured with.
if command -v update-mime-database >/dev/null; then
  cmake --install "$build" --prefix "$direct" >/dev/null
  [ -e "$direct/share/mime/mime.cache" ] || { echo "the install did not update the MIME cache under its prefix"; exit 1; }
fi
