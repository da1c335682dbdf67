// Texts for comparing by those who type them.
#pragma once

#include <QLocale>

#include <string>
#include <string_view>

namespace tidewright {

/// Brings texts into a form in which they are equal if they differ in case or composition alone, by
/// the user's language: in some of them "I" is no other case of "i".
class Folding {
public:
    std::string operator()(std::string_view text) const;

private:
    QLocale m_locale;
    bool m_isPlainForASCII = m_locale.toLower(QStringLiteral("I")) == QLatin1String("i");
};

} // namespace tidewright
