#!/usr/bin/env bash
# The whole story on one loopback port: a shop, a device with a key of its own, a
# catalogue page, one good, and three purchases of which the shop refuses two.
# Run by ./dev demo; with "ce" the calls go through the Windows CE image.
set -euo pipefail
cd "$(dirname "$0")/../.."
flavour=${1:-linux}
folder=$(mktemp -d)
shop=(build/linux/pavonix-shop --db "$folder/shop.db")
shop_process=

stop_everything() {
  [ -z "$shop_process" ] || kill "$shop_process" 2>/dev/null || true
  rm -rf "$folder"
}
trap stop_everything EXIT
trap 'exit 130' INT TERM

step() { printf '\n\033[1m%s\033[0m\n' "$*"; }

call() { # EXIT_CODE COMMAND ARGUMENT...: a call with the expected exit code, else the demonstration fails
  local code=0 client=(build/linux/pavonix)
  [ "$flavour" = linux ] || client=(python3 tools/demo/device_client.py)
  "${client[@]}" "$2" --profile "$folder/device.profile" --url "http://127.0.0.1/shop/$2" --port "$port" "${@:3}" || code=$?
  [ "$code" -eq "$1" ] || { echo "demo: expected exit code $1, got $code: ${*:2}" >&2; exit 1; }
}

step "1. A device gets its key pair and profile; the shop registers its public key"
device=(--serial DEMO-0001 --user-id 42 --public-key "$folder/device.public.xml")
build/linux/pavonix profile new --out "$folder/device.profile" "${device[@]}"
"${shop[@]}" device add "${device[@]}" --balance 1500

step "2. The shop opens on a free loopback port"
exec 3< <(exec "${shop[@]}" --port 0)
shop_process=$!
read -r opened <&3
echo "$opened"
port=${opened#*127.0.0.1:}
port=${port%%/*}

step "3. One page of the catalogue"
call 0 list --type 1 --sort 1 --max 3 --out "$folder/list.xml"
step "4. One good; a second call keeps the file"
call 0 good --type 1 --id 1 --out "$folder/good.xml"
call 1 good --type 1 --id 1 --out "$folder/good.xml"

step "5. A purchase"
call 0 buy --type 1 --id 1
step "6. A purchase from a device whose clock is five hours off: refused with 906"
TZ=DEMO+5 call 4 buy --type 1 --id 2
step "7. The first good once more: it is already owned"
call 4 buy --type 1 --id 1

step "8. The shop's database and log"
"${shop[@]}" purchases
kill "$shop_process"
cat <&3
