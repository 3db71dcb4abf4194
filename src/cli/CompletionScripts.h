#pragma once

/// The frames of the completions: what is the same for every program. See Completion.cpp for the
/// words with a dollar sign and capitals.
namespace quav::completionscripts {

/// The words before the cursor lead to a command; what it takes stands in tables. Where names of
/// files belong, bash's own completion takes over, which knows how to quote them.
inline constexpr const char* bash = R"(
# Completion of $NAME for bash, made from its options.
_$ID_at() {
    takes=() operands=() commands='' options='' several=''
    case $1 in
$COMMANDS
    esac
}

_$ID() {
    local cur=$2 at='$NAME' pending='' only='' count=0 want='' commands options several word i
    local -A takes
    local -a operands
    COMPREPLY=()
    $GUARD
    [[ $cur == = ]] && cur=
    _$ID_at "$at"
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        if [[ $pending && $word == = ]]; then
            continue
        elif [[ $pending ]]; then
            pending=
        elif [[ ! $only && $word == -- ]]; then
            only=yes
        elif [[ ! $only && $word == -?* ]]; then
            [[ ${takes[$word]+is} ]] && pending=$word
        elif [[ ! $only && " $commands " == *" $word "* ]]; then
            at+=" $word"
            _$ID_at "$at"
        else
            ((count++))
        fi
    done
    if [[ $pending ]]; then
        want=${takes[$pending]}
    elif [[ ! $only && $cur == -[!-]* && ${takes[${cur:0:2}]:-} == [!/]* ]]; then
        COMPREPLY=($(compgen -P "${cur:0:2}" -W "${takes[${cur:0:2}]}" -- "${cur:2}"))
        return
    elif [[ ! $only && $cur == -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$cur"))
        return
    elif [[ $commands ]]; then
        want=$commands
    elif ((count < ${#operands[@]})); then
        want=${operands[count]}
    elif [[ $several ]]; then
        want=${operands[-1]}
    fi
    case $want in
    /files) compopt -o bashdefault -o default ;;
    /folders) compopt -o dirnames ;;
    *) COMPREPLY=($(compgen -W "$want" -- "$cur")) ;;
    esac
}

complete -F _$ID $NAME
)";

/// Another program may have the name: ours is the one in our folder.
inline constexpr const char* bashTool = R"(
_$ID_is_ours() {
    local path=$1
    [[ $path == '~/'* ]] && path=~/${path:2}
    path=$(type -P -- "$path") && [[ $(readlink -f -- "$path") == */quav/tools/$NAME ]]
}

)";

inline constexpr const char* zshProgram = R"(
#compdef $NAME
)";

inline constexpr const char* zshTool = R"(
#compdef -p */quav/tools/$NAME
)";

inline constexpr const char* zsh = R"(
# Completion of $NAME for zsh, made from its options.
$COMMANDS

# Read by zsh's completion, the file is the function's first call; sourced, it names the function.
if [[ $funcstack[1] == $FUNCTION ]]; then
    $FUNCTION "$@"
else
    $COMPDEF
fi
)";

inline constexpr const char* fish = R"(
# Completion of $NAME for fish, made from its options.

# Whether the words before the cursor lead to a command, with so many operands if that is given.
function __$ID_at
    set -l at '$NAME'
    set -l count 0
    set -l pending
    for word in (commandline -opc)[2..-1]
        if set -q pending[1]
            set -e pending
            continue
        end
        switch $word
            case --
                break
            case $WITHVALUE
                set pending yes
            case '-?*'
            case '*'
                if contains -- "$at $word" $PATHS
                    set at "$at $word"
                else
                    set count (math $count + 1)
                end
        end
    end
    test "$at" = "$argv[1]"
    and test "$count" = "$argv[2]" -o -z "$argv[2]"
end

complete -c $COMMAND -f
$COMMANDS
)";

} // namespace quav::completionscripts
