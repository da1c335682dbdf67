#include "app/platform/FileManager.h"

#include "core/platform/FileContents.h"
#include "tests/app/platform/linux/PrivateBus.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/app/LoggedMessages.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

namespace tidewright {
namespace {

using test::becomesTrue;
using test::PrivateBus;
using test::ScopedVariable;
using test::StandInService;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const QString serviceName = QStringLiteral("org.freedesktop.FileManager1");

/// Has a stand-in of xdg-open, the only program in its PATH, which writes down its arguments.
class FileManagerTest : public testing::Test {
protected:
    PrivateBus bus; // started while its program is in the PATH
    test::TempHome home;
    ScopedVariable path{"PATH", home.path("bin").path()};
    test::LoggedMessages messages;

    void SetUp() override {
        home.tool("bin/xdg-open", "printf '%s\\n' \"$#:$*\" >> " + home.path("opened").path());
    }
    void TearDown() override { EXPECT_EQ(messages.text(), ""); }

    std::string opened() const { return readFile(home.path("opened"), 10'000).value_or(""); }
    /// What was opened so far, in order of text, once it is at least so many.
    std::vector<std::string> opened(std::ptrdiff_t count) const {
        EXPECT_TRUE(becomesTrue([&] { return std::ranges::count(opened(), '\n') >= count; }));
        std::vector<std::string> lines;
        std::istringstream stream(opened());
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        std::ranges::sort(lines);
        return lines;
    }
};

TEST_F(FileManagerTest, IsAskedToShowTheBytesOfThePaths) {
    StandInService service(serviceName);
    showInFileManager({URL("/home/user/plain"), URL("/home/user/a b%20#?&\"'<\\"),
                       URL("/home/user/caf\xC3\xA9"), URL("/\xFF\n")});
    EXPECT_THAT(service.calls, IsEmpty());
    ASSERT_TRUE(becomesTrue([&] { return !service.calls.empty(); }));
    const QDBusMessage call = service.calls.front();
    EXPECT_EQ(call.path(), QStringLiteral("/org/freedesktop/FileManager1"));
    EXPECT_EQ(call.interface(), serviceName);
    EXPECT_EQ(call.member(), QStringLiteral("ShowItems"));
    EXPECT_EQ(call.signature(), QStringLiteral("ass"));
    EXPECT_EQ(call.arguments().at(0).toStringList(),
              QStringList({QStringLiteral("file:///home/user/plain"),
                           QStringLiteral("file:///home/user/a%20b%2520%23%3F%26%22%27%3C%5C"),
                           QStringLiteral("file:///home/user/caf%C3%A9"),
                           QStringLiteral("file:///%FF%0A")}));
    EXPECT_EQ(call.arguments().at(1).toString(), QString());

    showInFileManager({});
    showInFileManager({URL("/last")});
    ASSERT_TRUE(becomesTrue([&] { return service.calls.size() == 2; }));
    EXPECT_EQ(service.calls.back().arguments().at(0).toStringList(),
              QStringList(QStringLiteral("file:///last")));
    EXPECT_EQ(opened(), "");
}

TEST_F(FileManagerTest, EachFolderIsOpenedOnceWhereNoneAnswers) {
    showInFileManager({URL("/home/one/a"), URL("/home/two/b"), URL("/home/one/c"),
                       URL("/home/one/a"), URL("/top")});
    EXPECT_THAT(opened(3), ElementsAre("1:file:///", "1:file:///home/one", "1:file:///home/two"));

    StandInService service(serviceName);
    service.answer = [](const QDBusMessage& call) {
        return call.createErrorReply(QDBusError::Failed, QStringLiteral("no"));
    };
    showInFileManager({URL("/refused/a")});
    EXPECT_THAT(opened(4), Contains("1:file:///refused"));

    bus.stop();
    showInFileManager({URL("/no bus/a")});
    EXPECT_THAT(opened(5), Contains("1:file:///no%20bus"));
    EXPECT_EQ(opened(5).size(), 5U);
}

TEST_F(FileManagerTest, PathsAndAddressesAreOpened) {
    for (const char* location : {"/", "/home/user", "/-rf", "/two words/caf\xFF",
                                 "https://example.org/a?b=c#d", "x-settings:privacy", "A+-.9:"})
        EXPECT_TRUE(openLocation(location)) << location;
    EXPECT_THAT(opened(7), ElementsAre("1:A+-.9:", "1:file:///", "1:file:///-rf",
                                       "1:file:///home/user", "1:file:///two%20words/caf%FF",
                                       "1:https://example.org/a?b=c#d", "1:x-settings:privacy"));
}

TEST_F(FileManagerTest, NothingElseIsOpened) {
    for (const char* location : {"", "-v", "--help", "--help:", "relative", "./a:b", "~/a", "1a:b",
                                 ":", "a b:c", " /a", "caf\xC3\xA9:a"})
        EXPECT_FALSE(openLocation(location)) << location;
    EXPECT_TRUE(openLocation("/last"));
    EXPECT_THAT(opened(1), ElementsAre("1:file:///last"));
}

TEST_F(FileManagerTest, WhatIsOpenedHasNoStreamsOfOurs) {
    home.tool("bin/xdg-open",
              "streams=$(for i in 0 1 2; do /usr/bin/readlink /proc/$$/fd/$i; done)\n"
              "echo $streams >> " +
                  home.path("opened").path());
    EXPECT_TRUE(openLocation("/"));
    EXPECT_THAT(opened(1), ElementsAre("/dev/null /dev/null /dev/null"));
}

TEST_F(FileManagerTest, IsFalseWhereNothingCanBeStarted) {
    const ScopedVariable nowhere("PATH", home.folder("empty").path());
    EXPECT_FALSE(openLocation("/"));
}

} // namespace
} // namespace tidewright
