#!/usr/bin/env bash
# Installs what is missing, builds the tresk command and the Python module, makes `import tresk`
# work (Debian's /usr/bin/python3 and, when it is the same Python version, the python3 first on
# the PATH), and names the knot of a bundled example chain (an open knotted polymer made by
# examples/make_chains.py).
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-deps.sh
JOBS="$(nproc 2>/dev/null || echo 2)"
cmake --preset dev >/dev/null
cmake --build --preset dev -j "$JOBS" --target tresk_cli tresk_python

# A .pth file in a Python's own site folder puts the built module (and, for a Python that is
# not Debian's, Debian's numpy) on its path. The module is built for /usr/bin/python3's version.
module_dir="$(pwd)/build/dev/python"
add_path() { # python, extra lines
  local py="$1" site
  site="$("$py" -c 'import site, sys; print(site.getusersitepackages() if sys.prefix == "/usr" else site.getsitepackages()[0])')"
  mkdir -p "$site"
  printf '%s\n' "$module_dir" "${@:2}" >"$site/tresk-dev.pth"
  echo "quickstart: $py imports tresk from $module_dir (via $site/tresk-dev.pth)" >&2
}
add_path /usr/bin/python3
other="$(command -v python3 || true)"
version() { "$1" -c 'import sys; print("%d.%d" % sys.version_info[:2])'; }
if [ -n "$other" ] && [ "$(readlink -f "$other")" != "$(readlink -f /usr/bin/python3)" ]; then
  if [ "$(version "$other")" = "$(version /usr/bin/python3)" ]; then
    add_path "$other" /usr/lib/python3/dist-packages
  else
    echo "quickstart: $other is Python $(version "$other"); use /usr/bin/python3 for tresk" >&2
  fi
fi
build/dev/tresk knot examples/chains/trefoil_open.xyz --seed 1 "$@"
