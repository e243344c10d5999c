#!/usr/bin/env zsh
# What zsh offers behind command lines to a person who presses the tab key: for each "LINE:WORD|WORD", sorted.
#   zsh -f tamamla.zsh COMPLETIONS-FOLDER LINE...
emulate -R zsh
zmodload zsh/zpty || exit 77
folder=$1 work=$(mktemp -d)
trap 'zpty -d shell 2>/dev/null; rm -rf $work' EXIT
cat >$work/.zshrc <<EOF
PS1= PS2= RPS1=
unsetopt zle_bracketed_paste beep prompt_cr prompt_sp 2>/dev/null
fpath=(${(q)folder} \$fpath)
autoload -Uz compinit
compinit -u -d $work/dump
# Every word that is offered is written down.
compadd() {
  if [[ " \${@[1,(i)(-|--)]} " == *' -'[OAD]' '* ]]; then builtin compadd "\$@"; return; fi
  local -a offered
  builtin compadd -A offered "\$@"
  print -rl -- \$offered >>$work/words
  builtin compadd "\$@"
}
ended() { BUFFER=; print -r done >$work/done }
zle -N ended
bindkey '^I' complete-word
bindkey '^X^X' ended
print -r ready >$work/ready
EOF
# wait_for FILE: for some seconds, while what the shell writes is read away.
wait_for() {
  local turn text
  for turn in {1..300}; do
    zpty -rt shell text 2>/dev/null
    [[ -e $work/$1 ]] && return 0
    sleep 0.05
  done
  print -u2 "zsh: $1 gelmedi"
  return 1
}
export ZDOTDIR=$work
zpty -b shell zsh -i || exit 77
wait_for ready || exit 1
for line in "${@:2}"; do
  rm -f $work/words $work/done
  zpty -wn shell "$line"$'\t\030\030'
  wait_for done || exit 1
  words=()
  # Offered as they are typed; here as they are.
  [[ ! -e $work/words ]] || words=(${(Q)${(fou)"$(<$work/words)"}})
  print -r -- "$line:${(j:|:)words}"
done
