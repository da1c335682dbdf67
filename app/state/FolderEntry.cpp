#include "app/state/FolderEntry.h"

#include "app/state/RowModel.h"
#include "core/platform/Directory.h"
#include "core/support/Collation.h"
#include "core/support/Text.h"

#include <algorithm>

namespace tidewright {

namespace {

constexpr int mostSuggestions = 6;

/// What stands before the last slash, with it.
QString folderPart(const QString& text) { return text.left(text.lastIndexOf(u'/') + 1); }

QString namePart(const QString& text) { return text.mid(text.lastIndexOf(u'/') + 1); }

std::optional<URL> locationOf(const QString& text, const URL& home) {
    const std::string path = text.toStdString();
    if (path == "~" || path.starts_with("~/"))
        return home.appending(path.substr(1)).standardized();
    return path.starts_with('/') ? std::optional(URL(path).standardized()) : std::nullopt;
}

bool isFolderAt(const URL& url) {
    const auto info = fileInfo(url, Links::follow);
    return info && info->kind == FileKind::directory;
}

/// Of the folders in it, those that can be typed.
std::vector<std::string> folderNames(const URL& folder, bool alsoHidden) {
    std::vector<std::string> names;
    const auto entries = readDirectory(folder);
    if (!entries)
        return names;
    for (const DirectoryEntry& entry : *entries) {
        const bool leads =
            entry.kind == FileKind::directory ||
            (entry.kind == FileKind::symbolicLink && isFolderAt(folder.appending(entry.name)));
        if (leads && isUTF8(entry.name) && (alsoHidden || !entry.name.starts_with('.')))
            names.push_back(entry.name);
    }
    std::ranges::sort(names, [](const std::string& a, const std::string& b) {
        return standardCompare(a, b) < 0;
    });
    return names;
}

} // namespace

FolderEntry::FolderEntry(URL home, QObject* parent) : QObject(parent), m_home(std::move(home)) {}

void FolderEntry::setText(const QString& text) {
    if (m_text == text)
        return;
    m_text = text;
    m_names = namesFollowing();
    m_suggestions.clear();
    for (const QString& name : m_names)
        if (m_suggestions.size() < mostSuggestions && name != namePart(text))
            m_suggestions.append(folderPart(text) + name);
    Q_EMIT textChanged();
}

void FolderEntry::restart() { setText(QStringLiteral("~/")); }

QStringList FolderEntry::namesFollowing() const {
    const auto folder = locationOf(folderPart(m_text), m_home);
    if (!folder)
        return {};
    const QString beginning = namePart(m_text);
    QStringList names;
    for (const std::string& name : folderNames(*folder, beginning.startsWith(u'.')))
        if (const QString shown = shownText(name); shown.startsWith(beginning, Qt::CaseInsensitive))
            names.append(shown);
    return names;
}

Result<URL, QString> FolderEntry::folder() const {
    const auto location = locationOf(m_text, m_home);
    if (!location)
        return Failure(tr("A path begins with / or ~."));
    if (!isFolderAt(*location))
        return Failure(tr("There is no folder at this path."));
    return *location;
}

QString FolderEntry::problem() const {
    if (m_text.isEmpty() || !m_names.isEmpty())
        return {};
    const auto found = folder();
    return found ? QString() : found.error();
}

} // namespace tidewright
