#include "cli/Completions.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <set>

namespace tidewright {

namespace {

// What stands in the grammar for a value, and what can be offered for it. Of an id nothing can: to
// know the ids takes a scan.
constexpr std::string_view folderValue = "DIR";
constexpr std::string_view fileValue = "PATH";
constexpr std::string_view keyValue = "KEY";
constexpr std::string_view truthValue = "VALUE"; // of a setting that is one

std::string replaced(std::string text, std::string_view part, std::string_view by) {
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += by.size())
        text.replace(at, part.size(), by);
    return text;
}

std::string joined(const std::vector<std::string>& words) {
    return fmt::format("{}", fmt::join(words, " "));
}

std::vector<std::string> namesOf(const std::vector<OptionDescription>& options) {
    std::vector<std::string> names;
    for (const OptionDescription& option : options)
        names.insert(names.end(), option.names.begin(), option.names.end());
    return names;
}

std::vector<std::string> keys(bool onlyTruths) {
    std::vector<std::string> result;
    for (const Setting& setting : allSettings())
        if (!onlyTruths || setting.kind == SettingKind::truth)
            result.emplace_back(setting.key);
    return result;
}

/// All options that take a value, as alternatives of a shell's pattern; each means the same in
/// every command.
std::string optionsWithValue(const CommandDescription& program,
                             std::string_view separator,
                             std::optional<std::string_view> value = std::nullopt) {
    std::set<std::string> names;
    for (const CommandDescription& command : program.commands)
        for (const OptionDescription& option : command.options)
            if (value ? option.value == *value : !option.value.empty())
                names.insert(option.names.begin(), option.names.end());
    return fmt::format("{}", fmt::join(names, separator));
}

// bash

/// What is offered for the arguments of a command, by their number.
std::string bashArguments(const CommandDescription& command) {
    std::string cases;
    for (std::size_t i = 0; i < command.arguments.size(); ++i) {
        const OptionDescription& argument = command.arguments[i];
        const std::string place =
            fmt::format("{}:{}", command.name, argument.isRepeatable ? "*" : std::to_string(i));
        if (argument.value == fileValue)
            cases += fmt::format("            {}) action=-f ;;\n", place);
        else if (argument.value == keyValue)
            cases += fmt::format("            {}) words='{}' ;;\n", place, joined(keys(false)));
        else if (argument.value == truthValue)
            cases += fmt::format("            {})\n"
                                 "                case $first in\n"
                                 "                    {}) words='yes no' ;;\n"
                                 "                esac\n"
                                 "                ;;\n",
                                 place, fmt::join(keys(true), " | "));
    }
    return cases;
}

constexpr const char* bashScript = R"(# Completion of tidewright in bash, from 3.2 on.

_tidewright() {{
    local word=${{COMP_WORDS[COMP_CWORD]}} option='' command='' first='' count=0
    local index each ended='' words='' action=''
    COMPREPLY=()
    for ((index = 1; index < COMP_CWORD; ++index)); do
        each=${{COMP_WORDS[index]}}
        if [[ -n $option ]]; then
            # bash takes --option=value for three words.
            [[ $each == '=' ]] || option=''
            continue
        fi
        if [[ -z $ended ]]; then
            case $each in
                {valued})
                    option=$each
                    continue
                    ;;
                --) ended=yes ;;
            esac
            [[ $each != -* ]] || continue
        fi
        if [[ -z $command ]]; then
            command=$each
        else
            [[ $count -gt 0 ]] || first=$each
            count=$((count + 1))
        fi
    done
    [[ -z $option || $word != '=' ]] || word=''

    if [[ -n $option ]]; then
        case $option in
            {folders}) action=-d ;;
        esac
    elif [[ $word == -* && -z $ended ]]; then
        case $command in
            '') words='{options}' ;;
{commandOptions}        esac
    else
        case $command:$count in
            :0) words='{commands}' ;;
{arguments}        esac
    fi

    if [[ -n $action ]]; then
        # Names are quoted as far as they need it. In bash 3.2, which has no compopt, asking for
        # names has that effect.
        compopt -o filenames 2>/dev/null || compgen -f /nonexistent/ >/dev/null
        each=$(compgen "$action" -- "$word")
    else
        each=$(compgen -W "$words" -- "$word")
    fi
    [[ -z $each ]] || while IFS= read -r word; do COMPREPLY+=("$word"); done <<<"$each"
}}
complete -F _tidewright tidewright
)";

