#!/usr/bin/env bash
# Installs the packages of build/bin/packages in a Debian 12 root folder, uses kvo there as an
# ordinary user, builds examples/embedding with the installed libkvo-dev, and removes everything
# again. `./test packages` runs it as root. The folder is build/debian, or KVO_DEBIAN_ROOT.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=${KVO_DEBIAN_ROOT:-$PWD/build/debian}
if [ -z "${KVO_MOUNTED:-}" ]; then
  if ! [ -e "$root/etc/debian_version" ]; then
    echo "Creating a Debian in $root; this takes some minutes."
    site=$(apt-get indextargets --format '$(SITE)' 'Created-By: Packages' 'Codename: bookworm' | head -n 1)
    debootstrap --variant=minbase bookworm "$root" "$site" >build/debian.log 2>&1 || {
      tail -n 20 build/debian.log >&2
      echo "Cannot create the Debian; see build/debian.log." >&2
      rm -rf "$root"
      exit 1
    }
  fi
  # A mount namespace of our own removes the mounts at exit.
  KVO_MOUNTED=1 exec unshare --mount "$0"
fi
for folder in /proc /dev /sys; do mount --bind "$folder" "$root$folder"; done
cp /etc/resolv.conf "$root/etc/"
rm -rf "$root/packages"
mkdir "$root/packages"
cp build/bin/packages/*.deb "$root/packages/"

fail() {
  echo "$*" >&2
  exit 1
}
inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/root "$@"; }
apt() {
  inside env DEBIAN_FRONTEND=noninteractive apt-get -qq "$@" >build/packages.log 2>&1 || {
    tail -n 20 build/packages.log >&2
    fail "apt-get $* failed"
  }
}
# Lists the system's files and folders, except caches, logs and state.
files() {
  inside find / -xdev \( -path /proc -o -path /dev -o -path /sys -o -path /tmp -o -path /packages -o -path /home \
    -o -path /root -o -path /var/cache -o -path /var/log -o -path /var/lib/dpkg -o -path /var/lib/apt \) -prune \
    -o -print | sort
}
names=(kvo kvo-editor libkvo-dev)
install_packages() {
  local packages=("$root"/packages/*.deb)
  apt install -y --no-install-recommends "${packages[@]#"$root"}"
}

inside id author >/dev/null 2>&1 || inside useradd --create-home author
# Installs them once before comparing, because their dependencies stay installed.
echo "Installing ..."
apt update
apt install -y --no-install-recommends shared-mime-info desktop-file-utils # every desktop has these
install_packages
apt purge -y "${names[@]}"
files >build/packages.before
install_packages

cp examples/newsletter/newsletter.html "$root/home/author/"
as_author() { inside setpriv --reuid=author --regid=author --clear-groups env HOME=/home/author QT_QPA_PLATFORM=offscreen "$@"; }
inside chown author: /home/author/newsletter.html
echo "Using kvo as an ordinary user ..."
as_author kvo --version
as_author kvo save /home/author/newsletter.html
grep -q 'KVO CONTROL STARTSPAN' "$root/home/author/newsletter.html" || fail "The page was not saved"
as_author kvo check /home/author/newsletter.html
! as_author test -w /usr/bin/kvo || fail "An ordinary user can write to the program"
as_author kvo-editor --version
as_author bash -c '. /usr/share/bash-completion/completions/kvo && complete -p kvo' >/dev/null
zcat "$root/usr/share/man/man1/kvo.1.gz" | grep -q '^\.SH COMMANDS' || fail "No manual page"
[ -s "$root/usr/share/man/de/man1/kvo.1.gz" ] || fail "No German manual page"
[ -s "$root/usr/share/man/man1/kvo-editor.1.gz" ] || fail "No manual page of the editor"

# For a double click, the desktop finds the type of a page by its name, and the editor by that type.
grep -q ':text/x-kvo-page:\*\.kvo\.html$' "$root/usr/share/mime/globs2" || fail "The type of a page is unknown"
grep -q '^text/x-kvo-page=kvo-editor.desktop' "$root/usr/share/applications/mimeinfo.cache" ||
  fail "The editor is not registered for the type"
as_author sh -c 'command -v $(sed -n "s/^Exec=\([^ ]*\).*/\1/p" /usr/share/applications/kvo-editor.desktop)' >/dev/null ||
  fail "The program that the desktop starts is missing"

# The libraries were built by this machine's compiler as well.
echo "Building against libkvo-dev ..."
rm -rf build/packages-embedding
tests/embedding/embed.sh "$PWD/build/packages-embedding" "$PWD/build/packages/bin/kvo" \
  cmake -G Ninja -DCMAKE_PREFIX_PATH="$root/usr" -DCMAKE_BUILD_TYPE=Release

echo "Removing ..."
apt purge -y "${names[@]}"
files >build/packages.after
diff build/packages.before build/packages.after || fail "Removing the packages left or removed other files; see above"
rm -rf "$root/packages"
echo "The packages can be installed, used and removed."
