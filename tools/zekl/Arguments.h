// Command-line arguments of one zekl command: options (long and short forms, with or without
// a value) and positional arguments.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace zekl {

// A mistake in how the tool was called; the tool answers it with exit status 2.
class UsageError : public std::runtime_error {
public:
    UsageError(const std::string& command, const std::string& message);
    // Name of the command whose arguments were wrong ("" for the tool itself).
    const std::string& Command() const { return command_; }

private:
    std::string command_;
};

struct OptionSpec {
    std::string longName;  // without the leading "--"
    char shortName;        // 0 when the option has no short form
    bool takesValue;
};

class Arguments {
public:
    // Parses `args` (the words after the command name). "--help" and "-h" are known to every
    // command; "--" ends the options. Throws UsageError for unknown options and missing values.
    Arguments(std::string command, std::vector<OptionSpec> specs, const std::vector<std::string>& args);

    bool HelpRequested() const { return help_; }
    bool Has(const std::string& longName) const;
    // The option's value (the last one when given twice), or `fallback`.
    std::string Value(const std::string& longName, const std::string& fallback = std::string()) const;
    const std::vector<std::string>& Positionals() const { return positionals_; }
    // Throws UsageError unless exactly the named positional arguments are present.
    void RequirePositionals(const std::vector<std::string>& names) const;

private:
    const OptionSpec* FindLong(const std::string& name) const;
    const OptionSpec* FindShort(char name) const;
    void Store(const OptionSpec& spec, const std::string& value);

    std::string command_;
    std::vector<OptionSpec> specs_;
    std::vector<std::pair<std::string, std::string>> options_;
    std::vector<std::string> positionals_;
    bool help_ = false;
};

}  // namespace zekl
