#!/usr/bin/env bash
# The whole story on one loopback port: a shop, a device with a key of its own, a
# catalogue page, one good, and three purchases of which the shop refuses two.
# Run by ./dev demo; with "ce" the calls go through the Windows CE image.
set -euo pipefail
cd "$(dirname "$0")/../.."
flavour=${1:-linux}
shop=build/linux/pavonix-shop
folder=$(mktemp -d)
shop_process=

stop_everything() {
  [ -z "$shop_process" ] || kill "$shop_process" 2>/dev/null || true
  wait 2>/dev/null || true
  rm -rf "$folder"
}
trap stop_everything EXIT
trap 'exit 130' INT TERM

step() { printf '\n\033[1m%s\033[0m\n' "$*"; }

client() { # the command-line client, or its stand-in that drives the device's image
  if [ "$flavour" = ce ]; then
    python3 tools/demo/device_client.py "$@"
  else
    build/linux/pavonix "$@"
  fi
}

expect() { # EXIT_CODE COMMAND...: the demo fails when its story does not come true
  local expected=$1 code=0
  shift
  "$@" || code=$?
  [ "$code" -eq "$expected" ] || { echo "demo: expected exit code $expected, got $code: $*" >&2; exit 1; }
}

step "1. A device gets its key pair and profile; the shop registers its public key"
build/linux/pavonix profile new --out "$folder/device.profile" --public-key "$folder/device.public.xml" \
  --serial DEMO-0001 --user-id 42
"$shop" --db "$folder/shop.db" device add --serial DEMO-0001 --user-id 42 \
  --public-key "$folder/device.public.xml" --balance 1500

step "2. The shop opens on a free loopback port"
"$shop" --db "$folder/shop.db" --port 0 >"$folder/shop.log" 2>&1 &
shop_process=$!
for _ in $(seq 100); do
  port=$(sed -n 's|^listening on http://127.0.0.1:\([0-9]*\)/.*|\1|p' "$folder/shop.log")
  [ -n "$port" ] && break
  kill -0 "$shop_process" 2>/dev/null || { cat "$folder/shop.log" >&2; exit 1; }
  sleep 0.1
done
[ -n "$port" ] || { echo "demo: the shop did not open" >&2; exit 1; }
head -n 1 "$folder/shop.log"
base=http://127.0.0.1:$port/shop
common=(--profile "$folder/device.profile" --port "$port")

step "3. One page of the catalogue"
expect 0 client list "${common[@]}" --url "$base/list" --type 1 --sort 1 --max 3 --out "$folder/list.xml"
step "4. One good; a second call keeps the file"
expect 0 client good "${common[@]}" --url "$base/good" --type 1 --id 1 --out "$folder/good.xml"
expect 1 client good "${common[@]}" --url "$base/good" --type 1 --id 1 --out "$folder/good.xml"

step "5. A purchase"
expect 0 client buy "${common[@]}" --url "$base/buy" --type 1 --id 1
step "6. A purchase from a device whose clock is five hours off: refused with 906"
TZ=DEMO+5 expect 4 client buy "${common[@]}" --url "$base/buy" --type 1 --id 2
step "7. The first good once more: it is already owned"
expect 4 client buy "${common[@]}" --url "$base/buy" --type 1 --id 1

step "8. What the shop has in its database, and what it logged"
"$shop" --db "$folder/shop.db" purchases
tail -n +2 "$folder/shop.log"
