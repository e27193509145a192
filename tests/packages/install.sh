#!/usr/bin/env bash
# Installs a build into a folder that it empties first, and sees that no header is missing there:
# install.sh BUILD PREFIX
set -euo pipefail
rm -rf -- "$2"
cmake --install "$1" --prefix "$2" >/dev/null
cd -- "$2/include"
missing=$(grep -rhoP '^#include <\Kkvarta16/[^>]+' kvarta16 | sort -u | while read -r header; do
    [[ -f $header ]] || echo "$header"
done)
if [[ -n $missing ]]; then
    echo "installed headers include what is not installed: $missing" >&2
    exit 1
fi
