#!/usr/bin/env bash
# Installs the Python module alone and imports it from there.
#
#   python_installed_test.sh BUILD_FOLDER PYTHON
set -euo pipefail

[ $# -eq 2 ] || { echo 'usage: python_installed_test.sh BUILD_FOLDER PYTHON' >&2 && exit 2; }
scratch=$(mktemp --directory)
trap 'rm -rf -- "$scratch"' EXIT
cmake --install "$1" --prefix "$scratch" --component python >/dev/null
module=$(find "$scratch" -type d -name quorix)
for file in py.typed _native.pyi; do
  [ -e "$module/$file" ] || { echo "$file is not installed" && exit 1; }
done

cd -- "$scratch"
found=$(PYTHONPATH=${module%/quorix} "$2" -c '
import quorix
repeats = quorix.find_repeats("TTACACACACACGG")
print(quorix.__file__, repeats.starts.tolist(), repeats.units.tolist())')
[ "$found" = "$module/__init__.py [2] ['AC']" ] || { echo "the installed module says: $found" && exit 1; }
shown=$(nm --dynamic --defined-only "$module"/_native*.so | cut --delimiter=' ' --fields=3)
[ "$shown" = PyInit__native ] || { echo "the module shows $shown" && exit 1; }
# It needs nothing of ours beside it.
if ldd "$module"/_native*.so | grep --quiet quorix; then echo 'the module needs libquorix' && exit 1; fi
