#!/bin/sh
# Carries stores between this system's tool and the one for Windows, there and back: each does with them what the
# other does, and tells the same of them.
#   carry.sh TOOL WINDOWS_TOOL SCRATCH
set -eu
scratch=$3
source=$(cd "$(dirname "$0")/../.." && pwd)
export LC_ALL=C.UTF-8 TZ=UTC0

rm -rf "$scratch"
mkdir -p "$scratch/here" "$scratch/windows"
printf '#!/bin/sh\nexec "%s" "$@"\n' "$1" >"$scratch/here/tessera"
printf '#!/bin/sh\nexec "%s" "%s" "$@"\n' "$source/cmake/windows/under-wine" "$2" >"$scratch/windows/tessera"
chmod +x "$scratch"/*/tessera

# on SYSTEM COMMAND...
on() (
    PATH=$scratch/$1:$PATH
    shift
    "$@"
)

# All that the tool tells of the store, which is whole.
tell() {
    for what in list 'list --prefix 김' 'list --group 친구' 'search ㄱㅁ' 'number 2345' 'identify 01023456789' \
        'speed-dial list' 'group list' 'category list' 'call list'; do
        echo "$what"
        # The words of each are separate arguments.
        # shellcheck disable=SC2086
        tessera --json $what
    done
    tessera export --format vcard
    tessera export --format csv
    tessera check --full
}

# change NAME: puts somebody and something of that name into the store, and changes what is there.
change() {
    tessera add --name "$1" --mobile 010-7777-8888 --group '여행 "동호회"' --birthday 1990-03-05
    tessera edit "name:$1" --email "$1@example.com"
    tessera speed-dial set 7 "name:$1" mobile
    tessera group rename 친구 "$1 친구"
    tessera group rename "$1 친구" 친구
    tessera group ring 친구 --call "$1.mp3"
    tessera call log 010-7777-8888 --duration 65
    tessera delete "name:김민수"
    tessera add --name 김민수 --mobile 010-2345-6789
}

# expect_same WHAT: what both tell, in the files of their names
expect_same() {
    diff -u "$scratch/here.txt" "$scratch/windows.txt" || {
        echo "$1: the tool for Windows tells otherwise"
        exit 1
    }
}

# expect_both_tell_the_same WHAT
expect_both_tell_the_same() {
    on here tell >"$scratch/here.txt"
    on windows tell >"$scratch/windows.txt"
    expect_same "$1"
}

# One folder serves both, so that paths are no difference; times are one.
store_folder="$scratch/김민수의 전화"
export TESSERA_STORE="$store_folder/전화번호부 1.db"
for system in here windows; do
    mkdir "$store_folder"
    on $system "$source/examples/tour.sh" >"$scratch/tour.txt"
    sed 's/[0-9]*-[0-9]*-[0-9]* [0-9]*:[0-9]*:[0-9]*/TIME/' "$scratch/tour.txt" >"$scratch/$system.txt"
    mv "$store_folder" "$scratch/store of $system"
done
expect_same examples/tour.sh

for maker in here windows; do
    mv "$scratch/store of $maker" "$store_folder"
    expect_both_tell_the_same "a store made $maker"
    on windows change '바람의 나라'
    expect_both_tell_the_same "a store made $maker and changed there"
    on here change "O'Brien 😀"
    expect_both_tell_the_same "a store made $maker, changed there and here"
    rm -r "$store_folder"
done
