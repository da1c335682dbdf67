#include "app/state/DefaultsStore.h"

#include "core/platform/FileContents.h"
#include "tests/support/ForkedAnswer.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"
#include "tests/support/app/EventLoop.h"

#include <QFile>
#include <QStringList>
#include <fmt/format.h>
#include <gmock/gmock.h>

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <cmath>
#include <fstream>
#include <limits>
#include <random>

namespace tidewright {
namespace {

using test::asOrdinaryUser;
using test::TempHome;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr Int64 most = 1'000'000;
const QString key = QStringLiteral("key");

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

class DefaultsStoreTest : public testing::Test {
protected:
    TempHome home;
    URL file = home.path("config/Tidewright.conf");

    /// A store over a file that no other store of this process has read: Qt keeps what it wrote,
    /// with its types, which a later start of the program does not see.
    DefaultsStore restarted() const {
        const URL copy = home.path(fmt::format("copy {}", ++m_copies));
        QFile::copy(QFile::decodeName(file.path().c_str()), QFile::decodeName(copy.path().c_str()));
        return DefaultsStore(DefaultsStore::inFile(copy));
    }
    DefaultsStore storeOf(std::string_view lines) const {
        return DefaultsStore(DefaultsStore::inFile(home.file(
            fmt::format("written {}", ++m_copies), fmt::format("[General]\n{}\n", lines))));
    }
    std::string contents() const { return readFile(file, most).value_or("none"); }

