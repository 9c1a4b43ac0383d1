#include "Cli.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "Console.h"

namespace zekl {

namespace {

constexpr std::size_t kWidth = 79;
constexpr std::size_t kWidestName = 24;

const char* const kToolDescription =
    "zekl - inspect, check and convert ZeKL diagnostic description documents, and decode\n"
    "and encode the messages they describe\n";

const CommandHelp kHelpCommand = {
    "help", "print the help of the tool or of one command", "zekl help [COMMAND]",
    "Prints the overall help, or the help of COMMAND (the same as 'zekl COMMAND --help').\n", ""};

// The help text of an app is the tool's own: CLI11's layout is replaced by the texts of the
// commands, with the arguments and options CLI11 knows listed between them.
class HelpFormatter : public CLI::FormatterBase {
public:
    explicit HelpFormatter(const Cli& cli) : cli_(cli) {}
    std::string make_help(const CLI::App* app, std::string, CLI::AppFormatMode) const override {
        return app->get_parent() == nullptr ? cli_.OverallHelp() : cli_.HelpOf(app->get_name());
    }

private:
    const Cli& cli_;
};

std::string LowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

bool StartsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

// The words of `text` in lines of at most kWidth characters, each after `indent` blanks but the
// first, which continues a line already `indent` long.
std::string Wrapped(const std::string& text, std::size_t indent) {
    std::string result;
    std::size_t column = indent;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        const std::string word = text.substr(at, end - at);
        at = end + 1;
        if (word.empty()) {
            continue;
        }
        if (column > indent && column + 1 + DisplayWidth(word) > kWidth) {
            result += "\n" + std::string(indent, ' ');
            column = indent;
        } else if (column > indent) {
            result += ' ';
            ++column;
        }
        result += word;
        column += DisplayWidth(word);
    }
    return result;
}

// "  NAME  description", the descriptions in one column.
std::string Columns(const std::vector<std::pair<std::string, std::string>>& rows) {
    std::size_t width = 0;
    for (const auto& row : rows) {
        if (row.first.size() <= kWidestName) {
            width = std::max(width, row.first.size());
        }
    }
    std::string text;
    for (const auto& row : rows) {
        text += "  " + row.first;
        if (row.first.size() > width) {
            text += "\n" + std::string(width + 2, ' ');
        } else {
            text += std::string(width - row.first.size(), ' ');
        }
        text += "  " + Wrapped(row.second, width + 4) + "\n";
    }
    return text;
}

std::string OptionName(const CLI::Option& option) {
    std::string name;
    for (const std::string& letter : option.get_snames()) {
        name += "-" + letter + ", ";
    }
    for (const std::string& word : option.get_lnames()) {
        name += "--" + word + ", ";
    }
    name.resize(name.size() - 2);
    if (option.get_type_size() != 0) {
        name += " " + option.get_type_name();
    }
    return name;
}

// The arguments (`positional`) or the options of an app, for its help.
std::string OptionList(const CLI::App& app, bool positional) {
    std::vector<std::pair<std::string, std::string>> rows;
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_positional() == positional && !option->get_group().empty()) {
            rows.emplace_back(positional ? option->get_name(true) : OptionName(*option),
                              option->get_description());
        }
    }
    return rows.empty() ? std::string()
                        : std::string(positional ? "Arguments:\n" : "Options:\n") + Columns(rows);
}

// The text before the first ": ", or all of it.
std::string Subject(const std::string& text) {
    return text.substr(0, text.find(": "));
}

std::string AfterSubject(const std::string& text) {
    const std::size_t colon = text.find(": ");
    return colon == std::string::npos ? text : text.substr(colon + 2);
}

// "A <joined> B" of CLI11's "A requires B" and the like: the names on both sides.
std::pair<std::string, std::string> Sides(const std::string& text, const std::string& joined) {
    const std::size_t at = text.find(joined);
    if (at == std::string::npos) {
        return {text, std::string()};
    }
    return {text.substr(0, at), text.substr(at + joined.size())};
}

}  // namespace

