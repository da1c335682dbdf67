// The five headings under which everything that a scan finds is gathered.
#pragma once

#include "core/support/Fields.h"

namespace tidewright {

/// In the order of the report and of the sidebar.
enum class Category { android, xcode, javascript, system, projects };

template <>
struct EnumCases<Category> {
    static constexpr std::array cases{
        std::pair{Category::android, std::string_view("android")},
        std::pair{Category::xcode, std::string_view("xcode")},
        std::pair{Category::javascript, std::string_view("javascript")},
        std::pair{Category::system, std::string_view("system")},
        std::pair{Category::projects, std::string_view("projects")},
    };
};

std::string_view title(Category category);
std::string_view symbolName(Category category);
std::string_view summary(Category category);

} // namespace tidewright
