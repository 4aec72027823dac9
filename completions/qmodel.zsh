#compdef qmodel
# SPDX-License-Identifier: BSD-3-Clause
# Completion for zsh, with the words that bash's gives: both ask the program's help.

local -a words_of_help modules folders
local i folder file

case ${words[CURRENT-1]} in
  -p|--path|-o|--output) _files -/; return ;;
esac

if [[ ${words[CURRENT]} == -* ]]; then
  words_of_help=(${(f)"$(qmodel help 2>/dev/null | grep -oE '^ {2,6}-[-a-zA-Z0-9]+(, --[a-z0-9-]+)?' |
    tr -d ',' | tr -s ' ' '\n' | grep .)"})
  compadd -a words_of_help
  return
fi
if (( CURRENT == 2 )) || [[ ${words[CURRENT-1]} == help ]]; then
  words_of_help=(${(f)"$(qmodel help 2>/dev/null | sed -n 's/^  qmodel \([a-z][a-z]*\).*/\1/p' | sort -u)"})
  compadd -a words_of_help
  return
fi

for (( i = 2; i < CURRENT; i++ )); do
  case ${words[i]} in
    -p|--path) folders+=(${words[i+1]}) ;;
  esac
done
(( ${#folders} )) || folders=(.)
for folder in $folders; do
  for file in $folder/*.(yin|yang)(N:t:r); do
    modules+=(${file%%@*})
  done
done

case ${words[CURRENT-1]} in
  -m|--module|-u|--unload) compadd -a modules; return ;;
esac
case ${words[2]} in
  load|tree|compile|lint) compadd -a modules ;;
esac
_files
