# SPDX-License-Identifier: BSD-3-Clause
# Completion for bash. Commands and options are those that the program's own help names,
# so that what it learns is completed at once.

_qmodel_options() {
  qmodel help 2>/dev/null | grep -oE '^ {2,6}-[-a-zA-Z0-9]+(, --[a-z0-9-]+)?' | tr -d ','
}

_qmodel_commands() {
  qmodel help 2>/dev/null | sed -n 's/^  qmodel \([a-z][a-z]*\).*/\1/p' | sort -u
}

# Names of modules in the folders that -p has named so far, else in this one.
_qmodel_modules() {
  local -a folders=()
  local i file
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
    -p | --path) folders+=("${COMP_WORDS[i + 1]}") ;;
    esac
  done
  [ ${#folders[@]} -gt 0 ] || folders=(.)
  for i in "${folders[@]}"; do
    for file in "$i"/*.yin "$i"/*.yang; do
      [ -f "$file" ] || continue
      file=${file##*/}
      file=${file%.*}
      printf '%s\n' "${file%%@*}"
    done
  done | sort -u
}

_qmodel() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()
  case $previous in
  -p | --path | -o | --output)
    mapfile -t COMPREPLY < <(compgen -d -- "$word")
    return
    ;;
  -m | --module | -u | --unload)
    mapfile -t COMPREPLY < <(compgen -W "$(_qmodel_modules)" -- "$word")
    return
    ;;
  esac
  if [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(_qmodel_options)" -- "$word")
  elif [ "$COMP_CWORD" -eq 1 ] || [[ $previous == help ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(_qmodel_commands)" -- "$word")
  else
    case ${COMP_WORDS[1]} in
    load | tree | compile | lint)
      mapfile -t COMPREPLY < <(compgen -W "$(_qmodel_modules)" -- "$word"; compgen -f -- "$word")
      ;;
    *) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    esac
  fi
}

complete -o filenames -F _qmodel qmodel