std::string UsageMessage(const CLI::ParseError& error, const CLI::App* command) {
    const std::string text = error.what();
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
        const std::string name = Sides(text, " is required").first;
        if (!StartsWith(name, "-")) {
            return "missing argument " + name;
        }
        const CLI::Option* option = command != nullptr ? command->get_option_no_throw(name) : nullptr;
        return "missing option " + name + (option != nullptr ? " " + option->get_type_name() : std::string());
    }
    if (dynamic_cast<const CLI::RequiresError*>(&error) != nullptr) {
        const auto sides = Sides(text, " requires ");
        return sides.first + " needs " + sides.second;
    }
    if (dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr) {
        const auto sides = Sides(text, " excludes ");
        return sides.first + " and " + sides.second + " exclude each other";
    }
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr &&
        text.find(" required ") != std::string::npos) {
        return "option '" + Subject(text) + "' needs a value";
    }
    if (dynamic_cast<const CLI::ValidationError*>(&error) != nullptr) {
        // The validators' own texts name the value; CLI11 puts the option's name before them.
        return AfterSubject(text);
    }
    return text;
}

Cli::Cli() : app_(kToolDescription, "zekl") {
    // Settings that the commands inherit: they must be made before the first command is added.
    app_.formatter(std::make_shared<HelpFormatter>(*this));
    app_.set_help_flag("-h,--help", "print this help and exit");
    app_.require_subcommand(0, 1);
    // What CLI11 does not recognise is left over and refused in the tool's own words.
    app_.allow_extras();
    app_.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app_.add_flag("--version", version_, "print the version, as 'zekl version' does");
    AddHelpCommand();
}

void Cli::AddHelpCommand() {
    helpApp_ = app_.add_subcommand(kHelpCommand.name, kHelpCommand.summary);
    helpApp_->add_option("COMMAND", helpTopic_, "the command whose help to print")->type_name("COMMAND");
}

CLI::App& Cli::AddCommand(const CommandHelp& help, std::function<int()> run) {
    CLI::App* app = app_.add_subcommand(help.name, help.summary);
    commands_.push_back({help, app, std::move(run)});
    return *app;
}

std::string Cli::OverallHelp() const {
    std::string text = kToolDescription;
    text += "\nUsage: zekl <command> [options] [arguments]\n\nCommands:\n";
    std::vector<std::pair<std::string, std::string>> rows;
    for (const Command& command : commands_) {
        rows.emplace_back(command.help.name, command.help.summary);
    }
    text += Columns(rows);
    text += "\n" + OptionList(app_, false);
    text +=
        "\n"
        "Run 'zekl <command> --help' (or 'zekl help <command>') for the arguments and options\n"
        "of one command. A FILE of '-' reads the document from standard input.\n"
        "Exit status: 0 success, 1 a document problem, 2 a usage error.\n";
    return text;
}

std::string Cli::CommandHelpText(const Command& command) const {
    std::string usage = command.help.usage;
    std::string text;
    std::size_t at = 0;
    while (at < usage.size()) {
        const std::size_t end = std::min(usage.find('\n', at), usage.size());
        text += (at == 0 ? "Usage: " : "       ") + usage.substr(at, end - at) + "\n";
        at = end + 1;
    }
    text += "\n" + std::string(command.help.description);
    for (const bool positional : {true, false}) {
        const std::string list = OptionList(*command.app, positional);
        if (!list.empty()) {
            text += "\n" + list;
        }
    }
    if (command.help.notes[0] != '\0') {
        text += "\n" + std::string(command.help.notes);
    }
    return text;
}

const Cli::Command* Cli::Find(const std::string& name) const {
    for (const Command& command : commands_) {
        if (name == command.help.name) {
            return &command;
        }
    }
    return nullptr;
}

std::string Cli::HelpOf(const std::string& name) const {
    if (const Command* command = Find(name)) {
        return CommandHelpText(*command);
    }
    if (name == kHelpCommand.name) {
        return CommandHelpText({kHelpCommand, helpApp_, nullptr});
    }
    return std::string();
}

