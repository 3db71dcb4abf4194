# Leads from the tools of Quav Workbench, and from no other program of their names, to their
# completions. These stand with a function, since fish reads such files when it first calls them.
status is-interactive; or exit
for tool in mac shntool shorten ttaenc
    complete --path "*/quav/tools/$tool" -f -a "(
        __quav_"$tool"_at
        complete -C 'quav-$tool '(string replace -r '^\S+\s*' '' -- (commandline -cp)))"
end
