#!/bin/sh
# Stand-in for the master's remote-key script in the demo rack: no set-top box is reached,
# the answer only names what was asked (key, action digit 0 up / 1 down / 2 press, box address).
printf 'demo box %s got key %s with action %s\n' "$3" "$1" "$2" > "$(dirname "$0")/remotekey_result"
exit 0
