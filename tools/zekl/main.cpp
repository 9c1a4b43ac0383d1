// zekl: command-line front of the ZeKL library. Every command reaches the library only
// through its public interface, as any other caller would; the tool's own file access (the
// probe before a read, the file `new -o` writes) uses the library's platform file component,
// linked statically (platform/File.h).
#include <cstdio>
#include <exception>
#include <string>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

#include "Arguments.h"
#include "Commands.h"
#include "Console.h"

namespace {

int RunCommand(const std::string& name, const zekl::Words& args) {
    for (const zekl::Command& command : zekl::AllCommands()) {
        if (name == command.name) {
            return command.run(args);
        }
    }
    throw zekl::UsageError("", "unknown command '" + name + "'");
}

int Dispatch(const zekl::Words& words) {
    if (words.empty()) {
        std::fputs(zekl::OverallHelp().c_str(), stderr);
        return zekl::ExitUsage;
    }
    const std::string& first = words[0];
    if (first == "--help" || first == "-h") {
        std::fputs(zekl::OverallHelp().c_str(), stdout);
        return zekl::ExitSuccess;
    }
    if (first == "--version") {
        return zekl::RunVersion({});
    }
    if (first == "help") {
        if (words.size() == 1) {
            std::fputs(zekl::OverallHelp().c_str(), stdout);
            return zekl::ExitSuccess;
        }
        return RunCommand(words[1], {"--help"});
    }
    if (first.size() > 1 && first[0] == '-') {
        throw zekl::UsageError("", "unknown option '" + first + "'");
    }
    return RunCommand(first, zekl::Words(words.begin() + 1, words.end()));
}

}  // namespace

int main(int argc, char** argv) {
#ifdef _WIN32
    // Documents keep their own line ends; the console must not add CRs to them.
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    const zekl::Words words(argv + 1, argv + argc);
    try {
        return Dispatch(words);
    } catch (const zekl::UsageError& error) {
        const std::string help =
            error.Command().empty() ? "zekl --help" : "zekl " + error.Command() + " --help";
        const std::string prefix = error.Command().empty() ? "" : error.Command() + ": ";
        zekl::PrintError(prefix + error.what() + " (see '" + help + "')");
        return zekl::ExitUsage;
    } catch (const std::exception& error) {
        zekl::PrintError(std::string("unexpected failure: ") + error.what());
        return zekl::ExitDocumentProblem;
    }
}