// zsh

/// In single quotes.
std::string zshQuoted(const std::string& text) { return "'" + replaced(text, "'", "'\\''") + "'"; }

/// Within the brackets of an option's description.
std::string zshText(std::string text) {
    for (const char* character : {"\\", "[", "]"})
        text = replaced(std::move(text), character, std::string("\\") + character);
    return text;
}

/// Before a colon that ends it.
std::string zshName(std::string text) {
    return replaced(replaced(std::move(text), "\\", "\\\\"), ":", "\\:");
}

std::string zshAction(std::string_view value) {
    if (value == folderValue)
        return "_files -/";
    if (value == fileValue)
        return "_files";
    if (value == keyValue)
        return "_tidewright_keys";
    return value == truthValue ? "_tidewright_value" : " ";
}

std::string zshOption(const OptionDescription& option, const std::string& name) {
    const std::string start = option.isRepeatable ? "*" : "";
    std::string value;
    if (!option.value.empty())
        value = fmt::format(":{}:{}", option.value, zshAction(option.value));
    return zshQuoted(fmt::format("{}{}[{}]{}", start, name, zshText(option.text), value));
}

std::string zshArguments(const CommandDescription& command, std::string_view indentation) {
    std::string specifications;
    const auto add = [&](const std::string& specification) {
        specifications += fmt::format(" \\\n{}    {}", indentation, specification);
    };
    for (const OptionDescription& option : command.options)
        for (const std::string& name : option.names)
            add(zshOption(option, name));
    for (const OptionDescription& argument : command.arguments)
        add(zshQuoted(fmt::format("{}:{}:{}",
                                  argument.isRepeatable ? "*" : (argument.isRequired ? "" : ":"),
                                  argument.value, zshAction(argument.value))));
    return specifications;
}

std::string zshItems(const std::vector<std::pair<std::string, std::string>>& namesAndTexts,
                     std::string_view indentation) {
    std::string items;
    for (const auto& [name, text] : namesAndTexts)
        items += fmt::format("{}    {}\n", indentation, zshQuoted(zshName(name) + ":" + text));
    return items;
}

constexpr const char* zshScript = R"(#compdef tidewright
# Completion of tidewright in zsh.

_tidewright_keys() {{
    local -a keys=(
{keys}    )
    _describe -t keys 'setting' keys
}}

_tidewright_value() {{
    # The words are those of the command, which comes first.
    case ${{words[(r)({truths})]}} in
        '') _message 'VALUE' ;;
        *) _values 'VALUE' yes no ;;
    esac
}}

_tidewright_commands() {{
    local -a commands=(
{commands}    )
    _describe -t commands 'command' commands
}}

_tidewright() {{
    local curcontext=$curcontext state line
    typeset -A opt_args

    _arguments -C{options} \
        '1:command:_tidewright_commands' \
        '*::argument:->arguments' && return

    [[ $state == arguments ]] || return
    case $words[1] in
{cases}    esac
}}

_tidewright "$@"
)";

// fish

/// In single quotes.
std::string fishQuoted(const std::string& text) {
    return "'" + replaced(replaced(text, "\\", "\\\\"), "'", "\\'") + "'";
}

std::string fishOption(const OptionDescription& option) {
    std::string line;
    for (const std::string& name : option.names)
        line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    if (option.value == folderValue)
        line += " -x -a '(__fish_complete_directories)'";
    else if (!option.value.empty())
        line += " -x";
    return line + " -d " + fishQuoted(option.text);
}

