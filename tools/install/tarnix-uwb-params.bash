# SPDX-License-Identifier: Apache-2.0
# Completion of tarnix-uwb-params for bash. All words come from the command's own help, so none is
# ever stale.

# The words that may follow: $1 is the command, $2 the subcommand or nothing, $3 the word before.
_tarnix_uwb_params_words() {
  local help
  help=$("$1" ${2:+"$2"} --help 2>/dev/null) || return
  local values
  values=$(sed -n "s/^  .*${3:-none} TEXT[^{]*{\([^}]*\)}.*/\1/p" <<<"$help")
  if [ "${3#--}" != "${3}" ] && [ -n "$values" ]; then
    tr ',' '\n' <<<"$values"
    return
  fi
  grep -oE '^  (-[a-z],)?--[a-z-]+' <<<"$help" | grep -oE -e '--[a-z-]+'
  [ -n "$2" ] || sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p' <<<"$help"
}

_tarnix_uwb_params() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} subcommand=
  [ "$COMP_CWORD" -gt 1 ] && subcommand=${COMP_WORDS[1]}
  local words
  words=$(_tarnix_uwb_params_words "${COMP_WORDS[0]}" "$subcommand" "$previous")
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

# Where none of the words fits, a file may.
complete -o default -F _tarnix_uwb_params tarnix-uwb-params
