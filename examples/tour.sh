#!/bin/sh
# What the tool does, one operation after the other, each command shown with what it prints. The store is the one that
# TESSERA_STORE names, which the first command makes.
set -eu
cd "$(dirname "$0")/.."

show() {
    printf '\n$ %s\n' "$1"
    eval "$1"
}

show 'tessera import examples/contacts.csv'
show 'tessera list | head'
show 'tessera identify "+82 10-2345-6789"'
show 'tessera search 김민수'
show 'tessera search ㄱㅁ'
show 'tessera number 2345'

show 'tessera show 01023456789'
show 'tessera speed-dial set 1 010-2345-6789 mobile'
show 'tessera speed-dial list | cat'
show 'tessera speed-dial call 1'
show 'tessera group ring 친구 --call friends.mp3'
show 'tessera group list'
show 'tessera call log 010-2345-6789 --duration 65'
show 'tessera call log 02-555-0199 --type missed'
show 'tessera call list'
show 'tessera backup "$TESSERA_STORE.backup"'
show 'tessera --store "$TESSERA_STORE.backup" check --full'
