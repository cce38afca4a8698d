# SPDX-License-Identifier: Apache-2.0
# Completion of tarnix-uwb-params for bash. The command itself says which words may follow.

_tarnix_uwb_params() {
  local words
  words=$("$1" --complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
  local current=${COMP_WORDS[COMP_CWORD]}
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "${current#=}")
}

# Where no word may follow, a file may.
complete -o default -F _tarnix_uwb_params tarnix-uwb-params
