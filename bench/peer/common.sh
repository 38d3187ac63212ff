# Shared by the scripts of this folder: the Java engine in the version that reads a written form.
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/common.sh"

for tool in java mvn; do
    command -v "$tool" >/dev/null || { say "$tool is not installed"; exit 2; }
done
classic_mark='xmlns="http://jasperreports.sourceforge.net/jasperreports"'

peer() {  # peer FORM ARGUMENT...: form is "current" or "classic"
    mvn -q -B -Dstyle.color=never -Dform="$1" -f bench/peer/layout/pom.xml package >&2
    java -Djava.awt.headless=true -cp "build/peer-$1/classes:build/peer-$1/lib/*" LayoutPages "${@:2}"
}

fill_cases() {  # fill_cases DEFINITION...: writes NAME.xml beside each NAME.jrxml
    local classic current
    readarray -t classic < <(grep -l "$classic_mark" "$@")
    readarray -t current < <(grep -L "$classic_mark" "$@")
    if ((${#current[@]})); then peer current "${current[@]}"; fi
    if ((${#classic[@]})); then peer classic "${classic[@]}"; fi
}
