#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes the pictures that README.md opens with: readme_pictures.sh PROGRAMS. They are in the repository, so that
# the page shows them anywhere.
set -euo pipefail
programs=$(realpath "$1")
cd "$(dirname "$0")/../../docs/images"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
ovra() { "$programs/ovra" "$@" >/dev/null; }

# Pictures of one size beside one another: beside NAME WIDTH HEIGHT PICTURE...
beside() {
  local name=$1 width=$2 height=$3 x=0 gap=4
  shift 3
  ovra canvas --size "$(($# * (width + gap) - gap))x$height" --offset 0,0 --fill 255 "$1" "$work/strip.png"
  for picture in "${@:2}"; do
    x=$((x + width + gap))
    ovra compose --overlay "$picture" --at "$x,0" "$work/strip.png" "$work/longer.png"
    mv "$work/longer.png" "$work/strip.png"
  done
  ovra rotate --mode none --quality 88 "$work/strip.png" "$name"
}

"$programs/ovra_scene" --back-light --width 1200 --height 800 "$work/back-light.png"
ovra tone --shadows 1.2 "$work/back-light.png" "$work/tone.png"
for name in back-light tone; do
  ovra resize --width 420 "$work/$name.png" "$work/small-$name.png"
done
beside light.jpg 420 280 "$work/small-back-light.png" "$work/small-tone.png"

"$programs/ovra_scene" --width 1200 --height 900 "$work/scene.png"
part=(resize --crop 330,330,208,200)
ovra "${part[@]}" "$work/scene.png" "$work/before.png"
for command in "sharpen --amount 2.5" clarity softfocus; do
  # shellcheck disable=SC2086  # words of a command
  ovra $command "$work/scene.png" "$work/whole.png"
  ovra "${part[@]}" "$work/whole.png" "$work/${command// /_}.png"
done
beside detail.jpg 208 200 "$work"/{before,sharpen_--amount_2.5,clarity,softfocus}.png

"$programs/ovra_scene" --zone-plate --width 1664 --height 1664 "$work/rings.png"
ovra resize --scale 0.125 "$work/rings.png" "$work/rings-small.png"
ovra resize --crop 728,728,208,208 "$work/rings.png" "$work/rings-part.png"
ovra straighten --angle 12 "$work/scene.png" "$work/straight.png"
ovra resize --width 208 --height 208 "$work/straight.png" "$work/straight-small.png"
beside reduced.jpg 208 208 "$work"/rings-{part,small}.png "$work/straight-small.png"
