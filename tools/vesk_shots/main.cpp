// Renders every view in every state to PNG files, without a display and without a graphics processor.
//   vesk-shots FOLDER [SCENE]
// Each state is that of a real store with rules of its own, over a made-up Mac in a temporary folder. Exits with 1
// when a picture could not be made.

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QProcess>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "app/startup_error.h"
#include "demo_home/demo_home.h"
#include "platform/system/preferences.h"
#include "platform/world.h"
#include "state/history_codec.h"
#include "temporary_folder.h"
#include "ui/motion.h"
#include "vesk_shots/scenes.h"

namespace {

constexpr QSize smallest(980, 660);
constexpr QSize large(1600, 1000);
constexpr double largeText = 2;

// How pictures are taken in this process; a scale holds for a whole process.
enum class Scale { single, twofold };

class Photographer {
public:
    Photographer(const QDir& folder, Scale scale) : folder_(folder), scale_(scale) {}

    void take(const vesk::Scene& scene) {
        if (scale_ == Scale::twofold) {
            if (scene.main) {
                pose(scene, 1, {{smallest, "@2x"}});
            }
            return;
        }
        pose(scene, 1, {{smallest, ""}, {large, "-large"}});
        if (scene.main) {
            pose(scene, largeText, {{smallest, "-large-text"}});
        }
    }

    void take(const std::string& name, const vesk::StartupError& error) {
        QQmlApplicationEngine engine;
        QQuickWindow* window = vesk::loadStartupError(engine, error);
        vesk::runFor(120);
        save(window != nullptr ? window->grabWindow() : QImage(),
             QString::fromStdString(name) + QLatin1String(scale_ == Scale::twofold ? "@2x" : ""));
    }

    int taken() const { return taken_; }
    bool failed() const { return failed_; }

private:
    struct Picture {
        QSize size;
        const char* suffix;
    };

    void pose(const vesk::Scene& scene, double textScale, const std::vector<Picture>& pictures) {
        // What an earlier scene left must not show in this one.
        std::error_code ignored;
        std::filesystem::remove_all(vesk::world().configHome, ignored);
        vesk::Preferences().setData("vesk.history", vesk::encodeHistory(scene.history));
        vesk::Motion::instance().setReduced(!scene.moving);

        vesk::VeskApp app(scene.sources());
        if (!app.show()) {
            failed_ = true;
            return;
        }
        app.setTextScale(textScale);
        for (const Picture& picture : pictures) {
            app.window()->resize(picture.size);
            if (&picture == &pictures.front()) {
                scene.act(app);
            }
            scene.settle(app);
            save(app.window()->grabWindow(), QString::fromStdString(scene.name) + QLatin1String(picture.suffix));
        }
        scene.release();
        vesk::runUntil([&] { return !app.store().busy(); });
    }

    void save(const QImage& picture, const QString& name) {
        const QString path = folder_.filePath(name + QStringLiteral(".png"));
        if (picture.isNull() || !picture.save(path, "PNG", 0)) {
            std::fprintf(stderr, "vesk-shots: cannot create %s\n", qPrintable(path));
            failed_ = true;
            return;
        }
        ++taken_;
    }

    QDir folder_;
    Scale scale_;
    int taken_ = 0;
    bool failed_ = false;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::fputs("usage: vesk-shots FOLDER [SCENE]\n", stderr);
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const bool twofold = qEnvironmentVariable("QT_SCALE_FACTOR") == QLatin1String("2");
    const vesk::TemporaryFolder temporary("vesk-shots");
    const std::optional<vesk::World> world = vesk::makeDemoHome(temporary.path() / "mac");
    if (temporary.path().empty() || !world) {
        std::fputs("vesk-shots: cannot create a home in the temporary folder\n", stderr);
        return EXIT_FAILURE;
    }
    vesk::setWorld(*world);

    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    folder.mkpath(QStringLiteral("."));
    Photographer photographer(folder, twofold ? Scale::twofold : Scale::single);
    for (const vesk::Scene& scene : vesk::allScenes()) {
        if (argc == 2 || scene.name == argv[2]) {
            photographer.take(scene);
        }
    }
    const std::pair<std::string, vesk::StartupError> errors[] = {
        {"cannot-start-no-home", vesk::startupErrors::homeUnknown},
        {"cannot-start-whole-disk", vesk::startupErrors::homeIsWholeDisk},
        {"cannot-start-home-of-another", vesk::startupErrors::homeIsAnothers},
        {"cannot-start-silent-first", vesk::startupErrors::firstIsSilent}};
    for (const auto& [name, error] : errors) {
        if (argc == 2 || name == argv[2]) {
            photographer.take(name, error);
        }
    }
    bool failed = photographer.failed();
    std::printf("%d pictures%s in %s\n", photographer.taken(), twofold ? " at double scale" : "", argv[1]);
    std::fflush(stdout);
    if (!twofold) {
        qputenv("QT_SCALE_FACTOR", "2");
        failed |= QProcess::execute(QCoreApplication::applicationFilePath(), application.arguments().mid(1)) != 0;
    }
    return failed ? EXIT_FAILURE : EXIT_SUCCESS;
}
