#!/usr/bin/env bash
# Runs the README's two commands the way a new user would: each in its own fresh, minimal
# Debian 12 root (debootstrap --variant=minbase, plus git and ca-certificates), on a clean clone
# of this repository's main branch, as root with CI=true and no standard input. CI's machine
# already has every package, so only this check sees a missing install step.
#
#   scripts/check-fresh-machine.sh            both commands, then the packages
#   scripts/check-fresh-machine.sh run        only scripts/run.sh (or: test, packages)
#
# "packages" installs the Debian packages that the test command built (its root's
# build/linux/packages, kept in build/fresh-machine/packages) into another fresh root with
# apt-get install ./<package>.deb, which brings in their dependencies from Debian, and runs
# "vek demo" and "python3 -c 'import vek'" there.
#
# Needs root (debootstrap, chroot, mounts) and the network to Debian's packages; installs
# debootstrap and git on this machine when they are missing. The minimal root is made once and
# kept in build/fresh-machine/pristine; every command gets a new copy of it. Logs go to
# build/fresh-machine/<command>.log. Exit status: 0 when every command passed.
set -euo pipefail
cd "$(dirname "$0")/.."
repo=$PWD
work=$repo/build/fresh-machine
pristine=$work/pristine
root=$work/root
debs=$work/packages
[ $# -gt 0 ] || set -- run test packages
commands=("$@")

if [ "$(id -u)" -ne 0 ]; then
  echo "check-fresh-machine: run as root (it uses debootstrap, chroot and mounts)" >&2
  exit 2
fi
for tool in debootstrap git; do
  command -v "$tool" >/dev/null || DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "$tool" >/dev/null
done

# The Debian mirror this machine itself uses, so the fresh root reaches the same packages.
host_mirror() {
  local uri
  uri=$(awk '/^URIs:/ {uri=$2} /^Suites:/ && / bookworm( |$)/ {print uri; exit}' \
          /etc/apt/sources.list.d/*.sources 2>/dev/null || true)
  [ -n "$uri" ] || uri=$(awk '$1 == "deb" && $3 == "bookworm" {print $2; exit}' /etc/apt/sources.list 2>/dev/null || true)
  echo "$uri"
}

make_pristine() {
  [ -f "$pristine/.complete" ] && return 0
  local mirror
  mirror=$(host_mirror)
  [ -n "$mirror" ] || { echo "check-fresh-machine: no bookworm mirror in this machine's apt sources" >&2; exit 2; }
  echo "Making a minimal bookworm root in $pristine (once)"
  rm -rf "$pristine"
  mkdir -p "$work"
  debootstrap --variant=minbase --include=git,ca-certificates bookworm "$pristine" "$mirror" >"$work/debootstrap.log" 2>&1 ||
    { tail -20 "$work/debootstrap.log"; exit 2; }
  # The same package sources and fetch settings as this machine (updates and security included).
  if compgen -G "/etc/apt/sources.list.d/*.sources" >/dev/null; then
    cp /etc/apt/sources.list.d/*.sources "$pristine/etc/apt/sources.list.d/"
    rm -f "$pristine/etc/apt/sources.list"
  fi
  for conf in /etc/apt/apt.conf.d/*; do
    # Only plain fetch settings: hooks of this machine's own tools would fail in the root.
    grep -v -E '^\s*(//|#|$)' "$conf" | grep -q -v -E '^\s*Acquire::' || cp "$conf" "$pristine/etc/apt/apt.conf.d/"
  done
  touch "$pristine/.complete"
}

unmount_root() {
  for mount_point in dev/pts dev/shm dev proc sys; do
    mountpoint -q "$root/$mount_point" && umount -l "$root/$mount_point" || true
  done
}
trap unmount_root EXIT

# A new copy of the pristine root with a clean clone of main in /root/vek.
fresh_root() {
  unmount_root
  rm -rf "$root"
  cp -a "$pristine" "$root"
  cp /etc/resolv.conf "$root/etc/resolv.conf"
  git clone --quiet --branch main "$repo" "$root/root/vek"
  mount -t proc proc "$root/proc"
  mount -t sysfs sysfs "$root/sys"
  mount --bind /dev "$root/dev"
  mount --bind /dev/pts "$root/dev/pts"
  mkdir -p "$root/dev/shm"
  mount -t tmpfs tmpfs "$root/dev/shm"
}

in_root() {
  chroot "$root" /usr/bin/env -i CI=true HOME=/root LANG=C.UTF-8 \
    PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin bash -c "$1" </dev/null
}

make_pristine
failed=0
summary=()
for command in "${commands[@]}"; do
  case $command in
    run | test | packages) ;;
    *) echo "check-fresh-machine: unknown command '$command' (run, test or packages)" >&2; exit 2 ;;
  esac
  if [ "$command" = packages ] && ! compgen -G "$debs/*.deb" >/dev/null; then
    line="packages: none in ${debs#"$repo"/} (run the test command first)"
    echo "$line"
    summary+=("$line")
    failed=1
    continue
  fi
  fresh_root
  log=$work/$command.log
  start=$(date +%s)
  status=0
  if [ "$command" = packages ]; then
    label=packages
    echo "=== the Debian packages on a fresh root (log: ${log#"$repo"/}) ==="
    mkdir -p "$root/tmp/vek-packages"
    cp "$debs"/*.deb "$root/tmp/vek-packages/"
    in_root "cd /tmp/vek-packages && apt-get update -qq &&
             DEBIAN_FRONTEND=noninteractive apt-get install -y -q ./*.deb && cd /tmp &&
             vek demo /tmp/vek-demo && python3 -c 'import vek; print(\"import vek:\", vek.__version__)'" \
      >"$log" 2>&1 || status=$?
  else
    label=scripts/$command.sh
    echo "=== $label on a fresh root (log: ${log#"$repo"/}) ==="
    in_root "cd /root/vek && $label" >"$log" 2>&1 || status=$?
  fi
  minutes=$(( ($(date +%s) - start + 30) / 60 ))
  line="$label: exit status $status, about $minutes min"
  [ "$command" != packages ] || line="$line; installed $(cd "$debs" && echo *.deb), then ran vek demo and import vek"
  if [ "$command" = test ]; then
    # The packages the test command built, for the packages command; none after a failed run.
    rm -rf "$debs"
    if [ "$status" -eq 0 ]; then
      mkdir -p "$debs"
      cp "$root"/root/vek/build/linux/packages/*.deb "$debs/" || { line="$line; no packages built"; status=1; }
    fi
  fi
  if [ "$command" = run ]; then
    # The first command must not bring in the Windows cross-build or its test runners.
    extra=$(in_root "dpkg-query -W -f='\${Package}\n' 2>/dev/null" | grep -E '^(wine|mingw|g\+\+-mingw|xvfb|xauth)' || true)
    if [ -n "$extra" ]; then
      line="$line; installed test-only packages: $(echo "$extra" | tr '\n' ' ')"
      status=1
    else
      line="$line; no Wine, mingw-w64 or Xvfb package installed"
    fi
  fi
  [ "$status" -eq 0 ] || { failed=1; tail -30 "$log"; }
  echo "$line"
  summary+=("$line")
done
unmount_root

echo "=== summary ==="
printf '%s\n' "${summary[@]}"
exit $failed
