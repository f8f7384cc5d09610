// Vesk.

#include <QCoreApplication>

#include "app/program.h"

int main(int argc, char** argv) {
    QCoreApplication::setApplicationVersion(QStringLiteral(VESK_VERSION));
    return vesk::leave(vesk::runProgram(argc, argv));
}
