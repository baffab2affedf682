# Types lines into an interactive zsh, completes each, and prints what has become of it.
# zsh -f complete.zsh COMPLETIONS LINE...     COMPLETIONS is a folder; ZDOTDIR one of the shell's own, empty at first.
zmodload zsh/zpty

cat >$ZDOTDIR/.zshrc <<'end'
PS1= PS2= RPS1=
fpath=($COMPLETIONS $fpath)
autoload -Uz compinit && compinit -D -u
zle-line-init() { print -r -- '<ready>' }
show() { print -r -- "<$BUFFER>" }
zle -N zle-line-init
zle -N show
bindkey '^I' complete-word
bindkey '^T' show
bindkey '^U' kill-whole-line
end

export COMPLETIONS=$1
zpty shell zsh -i
zpty -r shell ready '*<ready>*'
for typed in "${@:2}"; do
    zpty -w -n shell "$typed"$'\t\C-t\C-u'
    zpty -r shell line '*<tessera*>*'
    print -r -- "${${line##*<}%>*}"
done
zpty -d shell
