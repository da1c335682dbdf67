#include "app/controls/SymbolTable.h"

#include <QDir>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace tidewright {
namespace {

TEST(SymbolTableTest, FindsEachByItsName) {
    ASSERT_FALSE(allSymbols().empty());
    for (const Symbol& symbol : allSymbols())
        EXPECT_EQ(findSymbol(symbol.name), &symbol) << symbol.name;
}

TEST(SymbolTableTest, FindsNothingElse) {
    for (const char* name : {"", "a", "zzz", "trash.", "Trash", "trash ", "trash.fil", "trash-2",
                             "../symbols/trash-2", "\xff"})
        EXPECT_EQ(findSymbol(name), nullptr) << name;
}

TEST(SymbolTableTest, EveryFileHasARowAndEveryRowAFile) {
    std::set<std::string> named;
    for (const Symbol& symbol : allSymbols())
        named.insert(std::string(symbol.file) + ".svg");
    std::set<std::string> there;
    const QDir folder(QStringLiteral(":/symbols"));
    for (const QString& file : folder.entryList())
        there.insert(file.toStdString());
    EXPECT_EQ(there, named);
}

TEST(SymbolTableTest, WhatIsCalledFilledIs) {
    for (const Symbol& symbol : allSymbols())
        EXPECT_EQ(symbol.filledShape.has_value(),
                  symbol.name.ends_with("fill") && symbol.file != "hand")
            << symbol.name;
}

} // namespace
} // namespace tidewright
