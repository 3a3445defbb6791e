#include "completion/commandline.h"

#include <set>
#include <string_view>

namespace Completion {

namespace {

constexpr std::string_view PackageEndings[] = {"obl", "oblar", "oblasm"};

std::string commandNames(const Program& program, const char* separator)
{
    std::string names;
    for (const Command& command : program.commands)
        names += (names.empty() ? "" : separator) + command.name;
    return names;
}

std::string optionNames(const std::vector<Option>& options)
{
    std::string names;
    for (const Option& option : options)
        names += (names.empty() ? "--" : " --") + option.name;
    return names;
}

// Returns all options of a kind, of whatever command, as a pattern of bash.
std::string optionsWith(const Program& program, Values values)
{
    std::set<std::string> names;
    for (const Command& command : program.commands)
        for (const Option& option : command.options)
            if (option.values == values)
                names.insert("--" + option.name);
    std::string pattern;
    for (const std::string& name : names)
        pattern += (pattern.empty() ? "" : "|") + name;
    return pattern.empty() ? "--" : pattern;
}

std::string madeBy(const Program& program, const char* shell)
{
    return "# Completion of " + program.name + " for " + shell +
           ". Made by the build out of the program's own options.\n";
}

std::string zshOption(const Option& option)
{
    std::string text = "'*--" + option.name;
    if (option.values == Values::None)
        return text + "[" + option.text + "]'";
    text += "=[" + option.text + "]:" + option.name;
    switch (option.values) {
    case Values::Packages:
        return text + ":_files -g \"*.(obl|oblar|oblasm)\"'";
    case Values::Folders:
        return text + ":_files -/'";
    default:
        return text + ": '";
    }
}

std::string fishValues(Values values)
{
    switch (values) {
    case Values::None:
        return "";
    case Values::Folders:
        return " -x -a '(__fish_complete_directories)'";
    case Values::Packages:
        return " -r";
    default:
        return " -x";
    }
}

} // namespace

std::string bashScript(const Program& program)
{
    std::string options;
    for (const Command& command : program.commands)
        options +=
            "        " + command.name + ") words='" + optionNames(command.options) + "' ;;\n";
    std::string endings;
    for (const std::string_view ending : PackageEndings)
        endings += "; compgen -f -X '!*." + std::string(ending) + "' -- \"$current\"";
    return madeBy(program, "bash") + "_" + program.name + R"(()
{
    local current=${COMP_WORDS[COMP_CWORD]} command= word words
    local previous=${COMP_WORDS[COMP_CWORD - 1]}
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case $word in
        )" +
           commandNames(program, "|") +
           R"() command=$word; break ;;
        esac
    done
    # Readline takes "=" for a word of its own.
    if [[ $current == '=' ]]; then
        current=
    elif [[ $previous == '=' ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    case $previous in
    )" + optionsWith(program, Values::Folders) +
           R"()
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
        return
        ;;
    )" + optionsWith(program, Values::Any) +
           R"()
        COMPREPLY=()
        return
        ;;
    esac
    if [[ $current == -* ]]; then
        words=')" +
           optionNames(program.options) + R"('
        case $command in
)" + options +
           R"(        esac
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    elif [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W ')" +
           commandNames(program, " ") + R"(' -- "$current")
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <({ compgen -d -- "$current")" +
           endings + R"(; } | sort -u)
    fi
}
complete -F _)" +
           program.name + " " + program.name + "\n";
}

std::string zshScript(const Program& program)
{
    std::string globals;
    for (const Option& option : program.options)
        globals += " '--" + option.name + "[" + option.text + "]'";
    std::string cases;
    for (const Command& command : program.commands) {
        cases += "    " + command.name + ")\n        _arguments \\\n";
        for (const Option& option : command.options)
            cases += "            " + zshOption(option) + " \\\n";
        cases += "            '*:package:_files -g \"*.(obl|oblar|oblasm)\"'\n        ;;\n";
    }
    return "#compdef " + program.name + "\n" + madeBy(program, "zsh") + "_" + program.name +
           R"(()
{
    local line state
    _arguments -C)" +
           globals + R"( '1:command:()" + commandNames(program, " ") +
           R"()' '*::argument:->arguments'
    [[ $state == arguments ]] || return
    case $line[1] in
)" + cases +
           R"(    esac
}
_)" + program.name +
           " \"$@\"\n";
}

std::string fishScript(const Program& program)
{
    const std::string complete = "complete -c " + program.name;
    const std::string names = commandNames(program, " ");
    std::string script = madeBy(program, "fish") + complete + " -f\n";
    for (const Option& option : program.options)
        script.append(complete)
            .append(" -n '__fish_use_subcommand' -l ")
            .append(option.name)
            .append(" -d '")
            .append(option.text)
            .append("'\n");
    for (const Command& command : program.commands) {
        script += complete + " -n '__fish_use_subcommand' -a " + command.name + "\n";
        const std::string of = complete + " -n '__fish_seen_subcommand_from " + command.name + "'";
        for (const Option& option : command.options)
            script += of + " -l " + option.name + " -d '" + option.text + "'" +
                      fishValues(option.values) + "\n";
    }
    const std::string withAny = complete + " -n '__fish_seen_subcommand_from " + names + "'";
    for (const std::string_view ending : PackageEndings)
        script.append(withAny)
            .append(" -k -a '(__fish_complete_suffix .")
            .append(ending)
            .append(")'\n");
    return script;
}

} // namespace Completion