    DefaultsStore store{DefaultsStore::inFile(file)};

private:
    mutable int m_copies = 0;
};

// Reading

struct Reads {
    std::string written; ///< what stands behind "key=" in the file
    Int64 integer = 0;
    double number = 0;
    bool boolean = false;
};

TEST_F(DefaultsStoreTest, WrittenValuesReadAsEachType) {
    const Reads cases[] = {
        {"7", 7, 7, true},
        {"0", 0, 0, false},
        {"-7", -7, -7, true},
        {"+7", 7, 7, true},
        {"\" 7\"", 7, 7, true},
        {"007", 7, 7, true},
        {"0.5", 0, 0.5, false},
        {"1.75", 1, 1.75, true},
        {".5", 0, 0.5, false},
        {"5.", 5, 5, true},
        {"1e3", 1, 1000, true},
        {"-2.5e-1x", -2, -0.25, true},
        {"1e", 1, 1, true},
        {"12abc", 12, 12, true},
        {"0x10", 0, 0, false},
        {"abc", 0, 0, false},
        {"", 0, 0, false},
        {"-", 0, 0, false},
        {"inf", 0, 0, false},
        {"nan", 0, 0, false},
        {"YES", 0, 0, true},
        {"yes", 0, 0, true},
        {"true", 0, 0, true},
        {"True", 0, 0, true},
        {"y", 0, 0, true},
        {"no", 0, 0, false},
        {"NO", 0, 0, false},
        {"false", 0, 0, false},
        {"on", 0, 0, false},
        {"00", 0, 0, false},
        {"-0", 0, 0, false},
        {"9223372036854775807", std::numeric_limits<Int64>::max(), 9223372036854775807.0, true},
        {"99999999999999999999", std::numeric_limits<Int64>::max(), 1e20, true},
        {"-99999999999999999999", std::numeric_limits<Int64>::min(), -1e20, true},
        {"a, b", 0, 0, false},
        {"1, 2", 0, 0, false},
        {"@Invalid()", 0, 0, false},
        {"@Variant(\\0\\0)", 0, 0, false},
        {"@ByteArray(12\\xff)", 12, 12, true},
    };
    for (const Reads& each : cases) {
        const DefaultsStore read = storeOf("key=" + each.written);
        EXPECT_EQ(read.integer(key), each.integer) << each.written;
        EXPECT_EQ(read.number(key), each.number) << each.written;
        EXPECT_EQ(read.boolean(key), each.boolean) << each.written;
    }
}

TEST_F(DefaultsStoreTest, WhatIsAbsentReadsAsNothing) {
    EXPECT_EQ(store.integer(key), 0);
    EXPECT_EQ(store.number(key), 0);
    EXPECT_FALSE(store.boolean(key));
    EXPECT_TRUE(store.text(key).isEmpty());
    EXPECT_THAT(store.texts(key), IsEmpty());
    EXPECT_FALSE(store.isSet(key));
    EXPECT_EQ(contents(), "none");
}

TEST_F(DefaultsStoreTest, ValuesWithTypesReadAsEachType) {
    struct Case {
        QVariant value;
        Int64 integer;
        double number;
        bool boolean;
        std::string text;
    };
    const Case cases[] = {
        {true, 1, 1, true, "true"},
        {false, 0, 0, false, "false"},
        {25, 25, 25, true, "25"},
        {1.75, 1, 1.75, true, "1.75"},
        {-1.75, -1, -1.75, true, "-1.75"},
        {0.5, 0, 0.5, true, "0.5"},
        {1e300, 0, 1e300, true, "1e+300"},
        {-1e19, 0, -1e19, true, "-1e+19"},
        {QStringList{text("1"), text("2")}, 0, 0, false, ""},
        {QVariantMap{{text("a"), 1}}, 0, 0, false, ""},
    };
    for (const Case& each : cases) {
        const std::string name = each.value.typeName() + each.text;
        store.registerDefaults({{key, each.value}});
        EXPECT_EQ(store.integer(key), each.integer) << name;
        EXPECT_EQ(store.number(key), each.number) << name;
        EXPECT_EQ(store.boolean(key), each.boolean) << name;
        EXPECT_EQ(store.text(key).toStdString(), each.text) << name;
    }
    store.registerDefaults({{key, std::nan("")}});
    EXPECT_EQ(store.integer(key), 0);
}

TEST_F(DefaultsStoreTest, NumbersDoNotDependOnTheUsersLanguage) {
    if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr)
        GTEST_SKIP() << "this machine does not have a language that writes 1,5";
    EXPECT_EQ(storeOf("key=1.5").number(key), 1.5);
    store.setNumber(key, 1.5);
    EXPECT_TRUE(store.save());
    EXPECT_EQ(restarted().number(key), 1.5);
    std::setlocale(LC_NUMERIC, "C");
}

TEST_F(DefaultsStoreTest, ListsAreReadFromWhatAHandMayWrite) {
    struct Case {
        std::string written;
        std::vector<std::string> texts;
    };
    const Case cases[] = {
        {"/a", {"/a"}},
        {"/a, /b c", {"/a", "/b c"}},
        {"\"/a, /b\"", {"/a, /b"}},
        {"/caf\xC3\xA9", {"/caf\xC3\xA9"}},
        {"", {}},
        {"\"\"", {}},
        {"@Invalid()", {}},
        {"5", {"5"}},
        {"@ByteArray(/\\xff)", {"/\xff"}},
    };
    for (const Case& each : cases)
        EXPECT_THAT(storeOf("key=" + each.written).texts(key), ElementsAreArray(each.texts))
            << each.written;
    store.setInteger(key, 5);
    EXPECT_THAT(store.texts(key), IsEmpty()) << "a number is no list";
    store.registerDefaults({{text("list"), QVariantList{text("a"), 5}}});
    EXPECT_THAT(store.texts(text("list")), IsEmpty()) << "nor is a list with a number in it";
}

TEST_F(DefaultsStoreTest, StrangeFilesAreSurvived) {
    const std::string whole = "[General]\nkey=7\nlist=/a, \"/b\\\"\", @ByteArray(\\xff)\n"
                              "one=@Variant(\\0\\0\\0\\t\\0\\0\\0\\x1)\n\n[other]\nx=1\n";
    std::mt19937 random(1);
    for (int i = 0; i < 500; ++i) {
        std::string bytes = whole;
        for (std::size_t change = 1 + random() % 4; change > 0; --change)
            bytes[random() % bytes.size()] = static_cast<char>(random() % 256);
        const URL path = home.file("strange", bytes.substr(0, 1 + random() % bytes.size()));
        DefaultsStore strange(DefaultsStore::inFile(path));
        for (const char* name : {"key", "list", "one", "other/x"}) {
            strange.integer(text(name));
            strange.number(text(name));
            strange.boolean(text(name));
            strange.text(text(name));
            strange.texts(text(name));
        }
        if (i % 50 == 0) {
            strange.setInteger(text("new"), i);
            EXPECT_TRUE(strange.save()) << bytes;
        }
    }
}

// The layers

TEST_F(DefaultsStoreTest, ArgumentsComeFirstThenTheUserThenWhatIsRegistered) {
    DefaultsStore layered(DefaultsStore::inFile(file), {{key, text("30")}});
    layered.registerDefaults({{key, 10}, {text("other"), 11}, {text("third"), 12}});
    EXPECT_EQ(layered.integer(key), 30);
    EXPECT_EQ(layered.integer(text("other")), 11);
    layered.setInteger(key, 20);
    layered.setInteger(text("other"), 21);
    EXPECT_EQ(layered.integer(key), 30);
    EXPECT_EQ(layered.integer(text("other")), 21);
    EXPECT_EQ(layered.integer(text("third")), 12);
    layered.setArgument(text("third"), {"/a", "/\xff"});
    EXPECT_THAT(layered.texts(text("third")), ElementsAre("/a", "/\xff"));
    EXPECT_EQ(layered.integer(text("third")), 0);
    EXPECT_TRUE(layered.isSet(key));
    EXPECT_FALSE(layered.isSet(text("third")));
    ASSERT_TRUE(layered.save());
    EXPECT_EQ(contents(), "[General]\nkey=20\nother=21\n") << "only what the user has set";
}

TEST_F(DefaultsStoreTest, RegisteredValuesAndReadsAreNeverWritten) {
    store.registerDefaults({{key, 10}});
    EXPECT_EQ(store.integer(key), 10);
    EXPECT_TRUE(store.save());
    test::runEventLoopOnce();
    EXPECT_EQ(contents(), "none");
    EXPECT_FALSE(store.isSet(key));
}

TEST(ArgumentDefaultsTest, KeysAndValuesAreTakenFromTheArguments) {
    struct Case {
        std::vector<const char*> arguments;
        std::vector<std::pair<const char*, const char*>> defaults;
    };
    const Case cases[] = {
        {{}, {}},
        {{"-TWDestination", "xcode", "-TWScanOnLaunch", "YES"},
         {{"TWDestination", "xcode"}, {"TWScanOnLaunch", "YES"}}},
        {{"-a", "-5"}, {{"a", "-5"}}},
        {{"-a", "-"}, {{"a", "-"}}},
        {{"-a", ""}, {{"a", ""}}},
        {{"-a", "--long"}, {{"a", "--long"}}},
        {{"-a", "-b", "1"}, {{"b", "1"}}},
        {{"-a", "1", "-b"}, {{"a", "1"}}},
        {{"-a"}, {}},
        {{"--option", "1"}, {}},
        {{"--", "-a", "1"}, {{"a", "1"}}},
        {{"-", "1"}, {}},
        {{"-5", "1"}, {}},
        {{"file", "-a", "1", "other"}, {{"a", "1"}}},
        {{"-a", "1", "-a", "2"}, {{"a", "2"}}},
    };
    for (const Case& each : cases) {
        QStringList arguments;
        for (const char* argument : each.arguments)
            arguments.append(text(argument));
        QVariantMap expected;
        for (const auto& [name, value] : each.defaults)
            expected.insert(text(name), text(value));
        EXPECT_EQ(argumentDefaults(arguments), expected) << arguments.join(u' ').toStdString();
    }
}

// Writing

TEST_F(DefaultsStoreTest, NumbersAndTruthValuesComeBack) {
    constexpr Int64 beyondDoubles = (Int64{1} << 53) + 1;
    for (const Int64 value :
         {Int64{0}, Int64{-1}, beyondDoubles, -beyondDoubles, std::numeric_limits<Int64>::max(),
          std::numeric_limits<Int64>::min()}) {
        store.setInteger(key, value);
        EXPECT_EQ(store.integer(key), value);
        ASSERT_TRUE(store.save());
        EXPECT_EQ(restarted().integer(key), value);
    }
    for (const double value : {0.1, -1.5, 794050200.123456, 1e300, 5e-324, 0.0}) {
        store.setNumber(key, value);
        ASSERT_TRUE(store.save());
        EXPECT_EQ(restarted().number(key), value) << contents();
    }
    for (const bool value : {true, false}) {
        store.setBoolean(key, value);
        ASSERT_TRUE(store.save());
        EXPECT_EQ(restarted().boolean(key), value);
        EXPECT_TRUE(restarted().isSet(key));
    }
    EXPECT_EQ(contents(), "[General]\nkey=false\n");
}

TEST_F(DefaultsStoreTest, ListsOfAnyBytesComeBackInOrder) {
    const std::vector<std::vector<std::string>> lists{
        {},
        {"/a"},
        {"/a", "/b"},
        {"/b", "/a", "/b"},
        {"/a, b", "/\"c\"", "/d;e", "@f", "/%g%20", "/h\\i", "/j\nk", "/l\r", "/m\tn"},
        {"/a,b"},
        {"\"/c\""},
        {"/d;e#f=g"},
        {"@Invalid()"},
        {"@ByteArray(x)"},
        {"@@"},
        {"/h\\i"},
        {"/j\nk"},
        {"/ends with a space "},
        {" /begins with one"},
        {"/caf\xC3\xA9 \xF0\x9F\x98\x80", "/cafe\xCC\x81"},
        {"/\xff\xfe"},
        {"/\xff\xfe", "/utf8", "/\xC3"},
        {"/", "", "/"},
        {"[General]", "key=1"},
        {"true"},
        {std::string(5000, 'x'), "/y"},
    };
    for (const auto& list : lists) {
        store.setTexts(key, list);
        EXPECT_EQ(store.texts(key), list);
        ASSERT_TRUE(store.save());
        EXPECT_EQ(restarted().texts(key), list) << contents();
    }
}

TEST_F(DefaultsStoreTest, AListOfOneIsWrittenAsPeopleReadIt) {
    store.setTexts(key, {"/home/me/code"});
    ASSERT_TRUE(store.save());
    EXPECT_EQ(contents(), "[General]\nkey=/home/me/code\n");
}

TEST_F(DefaultsStoreTest, WhatIsSetIsSeenAtOnceAndOnDiskAfterSaving) {
    store.setInteger(key, 7);
    EXPECT_EQ(store.integer(key), 7);
    EXPECT_EQ(contents(), "none");
    ASSERT_TRUE(store.save());
    EXPECT_EQ(contents(), "[General]\nkey=7\n");
    store.setInteger(key, 8);
    test::runEventLoopOnce();
    EXPECT_EQ(contents(), "[General]\nkey=8\n") << "nor does it wait for saving";
    {
        DefaultsStore other(DefaultsStore::inFile(file));
        other.setInteger(key, 9);
    }
    EXPECT_EQ(contents(), "[General]\nkey=9\n") << "nor beyond the end";
}

TEST_F(DefaultsStoreTest, ProcessesThatWriteDifferentKeysKeepBoth) {
    store.setInteger(text("ours"), 1);
    ASSERT_TRUE(store.save());
    std::vector<pid_t> children;
    for (int process = 0; process < 4; ++process) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            alarm(60);
            DefaultsStore other(DefaultsStore::inFile(file));
            for (int i = 0; i < 10; ++i) {
                other.setInteger(text(fmt::format("key{}-{}", process, i)), i);
                if (!other.save())
                    _exit(1);
            }
            _exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    store.setInteger(text("ours"), 2);
    ASSERT_TRUE(store.save());
    EXPECT_EQ(restarted().integer(text("ours")), 2);
    for (int process = 0; process < 4; ++process)
        for (int i = 0; i < 10; ++i)
            EXPECT_TRUE(restarted().isSet(text(fmt::format("key{}-{}", process, i))));
}

TEST_F(DefaultsStoreTest, AFullDiskLeavesTheFileWhole) {
    const URL disk = home.folder("disk");
    const auto answer = test::withOwnMounts([&]() -> std::string {
        if (mount("none", disk.path().c_str(), "tmpfs", 0, "size=64k") != 0)
            return "not mounted";
        const URL place = disk.appending("settings.conf");
        DefaultsStore user(DefaultsStore::inFile(place));
        const std::vector<std::string> exclusions(100, "/home/ann/what must stay");
        user.setTexts(QStringLiteral("exclusions"), exclusions);
        if (!user.save())
            return "not saved at first";
        std::ofstream(disk.appending("ballast").path()) << std::string(1'000'000, 'x');
        user.setInteger(QStringLiteral("lowSpaceGB"), 30);
        if (user.save())
            return "nothing was told";
        if (DefaultsStore(DefaultsStore::inFile(place)).texts(QStringLiteral("exclusions")) !=
            exclusions)
            return "the file was touched";
        unlink(disk.appending("ballast").path().c_str());
        if (!user.save())
            return "not saved later";
        DefaultsStore later(DefaultsStore::inFile(place));
        if (later.texts(QStringLiteral("exclusions")) != exclusions ||
            later.integer(QStringLiteral("lowSpaceGB")) != 30)
            return "something is missing";
        return "whole";
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(answer, "whole");
}

TEST_F(DefaultsStoreTest, WhatCantBeSavedIsToldAndSavedOnceItCan) {
    home.setMode("", 0777);
    const std::string answer = asOrdinaryUser([&]() -> std::string {
        const std::string folder = home.path("config").path();
        mkdir(folder.c_str(), 0555);
        DefaultsStore user(DefaultsStore::inFile(file));
        user.setInteger(key, 7);
        for (int i = 0; i < 2; ++i) {
            const auto saved = user.save();
            if (saved || saved.error() != "The settings could not be saved in " + file.path() +
                                              ". See that you may write there and that the disk "
                                              "has room.")
                return saved ? "it says that it was saved" : saved.error();
        }
        if (user.integer(key) != 7)
            return "forgotten";
        chmod(folder.c_str(), 0755);
        if (const auto saved = user.save(); !saved)
            return "still: " + saved.error();
        return contents();
    });
    EXPECT_EQ(answer, "[General]\nkey=7\n");
}

TEST_F(DefaultsStoreTest, ALineThatIsNoSettingKeepsNothingFromBeingSaved) {
    home.setMode("", 0777);
    const std::string answer = asOrdinaryUser([&]() -> std::string {
        const std::string folder = home.path("config").path();
        const auto writeByHand = [&](const char* lines) {
            QFile hand(QFile::decodeName(file.path().c_str()));
            return hand.open(QIODevice::WriteOnly) && hand.write(lines) > 0;
        };
        mkdir(folder.c_str(), 0755);
        if (!writeByHand("[General]\nno setting\na=1\n"))
            return "not prepared";
        DefaultsStore user(DefaultsStore::inFile(file));
        user.setInteger(key, 7);
        if (const auto saved = user.save(); !saved)
            return saved.error();
        const std::string first = contents();
        if (!writeByHand("[General]\nno setting again\na=2\n"))
            return "not prepared";
        chmod(folder.c_str(), 0555);
        user.setInteger(key, 8);
        if (user.save())
            return "it says that it was saved";
        return first;
    });
    EXPECT_EQ(answer, "[General]\na=1\nkey=7\n");
}

} // namespace
} // namespace tidewright
