#!/bin/sh
# Runs the programs of docs/linking.md against a simulated camera, in a namespace of its own.
#
#     linking.sh ZVSIM FOLDER      with the programs that code_blocks.sh left in the folder
set -u
zvsim=$1
poll=$2/linking.md-1
write=$2/linking.md-2
tested=$poll
. "$(dirname "$0")/../support/program.sh"
camera=
trap 'kill $camera; rm -rf "$folder"' EXIT

start_camera --fault refuse:link=camera,group=7,skip=1
try 0 '"117":.*\},"settings":\{"2":'
tested=$write
try 1 '^ZV_ERR_INVALID_PARAM, ' 59 5
try 0 '^setting 59 has option 4$' 59 4
try 1 '^ZV_ERR_NAK, the camera.s code is 1$' 59 6
[ "$failures" -eq 0 ]
