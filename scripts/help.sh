# shellcheck shell=bash
# Sourced by the scripts here: given --help, prints the comment at the script's head, and ends it.
case "${1:-}" in
  -h | --help)
    cd "${OLDPWD:-.}" || exit
    sed -n '2,/^[^#]/s/^# \?//p' "$0"
    exit
    ;;
esac
