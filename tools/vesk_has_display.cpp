// Tells by its exit status whether Vesk can open a window here: 0 if so, 1 if not. ./dev asks it.

#include <QGuiApplication>
#include <cstdlib>

#include "app/display_needed.h"

int main(int argc, char** argv) {
    const vesk::DisplayNeeded display([] { std::_Exit(EXIT_FAILURE); });
    const QGuiApplication application(argc, argv);
    return EXIT_SUCCESS;
}