std::string fishArguments(const CommandDescription& command) {
    std::string lines;
    for (std::size_t i = 0; i < command.arguments.size(); ++i) {
        const OptionDescription& argument = command.arguments[i];
        const auto add = [&](const std::string& condition, const std::string& offer) {
            lines += fmt::format("complete -c tidewright -n {} {}\n", fishQuoted(condition), offer);
        };
        const std::string inCommand = "__tidewright_is " + command.name;
        const std::string here = fmt::format("{} {}", inCommand, i);
        if (argument.value == fileValue)
            add(inCommand, "-F");
        else if (argument.value == keyValue)
            for (const Setting& setting : allSettings())
                add(here, fmt::format("-a {} -d {}", setting.key, fishQuoted(setting.meaning)));
        else if (argument.value == truthValue)
            for (const std::string& key : keys(true))
                add(here + " " + key, "-a 'yes no'");
    }
    return lines;
}

constexpr const char* fishScript = R"(# Completion of tidewright in fish.

# Whether the words before the cursor are a command, so many arguments (where that is asked), and the
# first of them.
function __tidewright_is
    set -l names
    set -l option
    for word in (commandline -opc)[2..]
        if set -q option[1]
            set option
        else if contains -- $word {valued}
            set option $word
        else if not string match -q -- '-*' $word
            set -a names $word
        end
    end
    test "$names[1]" = "$argv[1]"
    and begin
        not set -q argv[2]
        or test (count $names) -eq (math $argv[2] + 1)
    end
    and begin
        not set -q argv[3]
        or test "$names[2]" = $argv[3]
    end
end

complete -c tidewright -f
{lines})";

} // namespace

std::string bashCompletion(const CommandDescription& program) {
    std::string commandOptions;
    std::string arguments;
    std::vector<std::string> commands;
    for (const CommandDescription& command : program.commands) {
        commands.push_back(command.name);
        commandOptions += fmt::format("            {}) words='{}' ;;\n", command.name,
                                      joined(namesOf(command.options)));
        arguments += bashArguments(command);
    }
    return fmt::format(bashScript, fmt::arg("valued", optionsWithValue(program, " | ")),
                       fmt::arg("folders", optionsWithValue(program, " | ", folderValue)),
                       fmt::arg("options", joined(namesOf(program.options))),
                       fmt::arg("commandOptions", commandOptions),
                       fmt::arg("commands", joined(commands)), fmt::arg("arguments", arguments));
}

std::string zshCompletion(const CommandDescription& program) {
    std::vector<std::pair<std::string, std::string>> settings;
    for (const Setting& setting : allSettings())
        settings.emplace_back(setting.key, setting.meaning);
    std::vector<std::pair<std::string, std::string>> commands;
    std::string cases;
    for (const CommandDescription& command : program.commands) {
        commands.emplace_back(command.name, command.text);
        cases += fmt::format("        {}) _arguments -S{} ;;\n", command.name,
                             zshArguments(command, "            "));
    }
    return fmt::format(zshScript, fmt::arg("keys", zshItems(settings, "    ")),
                       fmt::arg("truths", fmt::format("{}", fmt::join(keys(true), "|"))),
                       fmt::arg("commands", zshItems(commands, "    ")),
                       fmt::arg("options", zshArguments(program, "    ")),
                       fmt::arg("cases", cases));
}

std::string fishCompletion(const CommandDescription& program) {
    std::string lines;
    for (const OptionDescription& option : program.options)
        lines +=
            fmt::format("complete -c tidewright -n '__tidewright_is \"\"'{}\n", fishOption(option));
    for (const CommandDescription& command : program.commands) {
        lines += fmt::format("\ncomplete -c tidewright -n '__tidewright_is \"\"' -a {} -d {}\n",
                             command.name, fishQuoted(command.text));
        for (const OptionDescription& option : command.options)
            lines += fmt::format("complete -c tidewright -n '__tidewright_is {}'{}\n", command.name,
                                 fishOption(option));
        lines += fishArguments(command);
    }
    return fmt::format(fishScript, fmt::arg("valued", optionsWithValue(program, " ")),
                       fmt::arg("lines", lines));
}

} // namespace tidewright
