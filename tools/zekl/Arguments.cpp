#include "Arguments.h"

#include <utility>

namespace zekl {

UsageError::UsageError(const std::string& command, const std::string& message)
    : std::runtime_error(message), command_(command) {}

Arguments::Arguments(std::string command, std::vector<OptionSpec> specs, const std::vector<std::string>& args)
    : command_(std::move(command)), specs_(std::move(specs)) {
    bool optionsEnded = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& word = args[i];
        if (optionsEnded || word.size() < 2 || word[0] != '-') {
            positionals_.push_back(word);
            continue;
        }
        if (word == "--") {
            optionsEnded = true;
            continue;
        }
        if (word == "--help" || word == "-h") {
            help_ = true;
            continue;
        }
        const OptionSpec* spec = nullptr;
        std::string inlineValue;
        bool hasInlineValue = false;
        if (word[1] == '-') {
            std::string name = word.substr(2);
            const size_t equals = name.find('=');
            if (equals != std::string::npos) {
                inlineValue = name.substr(equals + 1);
                hasInlineValue = true;
                name.erase(equals);
            }
            spec = FindLong(name);
        } else if (word.size() == 2) {
            spec = FindShort(word[1]);
        }
        if (spec == nullptr) {
            throw UsageError(command_, "unknown option '" + word + "'");
        }
        if (!spec->takesValue) {
            if (hasInlineValue) {
                throw UsageError(command_, "option '--" + spec->longName + "' takes no value");
            }
            Store(*spec, std::string());
            continue;
        }
        if (!hasInlineValue) {
            if (i + 1 >= args.size()) {
                throw UsageError(command_, "option '" + word + "' needs a value");
            }
            inlineValue = args[++i];
        }
        Store(*spec, inlineValue);
    }
}

bool Arguments::Has(const std::string& longName) const {
    for (const auto& option : options_) {
        if (option.first == longName) {
            return true;
        }
    }
    return false;
}

std::string Arguments::Value(const std::string& longName, const std::string& fallback) const {
    for (auto it = options_.rbegin(); it != options_.rend(); ++it) {
        if (it->first == longName) {
            return it->second;
        }
    }
    return fallback;
}

void Arguments::RequirePositionals(const std::vector<std::string>& names) const {
    if (positionals_.size() < names.size()) {
        throw UsageError(command_, "missing argument " + names[positionals_.size()]);
    }
    if (positionals_.size() > names.size()) {
        throw UsageError(command_, "unexpected argument '" + positionals_[names.size()] + "'");
    }
}

const OptionSpec* Arguments::FindLong(const std::string& name) const {
    for (const auto& spec : specs_) {
        if (spec.longName == name) {
            return &spec;
        }
    }
    return nullptr;
}

const OptionSpec* Arguments::FindShort(char name) const {
    for (const auto& spec : specs_) {
        if (spec.shortName != 0 && spec.shortName == name) {
            return &spec;
        }
    }
    return nullptr;
}

void Arguments::Store(const OptionSpec& spec, const std::string& value) {
    options_.emplace_back(spec.longName, value);
}

}  // namespace zekl
