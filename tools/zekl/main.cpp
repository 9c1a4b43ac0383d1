// zekl: command-line front of the ZeKL library. Every command reaches the library only
// through its public interface, as any other caller would; the tool's own file access (the
// probe before a read, the file `new -o` writes) uses the library's platform file component,
// linked statically (platform/File.h).
#include <cstdio>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

#include "Cli.h"
#include "Commands.h"

int main(int argc, char** argv) {
#ifdef _WIN32
    // Documents keep their own bytes and line ends in both directions.
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stdin), _O_BINARY);
#endif
    zekl::Cli cli;
    zekl::AddCommands(cli);
    return cli.Run(argc, argv);
}
