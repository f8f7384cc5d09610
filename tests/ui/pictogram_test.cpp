#include "ui/pictogram.h"

#include <gtest/gtest.h>

#include <QColor>
#include <memory>
#include <set>
#include <string>

#include "core/probe.h"
#include "demo_home/demo_home.h"
#include "platform/world.h"
#include "rules/catalogue.h"
#include "support/temporary_home.h"
#include "ui/window_images.h"

namespace vesk {
namespace {

// The number of pixels that are not fully transparent.
int drawnPixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixelColor(x, y).alpha() > 0 ? 1 : 0;
        }
    }
    return count;
}

class PictogramTest : public testing::TemporaryHome {};

TEST_F(PictogramTest, EverySymbolThatARuleNamesHasADrawing) {
    testing::requireSpace(testing::testRoot(), roomForDemoHome);
    const std::optional<World> demo = makeDemoHome(testing::testRoot() / "demo");
    ASSERT_TRUE(demo);
    const World before = world();
    setWorld(*demo);
    const auto tracker = std::make_shared<Tracker>();
    std::set<std::string> symbols;
    for (const Spec& rule : Scanner::specs()) {
        Probe probe(tracker);
        for (const Card& card : rule.run(probe)) {
            symbols.insert(card.symbol);
        }
    }
    setWorld(before);
    EXPECT_EQ(symbols.size(), 19U);  // one for each card that the demo's home gives
    for (const std::string& symbol : symbols) {
        const QImage image = pictogram(QString::fromStdString(symbol), Qt::black, 20);
        ASSERT_EQ(image.size(), QSize(20, 20)) << symbol;
        EXPECT_GT(drawnPixels(image), 60) << symbol;
        EXPECT_LT(drawnPixels(image), 390) << symbol;
    }
}

TEST_F(PictogramTest, IsDrawnInTheAskedColour) {
    const QImage image = pictogram(QStringLiteral("shippingbox.fill"), QColor(10, 200, 30), 48);
    int solid = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() == 255) {
                EXPECT_NEAR(pixel.red(), 10, 2);
                EXPECT_NEAR(pixel.green(), 200, 2);
                EXPECT_NEAR(pixel.blue(), 30, 2);
                ++solid;
            }
        }
    }
    EXPECT_GT(solid, 300);
}

TEST_F(PictogramTest, IsEmptyForANameWithoutADrawing) {
    EXPECT_TRUE(pictogram(QStringLiteral("no.such.symbol"), Qt::black, 20).isNull());
    EXPECT_TRUE(pictogram(QStringLiteral("../MainWindow.qml"), Qt::black, 20).isNull());
}

TEST_F(PictogramTest, ViewsAskForPicturesByAddress) {
    WindowImages images;
    QSize size;
    EXPECT_EQ(images.requestImage(QStringLiteral("pictogram/globe/ff102030"), &size, QSize(40, 40)).width(), 40);
    EXPECT_EQ(size, QSize(40, 40));
    const QImage shadow = images.requestImage(QStringLiteral("shadow/10/6/80000000"), &size, {});
    EXPECT_EQ(shadow.width(), 2 * (10 + 12) + 1);
    EXPECT_TRUE(images.requestImage(QStringLiteral("nonsense"), &size, {}).isNull());
}

TEST_F(PictogramTest, AShadowFadesFromItsMiddleToNothing) {
    const QImage shadow = softShadow(10, 9, QColor(0, 0, 0, 128));
    const int middle = shadow.width() / 2;
    EXPECT_NEAR(shadow.pixelColor(middle, middle).alpha(), 128, 3);
    EXPECT_EQ(shadow.pixelColor(0, middle).alpha(), 0);
    for (int x = 1; x <= middle; ++x) {
        EXPECT_GE(shadow.pixelColor(x, middle).alpha(), shadow.pixelColor(x - 1, middle).alpha());
    }
}

}  // namespace
}  // namespace vesk
