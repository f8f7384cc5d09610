#include "platform/uuid.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QLatin1String>
#include <QUuid>
#include <algorithm>
#include <iterator>

namespace vesk {

namespace {

constexpr std::size_t textLength = 36;

QUuid asQt(const Uuid& uuid) {
    return QUuid::fromRfc4122(QByteArrayView(uuid.bytes.data(), std::ssize(uuid.bytes)));
}

Uuid fromQt(const QUuid& read) {
    Uuid uuid;
    const QByteArray bytes = read.toRfc4122();
    std::transform(bytes.begin(), bytes.end(), uuid.bytes.begin(),
                   [](char byte) { return static_cast<std::uint8_t>(byte); });
    return uuid;
}

}  // namespace

Uuid Uuid::random() {
    return fromQt(QUuid::createUuid());
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != textLength) {
        return std::nullopt;  // Qt takes other forms as well
    }
    // Qt answers with the identifier of zeroes where the text is none.
    Uuid uuid = fromQt(QUuid::fromString(QLatin1String(text.data(), static_cast<qsizetype>(text.size()))));
    if (uuid == Uuid() && text != Uuid().text()) {
        return std::nullopt;
    }
    return uuid;
}

std::string Uuid::text() const {
    return asQt(*this).toString(QUuid::WithoutBraces).toUpper().toStdString();
}

}  // namespace vesk

std::size_t std::hash<vesk::Uuid>::operator()(const vesk::Uuid& uuid) const noexcept {
    return std::hash<std::string_view>()(
        std::string_view(reinterpret_cast<const char*>(uuid.bytes.data()), uuid.bytes.size()));
}
