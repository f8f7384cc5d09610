// The application.

#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "app/application.h"

namespace {

constexpr const char* help = "Vesk " VESK_VERSION
                             "\n"
                             "Finds reclaimable disk space in your home folder and frees it safely.\n"
                             "\n"
                             "Usage: vesk\n"
                             "\n"
                             "Opens a window. There are no options.\n";

}  // namespace

int main(int argc, char** argv) {
    // Before using Qt, since there may be no display.
    const std::string_view argument = argc > 1 ? argv[1] : "";
    if (argument == "--help" || argument == "--version") {
        std::fputs(help, stdout);
        return std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    QCoreApplication::setApplicationVersion(QStringLiteral(VESK_VERSION));
    return vesk::leave(vesk::runProgram(argc, argv));
}
