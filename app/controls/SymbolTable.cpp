#include "app/controls/SymbolTable.h"

#include <algorithm>

namespace tidewright {

namespace {

constexpr Symbol symbols[] = {
    {"app.badge.clock", "calendar-clock"},
    {"app.dashed", "square-dashed"},
    {"arrow.clockwise", "rotate-cw"},
    {"arrow.down.circle", "circle-arrow-down"},
    {"arrow.triangle.2.circlepath", "refresh-cw"},
    {"arrow.uturn.backward", "undo-2"},
    {"bolt.fill", "zap", 0},
    {"checklist", "list-checks"},
    {"checkmark.circle", "circle-check"},
    {"checkmark.circle.fill", "circle-check", 0},
    {"checkmark.seal.fill", "badge-check", 0},
    {"chevron.right", "chevron-right"},
    {"circle", "circle"},
    {"clock", "clock"},
    {"clock.arrow.circlepath", "history"},
    {"clock.badge", "clock-fading"},
    {"cpu", "cpu"},
    {"curlybraces", "braces"},
    {"cursorarrow.click", "mouse-pointer-click"},
    {"doc", "file"},
    {"doc.badge.ellipsis", "file-stack"},
    {"doc.text.magnifyingglass", "file-search"},
    {"exclamationmark", "exclamation-mark"},
    {"exclamationmark.octagon.fill", "octagon-alert", 2},
    {"exclamationmark.triangle.fill", "triangle-alert", 0},
    {"externaldrive.badge.exclamationmark", "hard-drive"},
    {"folder", "folder"},
    {"gauge.with.dots.needle.67percent", "gauge"},
    {"gearshape", "settings"},
    {"hammer", "hammer"},
    {"hand.raised.fill", "hand"},
    {"info.circle.fill", "info", 0},
    {"internaldrive", "hard-drive"},
    {"internaldrive.fill", "hard-drive", 1},
    {"iphone.gen3", "smartphone"},
    {"lightbulb", "lightbulb"},
    {"lock.fill", "lock", 0},
    {"lock.shield", "shield-lock"},
    {"lock.trianglebadge.exclamationmark.fill", "shield-alert", 0},
    {"macwindow", "app-window-mac"},
    {"magnifyingglass", "search"},
    {"minus", "minus"},
    {"minus.circle", "circle-minus"},
    {"minus.circle.fill", "circle-minus", 0},
    {"moon.zzz", "moon"},
    {"plus", "plus"},
    {"power", "power"},
    {"questionmark.circle", "circle-question-mark"},
    {"questionmark.circle.fill", "circle-question-mark", 0},
    {"rectangle.3.group", "layout-dashboard"},
    {"shippingbox", "package"},
    {"sidebar.trailing", "panel-right"},
    {"slider.horizontal.3", "sliders-horizontal"},
    {"sparkle.magnifyingglass", "search-check"},
    {"sparkles", "sparkles"},
    {"square.grid.2x2", "layout-grid"},
    {"square.stack.3d.up.slash", "layers"},
    {"trash", "trash-2"},
    {"trash.circle.fill", "trash-2", 2},
    {"trash.fill", "trash-2", 2},
    {"wrench.and.screwdriver", "wrench"},
    {"xmark.circle.fill", "circle-x", 0},
    {"xmark.octagon.fill", "octagon-x", 1},
};

static_assert(std::ranges::is_sorted(symbols, {}, &Symbol::name));

} // namespace

std::span<const Symbol> allSymbols() { return symbols; }

const Symbol* findSymbol(std::string_view name) {
    const auto* found = std::ranges::lower_bound(symbols, name, {}, &Symbol::name);
    return found != std::end(symbols) && found->name == name ? found : nullptr;
}

} // namespace tidewright
