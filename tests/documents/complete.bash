# Completion in bash: bash complete.bash MADE
made=$1
export LC_ALL=C.UTF-8
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
mkdir pictures 'My Figures'
touch Vera.duf 'Old Vera.DUF' Vera.dsf nose.obj table.csv table.csv.gz notes.txt
. /usr/share/bash-completion/bash_completion
. "$made/command-line/bash-completion/completions/gantrel"
. "$made/desktop/bash-completion/completions/gantrel-desktop"
# Readline alone has these.
compopt() { :; }
failed=0

# expect OFFERED WORD...: what is offered for the last word, in order, with | between them
expect() {
    local expected=$1 offered
    shift
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMP_LINE="$*" COMPREPLY=()
    COMP_POINT=${#COMP_LINE}
    "_${1//-/_}"
    offered=$(printf '%s\n' "${COMPREPLY[@]}" | sort | paste -sd '|')
    [ "$offered" = "$expected" ] && return
    echo "$*: expected \"$expected\", got \"$offered\""
    failed=1
}
figures='My Figures|Old Vera.DUF|Vera.duf|pictures'

expect 'convert|convert-morphs' gantrel conv
expect '--verbose|--version' gantrel --v
expect 'set|show|unset' gantrel config ''
expect 'author|content|product|threads|vendor' gantrel config set ''
expect 'vendor' gantrel config --json unset v
expect '' gantrel nonsense --
expect '--accept-missing|--adjust-rig|--author' gantrel convert --a
expect 'base|subd' gantrel convert --resolution ''
expect 'subd' gantrel convert --source Vera.duf --resolution s
expect 'subd' gantrel convert --resolution=s
expect 'three-quarter' gantrel render Vera.duf --view thr
expect 'genesis9' gantrel make-figure --kind genesis9
expect 'full,body|full,full|full,head' gantrel convert --jobs full,
expect 'clone=|feminine=|height=|masculine=' gantrel convert --base ''
expect "$figures" gantrel convert --source ''
expect 'Vera.duf' gantrel convert --target Ver
expect 'My Figures|pictures' gantrel convert --content ''
expect 'My Figures|pictures' gantrel convert --content pictures ''
expect 'pictures' gantrel convert --content . p
expect '' gantrel convert --name ''
expect 'My Figures|Old Vera.DUF|Vera.dsf|Vera.duf|pictures' gantrel list-dials ''
expect 'nose.obj|notes.txt' gantrel batch no
expect 'table.csv|table.csv.gz' gantrel make-figure --weight-map head=t
expect '' gantrel make-figure --weight-map hea
expect '--plugins' gantrel-desktop --pl
expect 'My Figures|pictures' gantrel-desktop --content ''
expect 'Vera.dsf|Vera.duf' gantrel-desktop V
exit $failed
