#include "ui/window_images.h"

#include <QPainter>
#include <QStringList>
#include <vector>

#include "ui/pictogram.h"

namespace vesk {

namespace {

QColor colorOf(const QString& text) {
    return QColor(QLatin1Char('#') + text);
}

// One pass of a running mean along rows of alpha values. Three passes approximate a Gaussian blur.
void blurRows(std::vector<int>& alpha, int width, int height, int reach) {
    std::vector<int> row(static_cast<std::size_t>(width));
    const int span = 2 * reach + 1;
    for (int y = 0; y < height; ++y) {
        int* line = alpha.data() + static_cast<std::ptrdiff_t>(y) * width;
        const auto at = [&](int x) { return x < 0 || x >= width ? 0 : line[x]; };
        int sum = 0;
        for (int x = -reach; x <= reach; ++x) {
            sum += at(x);
        }
        for (int x = 0; x < width; ++x) {
            row[static_cast<std::size_t>(x)] = sum / span;
            sum += at(x + reach + 1) - at(x - reach);
        }
        std::copy(row.begin(), row.end(), line);
    }
}

// The index of a pixel of a square image.
std::size_t at(int row, int column, int side) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(side) + static_cast<std::size_t>(column);
}

std::vector<int> transposed(const std::vector<int>& alpha, int side) {
    std::vector<int> result(alpha.size());
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            result[at(x, y, side)] = alpha[at(y, x, side)];
        }
    }
    return result;
}

}  // namespace

WindowImages::WindowImages() : QQuickImageProvider(QQuickImageProvider::Image) {
}

QImage softShadow(int cornerRadius, int blurRadius, const QColor& color) {
    const int side = 2 * (cornerRadius + 2 * blurRadius) + 1;
    QImage shape(side, side, QImage::Format_ARGB32_Premultiplied);
    shape.fill(Qt::transparent);
    {
        QPainter painter(&shape);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        const int inner = side - 2 * blurRadius;
        painter.drawRoundedRect(QRectF(blurRadius, blurRadius, inner, inner), cornerRadius, cornerRadius);
    }
    // Blurs alpha values with more precision than they are drawn with; otherwise the faint edge shows steps.
    constexpr int grain = 256;
    std::vector<int> alpha(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            alpha[at(y, x, side)] = shape.pixelColor(x, y).alpha() * grain;
        }
    }
    constexpr int passes = 3;
    for (int pass = 0; pass < passes; ++pass) {
        blurRows(alpha, side, side, blurRadius / passes);
        alpha = transposed(alpha, side);
        blurRows(alpha, side, side, blurRadius / passes);
        alpha = transposed(alpha, side);
    }
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            QColor pixel = color;
            const float share = static_cast<float>(alpha[at(y, x, side)]) / (255.0F * grain);
            pixel.setAlphaF(color.alphaF() * share);
            shape.setPixelColor(x, y, pixel);
        }
    }
    return shape;
}

QImage WindowImages::requestImage(const QString& address, QSize* size, const QSize& requestedSize) {
    const QStringList parts = address.split(QLatin1Char('/'));
    QImage image;
    if (parts.size() == 3 && parts[0] == QLatin1String("pictogram")) {
        constexpr int usual = 24;
        const int side = requestedSize.width() > 0 ? requestedSize.width() : usual;
        image = pictogram(parts[1], colorOf(parts[2]), side);
    } else if (parts.size() == 4 && parts[0] == QLatin1String("shadow")) {
        image = softShadow(parts[1].toInt(), parts[2].toInt(), colorOf(parts[3]));
    }
    if (size != nullptr) {
        *size = image.size();
    }
    return image;
}

}  // namespace vesk
