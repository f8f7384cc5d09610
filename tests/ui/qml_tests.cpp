// The main function of the view tests: a made-up world, no display, no GPU.

#include <QQmlEngine>
#include <QQuickWindow>
#include <QtQuickTest>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/world.h"
#include "temporary_folder.h"
#include "ui/motion.h"
#include "ui/stage.h"
#include "ui/views.h"

namespace {

// Called by Qt Quick Test when it starts.
class Setup : public QObject {
    Q_OBJECT

public:
    // Qt and fontconfig would keep caches and sockets in the real user's folders.
    Setup() {
        if (folder_.path().empty()) {
            std::fputs("cannot make a folder for the tests; TMPDIR can name a place for it\n", stderr);
            std::exit(EXIT_FAILURE);  // NOLINT(concurrency-mt-unsafe): no other thread yet
        }
        const QByteArray folder = QByteArray::fromStdString(folder_.path().string());
        qputenv("HOME", folder);
        qputenv("XDG_RUNTIME_DIR", folder);
        for (const char* place : {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
            qunsetenv(place);
        }
    }

public Q_SLOTS:
    void applicationAvailable() {
        vesk::setWorld(vesk::World::below(folder_.path() / "root", folder_.path() / "root/Users/tester"));
        vesk::Motion::instance().setReduced(true);
    }
    void qmlEngineAvailable(QQmlEngine* engine) {
        vesk::prepareViews(*engine);
        qmlRegisterSingletonInstance("VeskStage", 1, 0, "Stage", &stage_);
    }

private:
    vesk::TemporaryFolder folder_{"vesk-ui-tests"};
    vesk::Stage stage_;
};

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QTEST_SET_MAIN_SOURCE_PATH
    Setup setup;
    return quick_test_main_with_setup(argc, argv, "views", QUICK_TEST_SOURCE_DIR, &setup);
}

#include "qml_tests.moc"
