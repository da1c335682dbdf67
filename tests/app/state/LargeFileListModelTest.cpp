#include "app/state/LargeFileListModel.h"

#include "tests/support/app/ModelWatch.h"
#include "tests/support/app/StateTesting.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using namespace std::chrono_literals;
using test::columnOf;
using test::ModelWatch;
using test::TestState;
using testing::ElementsAre;

class LargeFileListModelTest : public testing::Test {
protected:
    std::vector<std::vector<URL>> m_revealed;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.reveal = [this](const std::vector<URL>& urls) { m_revealed.push_back(urls); };
    }};
    LargeFileListModel m_model{*m_state.model, [] { return Date(1'700'000'000s) + 24h; }};
    ModelWatch m_watch{m_model};

    void scanned(std::vector<LargeFile> files) {
        ScanReport report;
        report.largeFiles = std::move(files);
        m_state.scanned(std::move(report));
    }
};

TEST_F(LargeFileListModelTest, ARowShowsItsFile) {
    scanned({{URL("/home/test/disk.img"), 3 * gigabyte, Date(1'700'000'000s)},
             {URL("/home/test/odd\xff"), gigabyte, std::nullopt}});
    EXPECT_THAT(columnOf(m_model, "name"), ElementsAre("disk.img", "odd\xef\xbf\xbd"));
    EXPECT_EQ(columnOf(m_model, "path").front(), "/home/test/disk.img");
    EXPECT_THAT(columnOf(m_model, "folder"), ElementsAre("/home/test", "/home/test"));
    EXPECT_THAT(columnOf(m_model, "date"), ElementsAre("1700000000", ""));
    EXPECT_THAT(columnOf(m_model, "dateText"), ElementsAre("yesterday", ""));
    EXPECT_THAT(columnOf(m_model, "sizeText"), ElementsAre("3 GB", "1 GB"));
    EXPECT_THAT(columnOf(m_model, "sizeBytes"), ElementsAre("3000000000", "1000000000"));
    EXPECT_EQ(m_model.shown().bytes, 4 * gigabyte);
    EXPECT_EQ(m_model.headerData(0, Qt::Horizontal, Qt::DisplayRole).toString().toStdString(),
              "File");
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(LargeFileListModelTest, WithoutRowsItSaysWhy) {
    EXPECT_EQ(m_model.empty().title.toStdString(), "Not scanned yet");
    scanned({});
    EXPECT_EQ(m_model.empty().title.toStdString(), "");
    EXPECT_EQ(m_model.empty().symbolName.toStdString(), "doc");
    EXPECT_EQ(m_model.empty().message.toStdString(),
              "No single file over 1 GB was found in your folders.");
    scanned({{URL("/a"), gigabyte, std::nullopt}});
    EXPECT_EQ(m_model.empty().message.toStdString(), "");
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(LargeFileListModelTest, AFileIsShownInTheFileManager) {
    const URL file = m_state.home.file("odd\xff");
    scanned({{file, gigabyte, std::nullopt}});
    m_model.reveal(0);
    m_model.reveal(1);
    EXPECT_THAT(m_revealed, ElementsAre(ElementsAre(file)));
}

TEST_F(LargeFileListModelTest, ItOutlivesTheAppModel) {
    scanned({{URL("/a"), gigabyte, std::nullopt}});
    m_state.model.reset();
    m_state.prepared.reset();
    m_model.reveal(0);
    EXPECT_THAT(columnOf(m_model, "path"), ElementsAre("/a"));
    EXPECT_EQ(m_watch.complaint(), "");
}

} // namespace
} // namespace tidewright
