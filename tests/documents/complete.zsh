# Completion in zsh, in a shell of its own with a terminal: zsh complete.zsh MADE
zmodload zsh/zpty || exit 1
made=${1:A}
export LC_ALL=C.UTF-8
folder=$(mktemp -d)
trap 'rm -rf $folder' EXIT
cd $folder
mkdir pictures
touch Vera.duf nose.obj
failed=0

# offer LINE: the words that its end could become; those that zsh would insert are printed in its place
offer() {
    zpty shell zsh -f -i
    zpty -w shell "PS1=; cd $folder; fpath=($made/command-line/zsh/site-functions $made/desktop/zsh/site-functions \$fpath)"
    zpty -w shell 'autoload -Uz compinit && compinit -u -D'
    # What is added to the list of matches goes to a file beside it.
    zpty -w shell 'compadd() { local -a found; builtin compadd -O found "$@"; print -l -- $found >>'$folder'.offered; builtin compadd "$@" }'
    # Not before the line editor reads: until then the terminal itself takes a control character for its own.
    zpty -w shell 'zle-line-init() { print -n "rea""dy" }; zle -N zle-line-init; bindkey "^I" complete-word'
    local said
    zpty -r shell said '*ready*'
    : >$folder.offered
    zpty -w -n shell "$1"$'\t'
    zpty -w shell $'\x15'"echo do\"\"ne"
    zpty -r shell said '*done*'
    zpty -d shell
    grep . $folder.offered | sort -u | paste -sd '|'
    rm -f $folder.offered
}
expect() {
    local offered=$(offer "$2")
    [[ $offered == "$1" ]] && return
    echo "$2: expected \"$1\", got \"$offered\""
    failed=1
}
expect 'convert|convert-morphs' 'gantrel conv'
expect 'base|subd' 'gantrel convert --resolution '
expect 'three-quarter' 'gantrel render Vera.duf --view thr'
expect 'Vera.duf' 'gantrel convert --source V'
expect 'pictures' 'gantrel convert --content p'
expect 'vendor' 'gantrel config set v'
expect 'clone' 'gantrel convert --base cl'
expect '--plugins' 'gantrel-desktop --pl'
exit $failed
