#include "tools/manual/Manual.h"
#include "tools/text/Text.h"

#include <algorithm>
#include <sstream>

namespace qmv40::manual {

namespace {

constexpr const char* environment =
    ".SH ENVIRONMENT\n"
    ".TP\n.B QMV40_SETTINGS\n"
    "The settings file of this machine, in the place of\n.IR /etc/qmv40/settings.reg .\n"
    ".TP\n.B NO_COLOR\n"
    "When it is set and not empty, nothing is printed in colour.\n";

constexpr const char* files =
    ".SH FILES\n"
    ".TP\n.I /etc/qmv40/settings.reg\n"
    "The head's fixed dimensions where they are not the built\\-in ones, in the registry export "
    "format.\nSee\n.BR \"qmv40 settings\" .\n";

constexpr const char* exitStatus = ".SH EXIT STATUS\n"
                                   ".TP\n.B 0\nDone.\n"
                                   ".TP\n.B 1\nThe component refused; its code, source and description are shown.\n"
                                   ".TP\n.B 2\nWrong usage.\n"
                                   ".TP\n.B 3\nA file is missing or malformed, or cannot be written.\n"
                                   ".TP\n.B 4\nA command that checks ran and found something wrong.\n";

/// The text with the characters escaped that the formatter would interpret.
std::string Escaped(const std::string& text) {
    static constexpr std::pair<char, std::string_view> escapes[] = {
        {'\\', "\\e"}, {'-', "\\-"}, {'`', "\\(ga"}, {'~', "\\(ti"}, {'^', "\\(ha"}};
    std::string escaped = text::Replaced(text, escapes);
    // The formatter would take a line that begins with one of these for a request.
    if (escaped.starts_with('.') || escaped.starts_with('\'')) escaped.insert(0, "\\&");
    return escaped;
}

std::string Bold(const std::string& text) { return "\\fB" + Escaped(text) + "\\fR"; }
std::string Italic(const std::string& text) { return "\\fI" + Escaped(text) + "\\fR"; }

bool IsHelp(const cli::OptionDescription& option) {
    return std::ranges::find(option.names, "--help") != option.names.end();
}

std::string NameAndArgument(const cli::OptionDescription& option) {
    std::string text;
    for (const std::string& name : option.names) text += (text.empty() ? "" : ", ") + Bold(name);
    if (!option.argument.empty()) text += (text.empty() ? "" : " ") + Italic(option.argument);
    return text;
}

std::string Synopsis(const cli::CommandDescription& command) {
    std::string text = Bold(command.name);
    for (const cli::OptionDescription& option : command.options) {
        if (IsHelp(option)) continue;
        const std::string usage = NameAndArgument(option) + (option.isRepeatable ? " ..." : "");
        text += option.isRequired ? " " + usage : " [" + usage + "]";
    }
    return text;
}

/// A footer in the formatter's form: lines that begin with two blanks keep their line breaks, the others are joined
/// into paragraphs.
std::string Paragraphs(const std::string& footer) {
    std::string page;
    std::istringstream lines(footer);
    bool isExample = false;
    for (std::string line; std::getline(lines, line);) {
        const bool wasExample = isExample;
        isExample = line.starts_with("  ");
        if (isExample && !wasExample) page += ".PP\n.EX\n";
        if (!isExample && wasExample) page += ".EE\n";
        if (line.empty()) {
            page += wasExample ? "" : ".PP\n";
        } else {
            page += Escaped(line) + '\n';
        }
        if (line.empty() && wasExample) page += ".PP\n";
    }
    return page + (isExample ? ".EE\n" : "");
}

std::string Options(const cli::CommandDescription& command) {
    std::string page;
    for (const cli::OptionDescription& option : command.options) {
        if (IsHelp(option)) continue;
        page += ".TP\n" + NameAndArgument(option) + '\n' + Escaped(option.description) + '.';
        if (option.isRequired) page += " Required.";
        page += '\n';
    }
    return page;
}

// NOLINTNEXTLINE(misc-no-recursion): a command can have commands of its own
void AppendCommand(const cli::CommandDescription& command, std::string& page) {
    page += ".SS " + Escaped(command.name) + '\n' + Escaped(command.description) + ".\n" + Options(command) + ".PP\n" +
            Paragraphs(command.footer);
    for (const cli::CommandDescription& each : command.commands) AppendCommand(each, page);
}

// NOLINTNEXTLINE(misc-no-recursion): a command can have commands of its own
void AppendSynopsis(const cli::CommandDescription& command, std::string& page) {
    if (command.commands.empty()) page += Synopsis(command) + "\n.br\n";
    for (const cli::CommandDescription& each : command.commands) AppendSynopsis(each, page);
}

} // namespace

std::string ManPage(const cli::CommandDescription& tool) {
    std::string page = ".TH QMV40 1 \"\" \"qmv40 " QMV40_VERSION "\" \"User Commands\"\n"
                       ".SH NAME\nqmv40 \\- measure and index a motorless probe head\n"
                       ".SH SYNOPSIS\n";
    AppendSynopsis(tool, page);
    page += Bold("qmv40") + " " + Bold("--version") + "\n.br\n" + Bold("qmv40") + " [" + Italic("COMMAND") + "] " +
            Bold("--help") + '\n';
    page += ".SH DESCRIPTION\n" + Escaped(tool.description) + "\n.PP\n" + Paragraphs(tool.footer) + ".SH COMMANDS\n";
    for (const cli::CommandDescription& command : tool.commands) AppendCommand(command, page);
    return page + environment + files + exitStatus;
}

} // namespace qmv40::manual
