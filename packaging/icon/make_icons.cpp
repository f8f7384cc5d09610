// Draws Vesk's icon in every size that a system asks for: make_icons ICON.svg FOLDER. Run by the build.
//
// It writes FOLDER/<side>.png for each side that Linux's icon themes look for, and FOLDER/vesk.icns for macOS: a file
// that begins with "icns" and its own length, followed by one block a picture (a kind of four letters, the block's
// length, a PNG file), every length big-endian with its own header counted.

#include <QBuffer>
#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QtEndian>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int themeSides[] = {16, 24, 32, 48, 64, 128, 256};

// What macOS asks for by points and by scale, in the kinds that hold PNG files. Of 16 and 32 points there is only the
// double scale: the kinds for the single one are said to be shown wrongly in bundles, and a Mac scales down itself.
struct IcnsPicture {
    const char* kind;
    int side;
};
constexpr IcnsPicture icnsPictures[] = {
    {"ic11", 32},  {"ic12", 64},  {"ic07", 128}, {"ic13", 256},
    {"ic08", 256}, {"ic14", 512}, {"ic09", 512}, {"ic10", 1024},
};

// The drawing as a PNG file, drawn anew for each size; empty when it cannot be read.
QByteArray drawn(const QString& drawing, int side) {
    QImageReader reader(drawing, "svg");
    reader.setScaledSize(QSize(side, side));
    const QImage picture = reader.read();
    QByteArray png;
    QBuffer file(&png);
    if (picture.size() != QSize(side, side) || !file.open(QIODevice::WriteOnly) || !picture.save(&file, "PNG")) {
        return {};
    }
    return png;
}

// One block, or with blocks as its content the file itself.
QByteArray block(const char* kind, const QByteArray& content) {
    constexpr int headerSize = 8;
    QByteArray result(kind);
    char length[4];
    qToBigEndian(static_cast<quint32>(content.size() + headerSize), length);
    return result.append(length, sizeof length).append(content);
}

bool write(const QString& path, const QByteArray& content) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

bool makeIcons(const QString& drawing, const QString& folder) {
    for (const int side : themeSides) {
        const QByteArray png = drawn(drawing, side);
        if (png.isEmpty() || !write(QStringLiteral("%1/%2.png").arg(folder).arg(side), png)) {
            return false;
        }
    }
    QByteArray blocks;
    for (const IcnsPicture& picture : icnsPictures) {
        const QByteArray png = drawn(drawing, picture.side);
        if (png.isEmpty()) {
            return false;
        }
        blocks += block(picture.kind, png);
    }
    return write(folder + QStringLiteral("/vesk.icns"), block("icns", blocks));
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);  // finds the plugin that reads drawings
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: make_icons ICON.svg FOLDER\n", stderr);
        return EXIT_FAILURE;
    }
    if (!makeIcons(arguments[1], arguments[2])) {
        std::fputs("make_icons: cannot draw the icon; is Qt's plugin for SVG there?\n", stderr);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
