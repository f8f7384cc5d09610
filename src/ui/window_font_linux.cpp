#include "ui/window_font.h"

#include <QStringList>

namespace vesk {

QFont windowFont() {
    QFont font;
    font.setFamilies({QStringLiteral("Quicksand"), QStringLiteral("sans-serif")});
    return font;
}

}  // namespace vesk
