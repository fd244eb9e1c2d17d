#include "tools/manual/CommandWords.h"
#include "tools/manual/Manual.h"
#include "tools/text/Text.h"

#include <algorithm>

namespace qmv40::manual {

namespace {

std::string InQuotes(const std::string& text) {
    static constexpr std::pair<char, std::string_view> quote[] = {{'\'', "''"}};
    return "'" + text::Replaced(text, quote) + "'";
}

std::string List(std::vector<std::string> words) {
    std::ranges::transform(words, words.begin(), InQuotes);
    return "@(" + text::Joined(words, ", ") + ")";
}

/// The words that may follow a command: its own commands and its options.
std::string WordEntries(const cli::CommandDescription& tool) {
    std::string entries;
    ForEach(tool, [&](const cli::CommandDescription& command) {
        std::vector<std::string> words;
        words.reserve(command.commands.size());
        for (const cli::CommandDescription& each : command.commands) words.push_back(LastWord(each.name));
        for (const cli::OptionDescription& option : command.options)
            words.insert(words.end(), option.names.begin(), option.names.end());
        entries += "        " + InQuotes(WordsOf(command)) + " = " + List(words) + "\n";
    });
    return entries;
}

/// The values that may follow an option. PowerShell offers files when there are none.
std::string ValueEntries(const cli::CommandDescription& tool) {
    std::string entries;
    ForEach(tool, [&](const cli::CommandDescription& command) {
        for (const cli::OptionDescription& option : command.options) {
            if (option.argument.empty()) continue;
            for (const std::string& name : option.names)
                entries += "        " + InQuotes(WordsOf(command) + " " + name) + " = " + List(option.choices) + "\n";
        }
    });
    return entries;
}

} // namespace

std::string PowerShellCompletion(const cli::CommandDescription& tool) {
    return "# Completes the command line of qmv40 in PowerShell. In a profile ($PROFILE): . \"<this file>\"\n"
           "Register-ArgumentCompleter -Native -CommandName qmv40, qmv40.exe -ScriptBlock {\n"
           "    param($current, $line, $cursor)\n"
           "    $words = @{\n" +
           WordEntries(tool) +
           "    }\n"
           "    $values = @{\n" +
           ValueEntries(tool) +
           "    }\n"
           "    $typed = @($line.CommandElements | Select-Object -Skip 1 | ForEach-Object { $_.ToString() })\n"
           "    if ($current -ne '') { $typed = @($typed | Select-Object -SkipLast 1) }\n"
           "    $command = ''\n"
           "    foreach ($word in $typed) {\n"
           "        $longer = \"$command $word\".Trim()\n"
           "        if ($words.ContainsKey($longer)) { $command = $longer }\n"
           "    }\n"
           "    $option = \"$command $($typed | Select-Object -Last 1)\"\n"
           "    $offered = if ($values.ContainsKey($option)) { $values[$option] } else { $words[$command] }\n"
           "    $offered | Where-Object { $_ -like \"$current*\" }\n"
           "}\n";
}

} // namespace qmv40::manual
