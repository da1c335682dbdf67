#include "app/controls/SymbolImageProvider.h"

#include "app/controls/SymbolPicture.h"
#include "tests/support/app/LoggedMessages.h"

#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <gmock/gmock.h>

#include <initializer_list>
#include <memory>

namespace tidewright {
namespace {

using testing::IsEmpty;

class SymbolImageProviderTest : public testing::Test {
protected:
    QImage image(const char* id, QSize size = {16, 16}) {
        return m_provider.requestImage(QString::fromUtf8(id), nullptr, size);
    }
    static QImage trash(QColor colour, QSize size = {16, 16}) {
        return symbolPicture(QStringLiteral("trash.fill"), size, colour);
    }

    test::LoggedMessages m_log;

private:
    SymbolImageProvider m_provider;
};

TEST_F(SymbolImageProviderTest, DrawsInTheColourOfTheIdentifier) {
    const QColor colour(0x12, 0x34, 0xab);
    EXPECT_EQ(image("trash.fill/1234ab"), trash(colour));
    EXPECT_EQ(image("trash.fill/1234AB"), trash(colour));
    EXPECT_EQ(image("trash.fill/801234ab"), trash(QColor(0x12, 0x34, 0xab, 0x80)));
    EXPECT_NE(image("trash.fill/1234ab"), image("trash.fill/ab3412"));
    EXPECT_NE(image("trash.fill/1234ab"), image("trash/1234ab"));
    EXPECT_THAT(m_log.text(), IsEmpty());
}

TEST_F(SymbolImageProviderTest, ReadsOtherSpellings) {
    const QImage wanted = trash(QColor(0x12, 0x34, 0xab));
    for (const char* id : {"trash.fill/#1234ab", "trash.fill/%231234ab", "trash.fill%2F1234ab",
                           "trash%2Efill%2f%231234ab"})
        EXPECT_EQ(image(id), wanted) << id;
    EXPECT_EQ(image("trash.fill"), trash(Qt::black));
    EXPECT_THAT(m_log.text(), IsEmpty());
}

TEST_F(SymbolImageProviderTest, ABadColourIsBlackAndSaidOnce) {
    for (const char* id :
         {"trash.fill/", "trash.fill/red", "trash.fill/12345", "trash.fill/1234ab/", "trash.fill/%",
          "trash.fill//1234ab", "trash.fill/##1234ab"}) {
        const test::LoggedMessages log;
        EXPECT_EQ(image(id), trash(Qt::black)) << id;
        EXPECT_EQ(log.text(), '"' + std::string(id) + "\" gives a symbol no colour.\n");
    }
}

TEST_F(SymbolImageProviderTest, AnUnknownNameIsSeenAndSaidOnce) {
    for (const char* name : {"no.such.symbol", "Trash", "trash-2", ""}) {
        const test::LoggedMessages log;
        const QImage placeholder = image((std::string(name) + "/ffffff").c_str(), {20, 20});
        ASSERT_EQ(placeholder.size(), QSize(20, 20)) << name;
        EXPECT_EQ(placeholder.pixelColor(10, 1), QColor(Qt::magenta));
        EXPECT_NE(placeholder.pixelColor(0, 0), QColor(Qt::magenta));
        EXPECT_EQ(log.text(), "There is no symbol \"" + std::string(name) + "\".\n");
    }
}

TEST_F(SymbolImageProviderTest, HasTheSizeThatIsAskedFor) {
    for (const auto& [asked, given] : std::initializer_list<std::pair<QSize, QSize>>{
             {{}, {24, 24}},
             {{0, 0}, {24, 24}},
             {{16, 16}, {16, 16}},
             {{40, 20}, {40, 20}},
             {{0, 20}, {20, 20}},
             {{20, -1}, {20, 20}},
             {{1, 1}, {1, 1}},
             {{1'000'000'000, 1'000'000'000}, {2048, 2048}}}) {
        SymbolImageProvider provider;
        QSize size;
        const QImage image = provider.requestImage(QStringLiteral("circle/ff0000"), &size, asked);
        EXPECT_EQ(image.size(), given) << asked.width() << "x" << asked.height();
        EXPECT_EQ(size, given);
    }
    EXPECT_THAT(m_log.text(), IsEmpty());
}

/// What a window shows in its corner, in its own pixels.
QImage shownByQuick(const char* colour, double& ratio) {
    QQmlEngine engine;
    engine.addImageProvider(SymbolImageProvider::name(), new SymbolImageProvider);
    QQmlComponent component(&engine);
    QByteArray image = R"(
        import QtQuick
        Image {
            property color colour: COLOUR
            source: "image://symbols/trash.fill/" + String(colour).slice(1)
            sourceSize: Qt.size(16, 16)
        })";
    component.setData(image.replace("COLOUR", colour), {});
    QQuickWindow window;
    std::unique_ptr<QObject> object(component.create());
    auto* item = qobject_cast<QQuickItem*>(object.get());
    if (item == nullptr) {
        ADD_FAILURE() << component.errorString().toStdString();
        return {};
    }
    EXPECT_EQ(item->size(), QSizeF(16, 16));
    window.setColor(Qt::white);
    window.resize(16, 16);
    item->setParentItem(window.contentItem());
    window.show();
    ratio = window.effectiveDevicePixelRatio();
    QImage shown = window.grabWindow();
    // Qt frees what it drew with when it draws the next time.
    object.reset();
    window.releaseResources();
    (void)window.grabWindow();
    shown.setDevicePixelRatio(1);
    return shown.convertToFormat(QImage::Format_RGB32);
}

QImage onWhite(const QImage& picture) {
    QImage image(picture.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.drawImage(0, 0, picture);
    painter.end();
    return image;
}

// Runs again with a screen of twice the pixels.
TEST_F(SymbolImageProviderTest, IsSharpInAWindow) {
    for (const auto& [written, colour] : std::initializer_list<std::pair<const char*, QColor>>{
             {"'#c25f0a'", QColor(0xc2, 0x5f, 0x0a)},
             {"'green'", QColor(0, 0x80, 0)},
             {"Qt.rgba(0, 0, 1, 0.4)", QColor(0, 0, 255, 102)}}) {
        double ratio = 0;
        const QImage shown = shownByQuick(written, ratio);
        EXPECT_EQ(ratio, qEnvironmentVariable("QT_SCALE_FACTOR", QStringLiteral("1")).toDouble());
        const int side = static_cast<int>(16 * ratio);
        EXPECT_EQ(shown, onWhite(trash(colour, {side, side}))) << written;
    }
    EXPECT_THAT(m_log.text(), IsEmpty());
}

} // namespace
} // namespace tidewright
