#!/usr/bin/env bash
# gallery.sh TINTWERK [FOLDER]: looks at a gallery in Chromium; screenshots go into FOLDER.
set -euo pipefail
python3 "$(dirname "${BASH_SOURCE[0]}")/gallery.py" "$@"
