#include "app/single_instance.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QObject>
#include <QThread>
#include <algorithm>

#include "platform/system/preferences.h"
#include "platform/world.h"

namespace vesk {

namespace {

using std::chrono::milliseconds;

// How long to wait for the first instance before checking again whether it has gone.
constexpr milliseconds attempt{200};
constexpr milliseconds pause{50};

constexpr const char* shown = "shown\n";
constexpr qint64 longestCall = 4096;
// A desktop passes this to a program that the user starts; a window needs it to come forward.
constexpr const char* activationToken = "XDG_ACTIVATION_TOKEN";

// Where the first instance listens: in the session's folder, under a name derived from the lock; without such a folder,
// beside the lock.
QString addressFor(const std::filesystem::path& lockFile) {
    if (world().runtimeHome.empty()) {
        return QString::fromStdString((lockFile.parent_path() / "window").string());
    }
    const std::string name = lockFile.string();
    const QByteArray digest = QCryptographicHash::hash(QByteArrayView(name.data(), static_cast<qsizetype>(name.size())),
                                                       QCryptographicHash::Sha256)
                                  .toHex()
                                  .first(16);
    return QString::fromStdString((world().runtimeHome / ("vesk-" + digest.toStdString())).string());
}

}  // namespace

SingleInstance::SingleInstance() : address_(addressFor(Preferences().lockFile())) {
    QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] { answer(); });
}

SingleInstance::Entry SingleInstance::enter(milliseconds patience) {
    const std::filesystem::path file = Preferences().lockFile();
    const QDeadlineTimer deadline(patience);
    for (;;) {
        switch (lock_.tryTake(file)) {
            case FileLock::State::ours:
                listen();
                return Entry::first;
            case FileLock::State::impossible:
                return Entry::first;
            case FileLock::State::anothers:
                break;
        }
        if (callFirst(attempt)) {
            return Entry::shown;
        }
        if (deadline.hasExpired()) {
            return Entry::silent;
        }
        QThread::msleep(static_cast<unsigned long>(pause.count()));
    }
}

// If listening fails, later instances report that this one does not answer, which is true.
void SingleInstance::listen() {
    QLocalServer::removeServer(address_);  // left by a killed instance: the lock shows that nobody else is listening
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    server_.listen(address_);
}

bool SingleInstance::callFirst(milliseconds patience) const {
    const QDeadlineTimer deadline(patience);
    QLocalSocket socket;
    socket.connectToServer(address_);
    if (!socket.waitForConnected(static_cast<int>(patience.count()))) {
        return false;
    }
    socket.write(qgetenv(activationToken) + '\n');
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) {
            return false;
        }
    }
    return socket.readLine() == shown;
}

void SingleInstance::answer() {
    while (QLocalSocket* const caller = server_.nextPendingConnection()) {
        QObject::connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
        const auto read = [this, caller] {
            if (caller->canReadLine()) {
                const QByteArray token = caller->readLine(longestCall).trimmed();
                if (!token.isEmpty()) {
                    qputenv(activationToken, token);
                }
                forward_();
                caller->write(shown);
                caller->disconnectFromServer();
            } else if (caller->bytesAvailable() >= longestCall) {
                caller->abort();
            }
        };
        QObject::connect(caller, &QLocalSocket::readyRead, caller, read);
        read();  // what arrived before the connection was made
    }
}

}  // namespace vesk
