// A category's screen in a window that no one sees, on a model whose scans find what the test has
// prepared.
#pragma once

#include "app/screens/AppWindows.h"
#include "tests/support/app/StateTesting.h"
#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <QTest>
#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tidewright::test {

/// The screen below a bar with its tools.
inline constexpr auto categoryScene = R"(
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Rectangle {
    required property ScreenModels models

    color: Theme.window

    CategoryView {
        id: view

        objectName: "view"
        y: 46
        width: parent.width
        height: parent.height - y
        focus: true
        models: parent.models
        category: "android"
    }
    Loader {
        objectName: "tools"
        x: parent.width - width - 24
        y: 8
        sourceComponent: view.tools
    }
}
)";

inline constexpr QSize wide{960, 700};
inline constexpr QSize narrow{640, 600};

inline ScanItem item(const std::string& title, const std::string& group, Int64 sizeBytes) {
    ScanItem made = testItem(Category::android, title, sizeBytes);
    made.group = group;
    made.title = title;
    return made;
}

/// Four rows in two groups, each decision but one.
inline ScanReport smallReport() {
    ScanReport report;
    report.items = {
        item("Pixel", "Emulators", 5'000'000'000), item("Tablet", "Emulators", 9'000'000'000),
        item("NDK", "NDK versions", 2'700'000'000), item("Ninja", "NDK versions", 1'000'000'000)};
    report.items[1].decision = Decision::keep;
    report.items[1].reason = "Emulator Tablet is running.";
    report.items[1].inUseBy = "Emulator Tablet";
    report.items[2].version = "25.1.8937393";
    report.items[2].reason = "No project uses it.";
    report.items[3].decision = Decision::ask;
    return report;
}

class CategoryScreen : public testing::Test {
protected:
    CategoryScreen() {
        qputenv("TIDEWRIGHT_REDUCE_MOTION", "1");
        QAccessible::setActive(true);
        registerStateTypes();
    }
    ~CategoryScreen() override { qunsetenv("TIDEWRIGHT_REDUCE_MOTION"); }

    void show(const ScanReport& report, QSize size = wide) {
        m_state.scanned(report);
        show(size);
    }

    void show(QSize size = wide) {
        ASSERT_TRUE(m_scene.load(categoryScene, size,
                                 {{QStringLiteral("models"), QVariant::fromValue(&m_models)}}));
    }

    ItemListModel& items() {
        return *m_scene.item("view")->property("items").value<ItemListModel*>();
    }

    bool isSelected(int row) { return items().index(row, 0).data(roleOf("selected")).toBool(); }
    int roleOf(const char* name) { return items().roleNames().key(name); }

    /// The titles of the rows in the model's order.
    std::vector<std::string> titles() {
        std::vector<std::string> titles;
        for (int row = 0; row < items().count(); ++row)
            titles.push_back(items().index(row, 0).data(roleOf("title")).toString().toStdString());
        return titles;
    }

    /// What is called so by a reader and is of this role, from top to bottom.
    std::vector<QQuickItem*> shown(QAccessible::Role role) {
        std::vector<QQuickItem*> found;
        for (QQuickItem* each : m_scene.shownItems())
            if (const auto* known = QmlScene::accessible(each); known && known->role() == role)
                found.push_back(each);
        std::ranges::sort(found, {}, [](QQuickItem* each) { return each->mapToScene({}).y(); });
        return found;
    }

    std::vector<std::string> names(QAccessible::Role role) {
        std::vector<std::string> names;
        for (QQuickItem* each : shown(role))
            names.push_back(QmlScene::accessible(each)->text(QAccessible::Name).toStdString());
        return names;
    }

    /// The row that shows the item of this title.
    QQuickItem* rowOf(const std::string& title) {
        for (QQuickItem* each : shown(QAccessible::ListItem))
            if (each->property("title").toString().toStdString() == title)
                return each;
        ADD_FAILURE() << "No row of " << title;
        return nullptr;
    }

    TestState m_state{[this](AppEnvironment& environment) {
        environment.reveal = [this](const std::vector<URL>& urls) {
            for (const URL& url : urls)
                m_revealed.push_back(url.path());
        };
    }};
    std::vector<std::string> m_revealed;
    ScreenModels m_models{*m_state.model};
    QmlScene m_scene;
};

} // namespace tidewright::test
