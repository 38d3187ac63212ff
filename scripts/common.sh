# Shared by the scripts: the checkout's folder, and how each of them speaks.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '%s\n' "$*"; }

configure() {  # configure PRESET [OPTION...]
    local log
    log=$(mktemp)
    if ! cmake --preset "$@" >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}
