#include "app/state/FolderEntry.h"

#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"
#include "tests/support/app/PropertyWatch.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::PropertyWatch;
using test::TempHome;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class FolderEntryTest : public testing::Test {
protected:
    TempHome m_home;
    FolderEntry m_entry{m_home.url()};
    PropertyWatch m_watch{m_entry};

    void type(const std::string& text) { m_entry.setText(QString::fromStdString(text)); }
    std::vector<std::string> suggestions() {
        std::vector<std::string> texts;
        for (const QString& each : m_entry.suggestions())
            texts.push_back(each.toStdString());
        return texts;
    }
    void TearDown() override { EXPECT_EQ(m_watch.complaint(), ""); }
};

TEST_F(FolderEntryTest, BeginsWithTheHomeFolder) {
    m_home.folder("code");
    m_entry.restart();
    EXPECT_EQ(m_entry.text(), QStringLiteral("~/"));
    EXPECT_TRUE(m_entry.isFolder());
    EXPECT_EQ(m_entry.folder().value(), m_home.url());
    EXPECT_THAT(suggestions(), ElementsAre("~/code"));
}

TEST_F(FolderEntryTest, NamesWhatIsThere) {
    m_home.folder("code/apps");
    m_home.file("code/file");
    m_home.link("link", m_home.path("code").path());
    const std::string home = m_home.url().path();
    const std::pair<std::string, URL> folders[] = {
        {"~", m_home.url()},
        {"~/code", m_home.path("code")},
        {"~//code/./apps/", m_home.path("code/apps")},
        {home + "/code", m_home.path("code")},
        {"~/link", m_home.path("link")},
        {"/", URL("/")},
    };
    for (const auto& [text, folder] : folders) {
        type(text);
        ASSERT_TRUE(m_entry.isFolder()) << text;
        EXPECT_EQ(m_entry.folder().value(), folder);
        EXPECT_EQ(m_entry.problem(), QString());
    }
    for (const std::string& text : {std::string("~/code/file"), home + "/gone",
                                    std::string("~root"), std::string("code"), std::string()}) {
        type(text);
        EXPECT_FALSE(m_entry.isFolder()) << text;
    }
}

TEST_F(FolderEntryTest, SaysWhatIsWrongOnceNothingCanFollow) {
    m_home.folder("code");
    const auto problem = [&](const char* text) {
        type(text);
        return m_entry.problem().toStdString();
    };
    EXPECT_EQ(problem("~/cod"), "");
    EXPECT_EQ(problem("~/codx"), "There is no folder at this path.");
    EXPECT_EQ(problem("~/gone/x"), "There is no folder at this path.");
    EXPECT_EQ(problem("code"), "A path begins with / or ~.");
    EXPECT_EQ(problem(""), "");
}

TEST_F(FolderEntryTest, SuggestsFoldersThatBeginSo) {
    for (const char* name :
         {"code 10", "Code 9", "cod", "other", ".hidden", "caf\xC3\xA9", "c\xff"})
        m_home.folder(name);
    m_home.file("code file");
    m_home.link("code link", m_home.path("cod").path());
    m_home.link("code lost", m_home.path("gone").path());
    type("~/");
    EXPECT_THAT(suggestions(), ElementsAre("~/caf\xC3\xA9", "~/cod", "~/Code 9", "~/code 10",
                                           "~/code link", "~/other"));
    type("~/code");
    EXPECT_THAT(suggestions(), ElementsAre("~/Code 9", "~/code 10", "~/code link"));
    type("~/cod");
    EXPECT_THAT(suggestions(), ElementsAre("~/Code 9", "~/code 10", "~/code link"))
        << "not what is typed already";
    type("~/.");
    EXPECT_THAT(suggestions(), ElementsAre("~/.hidden"));
    type(m_home.path("oth").path());
    EXPECT_THAT(suggestions(), ElementsAre(m_home.path("other").path()));
    type("oth");
    EXPECT_THAT(suggestions(), IsEmpty());
}

TEST_F(FolderEntryTest, SuggestsNoMoreThanSix) {
    for (int i = 0; i < 9; ++i)
        m_home.folder(std::to_string(i));
    type("~/");
    EXPECT_THAT(suggestions(), SizeIs(6));
}

TEST_F(FolderEntryTest, AFolderThatCannotBeReadSuggestsNothing) {
    m_home.folder("closed/in");
    m_home.setMode("", 0755);
    m_home.setMode("closed", 0);
    const auto seen = test::asOrdinaryUser([&] {
        FolderEntry entry(m_home.url());
        entry.setText(QStringLiteral("~/closed/"));
        return std::to_string(entry.suggestions().size()) + (entry.isFolder() ? " folder" : "");
    });
    EXPECT_EQ(seen, "0 folder");
}

} // namespace
} // namespace tidewright
