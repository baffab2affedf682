# Types lines into an interactive shell, completes each, and prints what has become of it.
# zsh -f complete.zsh bash|zsh COMPLETIONS LINE...     COMPLETIONS is the folder of zsh's, or the file of bash's; ZDOTDIR
# is a folder of the shell's own, empty at first.
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

cat >$ZDOTDIR/.bashrc <<'end'
PS1='<ready>' PS2=
source "$COMPLETIONS"
show() { printf '<%s>\n' "$READLINE_LINE"; }
bind 'set enable-bracketed-paste off'
bind '"\C-u": kill-whole-line'
bind -x '"\C-t": show'
end

shell=$1
export COMPLETIONS=$2
case $shell in
    zsh) zpty shell zsh -i ;;
    bash) zpty shell bash --noprofile --rcfile $ZDOTDIR/.bashrc -i ;;
esac
zpty -r shell ready '*<ready>*'
for typed in "${@:3}"; do
    zpty -w -n shell "$typed"$'\t\C-t\C-u'
    zpty -r shell line '*<tessera*>*'
    print -r -- "${${line##*<}%>*}"
done
zpty -d shell
