# Completion in fish: fish complete.fish MADE
set -g made (realpath $argv[1])
set -g failed 0
set folder (mktemp -d)
cd $folder
mkdir pictures
touch Vera.duf nose.obj
source $made/command-line/fish/vendor_completions.d/gantrel.fish
source $made/desktop/fish/vendor_completions.d/gantrel-desktop.fish

# What is offered for the end of the line, in order, with | between them.
function expect
    set offered (complete -C $argv[2] | string replace -r '\t.*' '' | sort | string join '|')
    if test "$offered" != "$argv[1]"
        echo "$argv[2]: expected \"$argv[1]\", got \"$offered\""
        set -g failed 1
    end
end
expect 'convert|convert-morphs' 'gantrel conv'
expect '--resolution' 'gantrel convert --reso'
expect 'base|subd' 'gantrel convert --resolution '
expect three-quarter 'gantrel render Vera.duf --view thr'
expect Vera.duf 'gantrel convert --source V'
expect pictures/ 'gantrel convert --content p'
expect clone= 'gantrel convert --base c'
expect set 'gantrel config se'
expect vendor 'gantrel config set v'
expect --plugins 'gantrel-desktop --pl'
rm -r $folder
exit $failed
