# shellcheck shell=bash
# Bare Debian 12 systems in folders, for scripts that check what a new user meets. Sourced by them.
# They need root, debootstrap and a network. The first system is kept as build-root/debian12.tar.

# Ends the script unless it can make such systems.
require_root() {
  if [ "$(id -u)" -ne 0 ] || ! command -v debootstrap >/dev/null; then
    echo "${0##*/}: root and debootstrap are needed (scripts/setup.sh package)" >&2
    exit 1
  fi
}

# make_root FOLDER: a bare system there, without what apt recommends, as in a container.
make_root() {
  local kept
  kept=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../build-root/debian12.tar
  mkdir --parents -- "$1" "${kept%/*}"
  if [ ! -f "$kept" ]; then
    echo "== A bare Debian 12" >&2
    debootstrap --variant=minbase bookworm "$1" http://deb.debian.org/debian >&2
    tar --create --file="$kept.new" --directory="$1" .
    mv -- "$kept.new" "$kept"
    return
  fi
  tar --extract --file="$kept" --directory="$1"
}

# in_root FOLDER USER WORD...: runs a command in the system, with a network. What is mounted for it goes
# with the command.
in_root() {
  cp -- /etc/resolv.conf "$1/etc/resolv.conf"
  # Whom this machine trusts beside the common authorities, such as a proxy, counts once ca-certificates is
  # installed there.
  mkdir --parents -- "$1/usr/local/share/ca-certificates"
  cp -R -- /usr/local/share/ca-certificates "$1/usr/local/share"
  # shellcheck disable=SC2016  # the inner shell expands
  unshare --mount --propagation private bash -ec '
    root=$1 user=$2 home=/root
    shift 2
    if [ "$user" != root ]; then home=/home/$user; fi
    mount -t proc proc "$root/proc"
    mount -t tmpfs tmpfs "$root/dev"
    for name in null zero full random urandom tty; do
      : >"$root/dev/$name"
      mount --bind "/dev/$name" "$root/dev/$name"
    done
    ln -s /proc/self/fd "$root/dev/fd"
    for number in 0 1 2; do
      ln -s "/proc/self/fd/$number" "$root/dev/$(printf "stdin\nstdout\nstderr\n" | sed -n "$((number + 1))p")"
    done
    mkdir "$root/dev/pts" "$root/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts"
    ln -s pts/ptmx "$root/dev/ptmx"
    mount -t tmpfs -o mode=1777 tmpfs "$root/dev/shm"
    exec env --ignore-environment HOME="$home" TERM=dumb LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
      PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
      chroot --userspec="$user" "$root" "$@"
  ' in_root "$@"
}
