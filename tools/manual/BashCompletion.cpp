#include "tools/manual/CommandWords.h"
#include "tools/manual/Manual.h"

#include "tools/settings/HeadSettings.h"
#include "tools/text/Text.h"

namespace qmv40::manual {

namespace {

/// A branch of a `case` of the script: the pattern that selects it, and its commands.
std::string Case(const std::string& pattern, const std::string& action) {
    return "    \"" + pattern + "\") " + action + " ;;\n";
}

std::string SettingNames() {
    std::string names;
    for (const HeadSetting& setting : HeadSettings()) {
        names += (names.empty() ? "" : " ") + std::string(setting.shortName) + "=";
    }
    return names;
}

/// How to complete the value of an option.
std::string ValueAction(const cli::OptionDescription& option) {
    if (option.IsFile()) return "_qmv40_files; return";
    if (option.argument == "NAME=NUMBER") return "compopt -o nospace 2>/dev/null; words=\"" + SettingNames() + "\"";
    return option.choices.empty() ? "return" : "words=\"" + text::Joined(option.choices, " ") + "\"";
}

std::string CommandCases(const cli::CommandDescription& tool) {
    std::string cases;
    ForEach(tool, [&](const cli::CommandDescription& command) {
        for (const cli::CommandDescription& each : command.commands) {
            cases += "    " + Case(WordsOf(command) + "|" + LastWord(each.name), "command=\"" + WordsOf(each) + "\"");
        }
    });
    return cases;
}

std::string ValueCases(const cli::CommandDescription& tool) {
    std::string cases;
    ForEach(tool, [&](const cli::CommandDescription& command) {
        for (const cli::OptionDescription& option : command.options) {
            if (option.argument.empty()) continue;
            for (const std::string& name : option.names)
                cases += Case(WordsOf(command) + "|" + name, ValueAction(option));
        }
    });
    return cases;
}

std::string WordCases(const cli::CommandDescription& tool) {
    std::string cases;
    ForEach(tool, [&](const cli::CommandDescription& command) {
        std::string words;
        bool takesFile = false;
        for (const cli::CommandDescription& each : command.commands) words += LastWord(each.name) + ' ';
        for (const cli::OptionDescription& option : command.options) {
            takesFile = takesFile || (option.IsPositional() && option.IsFile());
            for (const std::string& name : option.names) words += name + ' ';
        }
        words.pop_back();
        const std::string files = "[[ $current == -* ]] || { _qmv40_files; return; }; ";
        cases += Case(WordsOf(command), (takesFile ? files : "") + "words=\"" + words + "\"");
    });
    return cases;
}

} // namespace

std::string BashCompletion(const cli::CommandDescription& tool) {
    return "# Completes the command line of qmv40 in bash.\n"
           "_qmv40_files() {\n"
           "    compopt -o filenames 2>/dev/null\n"
           "    mapfile -t COMPREPLY < <(compgen -f -- \"${COMP_WORDS[COMP_CWORD]}\")\n"
           "}\n"
           "\n"
           "_qmv40() {\n"
           "    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}\n"
           "    local command=\"\" words=\"\" word\n"
           "    COMPREPLY=()\n"
           "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
           "        case \"$command|$word\" in\n" +
           CommandCases(tool) +
           "        esac\n"
           "    done\n"
           "    case \"$command|$previous\" in\n" +
           ValueCases(tool) +
           "    esac\n"
           "    if [ -z \"$words\" ]; then\n"
           "    case \"$command\" in\n" +
           WordCases(tool) +
           "    esac\n"
           "    fi\n"
           "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$current\")\n"
           "}\n"
           "\n"
           "complete -F _qmv40 qmv40\n";
}

} // namespace qmv40::manual
