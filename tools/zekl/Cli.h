// The command line of zekl, on CLI11: the commands with their help texts, parsing, and the one
// place where a mistake in a call or a failed command becomes an error line and an exit status.
// A command is its options (bound to a struct of its own) and a function that runs on them;
// neither parses arguments, prints help or catches errors itself.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace zekl {

constexpr int ExitSuccess = 0;
constexpr int ExitDocumentProblem = 1;
constexpr int ExitUsage = 2;

// A mistake in how the tool was called: "zekl: <command>: <message> (see 'zekl <command>
// --help')" and exit status 2. Thrown by a command, it names that command.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(const std::string& message) : std::runtime_error(message) {}
};

// A document or an output that cannot be handled: "zekl: <message>" and exit status 1.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& message) : std::runtime_error(message) {}
};

// What the help texts say about a command.
struct CommandHelp {
    const char* name;
    const char* summary;      // one line of 'zekl --help'
    const char* usage;        // its forms, one a line, each starting "zekl <name>"
    const char* description;  // paragraphs between the usage and the arguments
    const char* notes;        // paragraphs after the options; may be empty
};

class Cli {
public:
    Cli();
    Cli(const Cli&) = delete;
    Cli& operator=(const Cli&) = delete;

    // Adds a command whose options live in an `Options` made here: `define` declares them on
    // the command's CLI11 app, `run` runs the command once they are parsed and gives the exit
    // status. Commands appear in 'zekl --help' in the order they are added.
    template <typename Options>
    void Add(const CommandHelp& help, void (*define)(CLI::App&, Options&), int (*run)(const Options&)) {
        auto options = std::make_shared<Options>();
        define(AddCommand(help, [options, run] { return run(*options); }), *options);
    }

    // Parses the call and runs the command; gives the exit status and never throws.
    int Run(int argc, const char* const* argv);

    std::string OverallHelp() const;
    // The help of one command; empty for an unknown name.
    std::string HelpOf(const std::string& name) const;

private:
    struct Command {
        CommandHelp help;
        CLI::App* app;
        std::function<int()> run;
    };

    CLI::App& AddCommand(const CommandHelp& help, std::function<int()> run);
    int Dispatch(int argc, const char* const* argv);
    // Throws UsageError for what the parse left over: an unknown command or option, a surplus
    // argument.
    void RefuseLeftOvers(const CLI::App& app, bool isTool) const;
    const Command* Chosen() const;
    const Command* Find(const std::string& name) const;
    std::string CommandHelpText(const Command& command) const;
    void AddHelpCommand();

    CLI::App app_;
    std::vector<Command> commands_;
    bool version_ = false;
    CLI::App* helpApp_ = nullptr;
    std::string helpTopic_;
};

// The text of a parse error of CLI11 in the tool's words ("missing argument FILE").
std::string UsageMessage(const CLI::ParseError& error, const CLI::App* command);

// Declarations shared by the commands.

// The description document: a path, or "-" for standard input.
CLI::Option* AddDocumentArgument(CLI::App& app, std::string& path, const char* name = "FILE");
// --json: the output as one JSON document (docs/json.md).
CLI::Option* AddJsonFlag(CLI::App& app, bool& json);
// A value from a fixed set, in any letter case: `choices` maps each accepted spelling (lower
// case) to the value stored. Anything else is refused with "<refusal> '<text>' (<hint>)".
CLI::Validator Choice(std::map<std::string, std::string> choices, std::string refusal, std::string hint);

// A check of each value: `problem` gives what is wrong with it (the whole error text), or an
// empty text when nothing is.
CLI::Validator Rule(std::function<std::string(const std::string&)> problem);

}  // namespace zekl
