#pragma once

#include <string>
#include <vector>

/// What the command line offers, taken from the parser itself, so that no page or completion says anything else.

struct ManualOption {
    std::vector<std::string> names;   ///< "-h", "--help"; none for an argument that has its place
    std::string argument;             ///< what follows, such as FILE; empty for a switch
    std::vector<std::string> choices; ///< the only values that are taken, where that is so
    std::string description;
    bool isRequired;
    bool isRepeatable;

    bool IsFile() const { return argument == "FILE"; }
    bool IsPositional() const { return names.empty(); }
};

struct ManualCommand {
    std::string name; ///< all words: "qmv40 settings write"
    std::string description;
    std::string footer;
    std::vector<ManualOption> options;
    std::vector<ManualCommand> commands; ///< of which one must be given; none for most
};

ManualCommand DescribeTool();

/// The page for man, in the man macros.
std::string ManPage(const ManualCommand& tool);

/// A script that teaches bash to complete the tool's command line; it needs nothing but bash.
std::string BashCompletion(const ManualCommand& tool);

/// The same for zsh's completion system: a function file _qmv40.
std::string ZshCompletion(const ManualCommand& tool);
