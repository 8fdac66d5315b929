# A newcomer's first run: nothing but Debian's smallest system and git, entered by chroot.
#: fresh [12|13]             both commands on a bare Debian 12 and 13 (or one of them), from the last commit, as root;
#:                           ./dev release asks for it
clean_up() {
  if [ -n "${inside:-}" ]; then
    kill -KILL "$inside" 2>/dev/null || true
    wait
  fi
  rm -rf --one-file-system "$root"
}

fresh() { # RELEASE NAME
  local log=$PWD/build/fresh/$2.log started=$SECONDS
  inside='' root=$PWD/build/fresh/$2
  rm -rf --one-file-system "$root"
  trap clean_up EXIT
  mkdir -p "$root"
  unshare --mount debootstrap --variant=minbase --include=git "$2" "$root" \
    ${DEBIAN_MIRROR:+"$DEBIAN_MIRROR"} >"$log" 2>&1 || { tail -n 20 "$log"; return 1; }
  git clone --quiet --no-hardlinks "$PWD" "$root/root/pavonix"
  git -C "$root/root/pavonix" -c advice.detachedHead=false checkout --quiet "$commit"
  echo "Debian $1: a bare system in $((SECONDS - started)) s; output also in ${log#"$PWD"/}"
  # Mounts and processes are in namespaces of their own, so that none outlives the run.
  unshare --mount --pid --fork --kill-child bash -euc '
    mount -t proc proc "$1/proc"
    mount --rbind /dev "$1/dev"
    exec chroot "$1" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root TERM=dumb bash -ec "
      cd /root/pavonix
      for command in demo test; do
        started=\$SECONDS
        echo \"== ./dev \$command\"
        ./dev \$command
        echo \"== ./dev \$command took \$(((SECONDS - started) / 60)) min \$(((SECONDS - started) % 60)) s\"
      done"' bash "$root" > >(tee -a "$log") 2>&1 &
  inside=$!
  wait "$inside"
  clean_up
  trap - EXIT
  { date --iso-8601=seconds; grep -a '^== .* took' "$log"; grep -a ' passed, ' "$log" | tail -n 1; } >"build/fresh/$commit.$1"
}

[ "$(id -u)" -eq 0 ] || { echo "./dev fresh makes a system and enters it, which needs root" >&2; exit 1; }
install_missing "${fresh_packages[@]}"
commit=$(git rev-parse HEAD)
[ -z "$(git status --porcelain)" ] || echo "note: changes that are not committed are not part of this"
mkdir -p build/fresh
case ${1:-both} in
  12) fresh 12 bookworm ;;
  13) fresh 13 trixie ;;
  both) fresh 12 bookworm; fresh 13 trixie ;;
  *) refuse "$1" 12 13 ;;
esac
