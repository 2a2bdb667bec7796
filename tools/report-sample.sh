#!/usr/bin/env bash
# The first page of a realistic survey report, as a picture for the docs:
#   tools/report-sample.sh <build folder> <output folder>
# Needs pdftoppm (poppler-utils).
set -euo pipefail
tool=$(realpath "$1/tools/norvale-report-sample")
out=$(realpath -m "${2:-docs}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
QT_QPA_PLATFORM=offscreen "$tool" "$work/report.pdf"
pdftoppm -png -r 110 -f 1 -l 1 -singlefile "$work/report.pdf" "$out/report-page1"
echo "$out/report-page1.png"
