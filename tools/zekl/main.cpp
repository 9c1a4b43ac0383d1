// zekl: command-line front of the ZeKL library.
#include <ZeKL/ZeKL.h>

#include <cstdio>

int main() {
    std::printf("%s\n", Korvel::GetVersionString());
    return 0;
}
