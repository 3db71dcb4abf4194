# Leads from the tools of Quav Workbench, and from no other program of their names, to their
# completions, which are read when they are first needed.
status is-interactive; or exit
for tool in mac shntool shorten ttaenc
    complete --path "*/quav/tools/$tool" -f \
        -a '(complete -C "quav-'$tool' "(string replace -r \'^\S+\s*\' "" -- (commandline -cp)))'
end