const Cli::Command* Cli::Chosen() const {
    const std::vector<CLI::App*> chosen = app_.get_subcommands();
    for (const Command& command : commands_) {
        if (!chosen.empty() && chosen.front() == command.app) {
            return &command;
        }
    }
    return nullptr;
}

void Cli::RefuseLeftOvers(const CLI::App& app, bool isTool) const {
    for (const std::string& word : app.remaining()) {
        if (word == "--") {
            continue;
        }
        if (word.size() > 1 && word[0] == '-') {
            throw UsageError("unknown option '" + word + "'");
        }
        throw UsageError((isTool ? "unknown command '" : "unexpected argument '") + word + "'");
    }
}

int Cli::Dispatch(int argc, const char* const* argv) {
    if (argc <= 1) {
        WriteAll(stderr, OverallHelp());
        return ExitUsage;
    }
    try {
        app_.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        WriteAll(stdout, app_.help());
        return ExitSuccess;
    } catch (const CLI::ParseError& error) {
        const std::vector<CLI::App*> chosen = app_.get_subcommands();
        throw UsageError(UsageMessage(error, chosen.empty() ? nullptr : chosen.front()));
    }
    RefuseLeftOvers(app_, true);
    const std::vector<CLI::App*> chosen = app_.get_subcommands();
    if (!chosen.empty()) {
        RefuseLeftOvers(*chosen.front(), false);
    }
    if (const Command* command = Chosen()) {
        return command->run();
    }
    if (!chosen.empty()) {  // zekl help [COMMAND]
        const std::string text = helpTopic_.empty() ? OverallHelp() : HelpOf(helpTopic_);
        if (text.empty()) {
            throw UsageError("unknown command '" + helpTopic_ + "'");
        }
        WriteAll(stdout, text);
        return ExitSuccess;
    }
    const Command* version = Find("version");
    if (version_ && version != nullptr) {
        return version->run();
    }
    WriteAll(stderr, OverallHelp());
    return ExitUsage;
}

int Cli::Run(int argc, const char* const* argv) {
    try {
        return Dispatch(argc, argv);
    } catch (const UsageError& error) {
        // A command's mistakes name the command; those of 'zekl help' and of the tool's own
        // words name the tool.
        const Command* command = Chosen();
        const std::string name = command != nullptr ? command->help.name : "";
        const std::string prefix = name.empty() ? "" : name + ": ";
        const std::string help = name.empty() ? "zekl --help" : "zekl " + name + " --help";
        PrintError(prefix + error.what() + " (see '" + help + "')");
        return ExitUsage;
    } catch (const Failure& failure) {
        PrintError(failure.what());
        return ExitDocumentProblem;
    } catch (const std::exception& error) {
        PrintError(std::string("unexpected failure: ") + error.what());
        return ExitDocumentProblem;
    }
}

CLI::Option* AddDocumentArgument(CLI::App& app, std::string& path, const char* name) {
    return app.add_option(name, path, "the description document; '-' reads it from standard input")
        ->required()
        ->type_name(name);
}

CLI::Option* AddJsonFlag(CLI::App& app, bool& json) {
    return app.add_flag("--json", json, "print the result as one JSON document (see docs/json.md)");
}

CLI::Validator Choice(std::map<std::string, std::string> choices, std::string refusal, std::string hint) {
    return CLI::Validator(
        [choices = std::move(choices), refusal = std::move(refusal),
         hint = std::move(hint)](std::string& value) {
            const auto found = choices.find(LowerCase(value));
            if (found == choices.end()) {
                return refusal + " '" + value + "' (" + hint + ")";
            }
            value = found->second;
            return std::string();
        },
        std::string());
}

CLI::Validator Rule(std::function<std::string(const std::string&)> problem) {
    return CLI::Validator([problem = std::move(problem)](std::string& value) { return problem(value); },
                          std::string());
}

}  // namespace zekl
