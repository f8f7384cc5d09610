// Vesk: makes the application, shows its window, nothing else.

#include <QGuiApplication>
#include <cstdlib>

#include "ui/vesk_app.h"

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("Vesk"));
    QGuiApplication::setApplicationVersion(QStringLiteral(VESK_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("app.vesk.Vesk"));
    vesk::VeskApp vesk;
    if (!vesk.show()) {
        return EXIT_FAILURE;
    }
    return QGuiApplication::exec();
}
