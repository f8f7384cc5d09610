#include <QFontDatabase>
#include <QStringList>

#include "ui/window_font.h"

namespace vesk {

QFont fontInFile(const QString& file) {
    QFont font;
    const QStringList families = QFontDatabase::applicationFontFamilies(QFontDatabase::addApplicationFont(file));
    if (!families.isEmpty()) {
        font.setFamilies({families.first()});
    }
    return font;
}

// The system's rounded font has a name with a dot in front, by which Qt does not find it, after searching all fonts for
// other names of it. Its file has had the same place since macOS 10.15; without it, the system's plain font will do.
QFont windowFont() {
    return fontInFile(QStringLiteral("/System/Library/Fonts/SFNSRounded.ttf"));
}

}  // namespace vesk
