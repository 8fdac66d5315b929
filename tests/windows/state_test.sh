#!/bin/sh
# state_test.sh DLL FOLDER: calls from and into ARM and THUMB code, on processors
# before and since loads into pc change state.
set -eu
answers='attach 00000001
download 00000000
download 00000000
buy 00000000
detach 00000001
imports called 00000001'
for state in arm thumb; do
    arm-none-eabi-gcc -march=armv4t -m$state -mthumb-interwork -mfloat-abi=soft -O1 -Wall -Wextra -Werror -ffreestanding \
        -nostdlib -static -Wl,-Ttext=0x8000 "$(dirname "$0")/state_loader.c" -lgcc -o "$2/state_loader_$state"
    for processor in ti925t arm926 pxa255; do
        echo "$state on $processor"
        test "$(qemu-arm -cpu $processor "$2/state_loader_$state" "$1")" = "$answers"
    done
done
