#include "tools/manual/CommandWords.h"
#include "tools/manual/Manual.h"

#include "tools/settings/HeadSettings.h"
#include "tools/text/Text.h"

#include <algorithm>

namespace qmv40::manual {

namespace {

std::string FunctionOf(const cli::CommandDescription& command) {
    std::string name = "_" + command.name;
    std::ranges::replace(name, ' ', '_');
    return name;
}

/// Text inside single quotes, with a backslash before each of `special`.
std::string Escaped(const std::string& text, std::string_view special) {
    std::string escaped;
    for (const char c : text) {
        if (c == '\'') {
            escaped += "'\\''";
            continue;
        }
        if (special.find(c) != std::string_view::npos) escaped += '\\';
        escaped += c;
    }
    return escaped;
}

/// How to complete the value of an option.
std::string Action(const cli::OptionDescription& option) {
    if (option.IsFile()) return "_files";
    if (!option.choices.empty()) return "(" + text::Joined(option.choices, " ") + ")";
    if (option.argument != "NAME=NUMBER") return " ";
    std::vector<std::string> names;
    for (const HeadSetting& setting : HeadSettings()) names.emplace_back(setting.shortName);
    return "compadd -S = -- " + text::Joined(names, " ");
}

std::string OptionSpecification(const cli::OptionDescription& option) {
    const std::string value = option.argument.empty() ? "" : ":" + Escaped(option.argument, ":") + ":" + Action(option);
    if (option.IsPositional()) return "        '1" + value + "' \\\n";
    const std::string text = "[" + Escaped(option.description, "[]\\") + "]" + value + "' \\\n";
    std::string specifications;
    for (const std::string& name : option.names) {
        const std::string exclusive = option.names.size() > 1 ? "(" + text::Joined(option.names, " ") + ")" : "";
        specifications.append("        '").append(option.isRepeatable ? "*" : exclusive).append(name).append(text);
    }
    return specifications;
}

// NOLINTNEXTLINE(misc-no-recursion): a command can have commands of its own
void AppendFunction(const cli::CommandDescription& command, std::string& script) {
    for (const cli::CommandDescription& each : command.commands) AppendFunction(each, script);
    script += FunctionOf(command) + "() {\n";
    if (!command.commands.empty()) script += "    local context state state_descr line\n    typeset -A opt_args\n";
    script += "    _arguments -C \\\n";
    for (const cli::OptionDescription& option : command.options) script += OptionSpecification(option);
    if (command.commands.empty()) {
        script.erase(script.size() - std::string_view(" \\\n").size());
        script += "\n}\n\n";
        return;
    }
    script += "        '1: :->command' '*:: :->rest'\n"
              "    case $state in\n"
              "    command)\n"
              "        local -a commands=(\n";
    for (const cli::CommandDescription& each : command.commands) {
        script += "            '" + LastWord(each.name) + ":" + Escaped(each.description, "") + "'\n";
    }
    script += "        )\n"
              "        _describe command commands\n"
              "        ;;\n"
              "    rest)\n"
              "        case $words[1] in\n";
    for (const cli::CommandDescription& each : command.commands) {
        script += "        " + LastWord(each.name) + ") " + FunctionOf(each) + " ;;\n";
    }
    script += "        esac\n"
              "        ;;\n"
              "    esac\n"
              "}\n\n";
}

} // namespace

std::string ZshCompletion(const cli::CommandDescription& tool) {
    std::string script = "#compdef qmv40\n"
                         "# Completes the command line of qmv40 in zsh.\n\n";
    AppendFunction(tool, script);
    return script + FunctionOf(tool) + " \"$@\"\n";
}

} // namespace qmv40::manual
