# shellcheck shell=bash
# Sourced by the other scripts. Selects a UTF-8 locale, which CPack and the tests need for non-ASCII
# paths. With --help, prints the comment at the top of the calling script and exits.
export USER_LC_ALL=${LC_ALL:-}  # menu_host and menu_screen choose their language from it
[ "$(locale charmap 2>/dev/null)" = UTF-8 ] || export LC_ALL=C.UTF-8
case "${1:-}" in
  -h | --help)
    cd "${OLDPWD:-.}" || exit
    sed -n '2,/^[^#]/s/^# \?//p' "$0"
    exit
    ;;
esac
