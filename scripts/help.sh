# shellcheck shell=bash
# Sourced by the other scripts: with --help, prints the comment at the top of the script and exits.
case "${1:-}" in
  -h | --help)
    cd "${OLDPWD:-.}" || exit
    sed -n '2,/^[^#]/s/^# \?//p' "$0"
    exit
    ;;
esac
