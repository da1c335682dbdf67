// The user's defaults: a typed store of keys and values in three layers. What the program was
// started with stands on top, below it what the user has set, below that what the program
// registers.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Result.h"
#include "core/support/URL.h"

#include <QSettings>
#include <QVariant>

#include <memory>
#include <string>
#include <vector>

namespace tidewright {

/// Main thread only. Reads never fail: a value of another type reads as the system's defaults store
/// reads it (see each), and an absent one as 0, false or empty.
class DefaultsStore {
public:
    /// `user` holds what the user has set; only that layer is ever written.
    explicit DefaultsStore(std::unique_ptr<QSettings> user, QVariantMap arguments = {});

    /// What a user has set, in a file of the form of `Tidewright.conf`; it need not exist.
    static std::unique_ptr<QSettings> inFile(const URL& file);

    /// Values that count where nothing else is set; they are never written.
    void registerDefaults(const QVariantMap& defaults);

    /// A list for this run, over all other values; it is never written.
    void setArgument(const QString& key, const std::vector<std::string>& texts);

    /// A text counts with the whole number at its beginning, and so does a truth value that comes
    /// from a file, where it is a text as well; any other is 0 or 1.
    Int64 integer(const QString& key) const;
    /// The same with fractions.
    double number(const QString& key) const;
    /// A number is true unless it is 0; a text when it begins with Y, y, T, t or, after zeros and a
    /// sign, a digit from 1 to 9.
    bool boolean(const QString& key) const;
    /// Empty where there is none; a number as its digits.
    QString text(const QString& key) const;
    /// The texts of a list as bytes; a single text that is not empty is a list of one, anything
    /// else an empty list. What a file holds are texts, its numbers too.
    std::vector<std::string> texts(const QString& key) const;

    /// Writes to the user's layer. Seen at once; on disk soon, at the latest after `save`.
    void setInteger(const QString& key, Int64 value);
    void setNumber(const QString& key, double value);
    void setBoolean(const QString& key, bool value);
    /// Texts of any bytes survive.
    void setTexts(const QString& key, const std::vector<std::string>& texts);

    /// Whether the user has set the key.
    bool isSet(const QString& key) const;

    /// Brings to disk what was written; the error is a sentence for the user.
    Result<void, std::string> save();

private:
    /// The value that counts; invalid where there is none.
    QVariant value(const QString& key) const;
    /// How it went just now; an object of the settings keeps its first error for ever.
    QSettings::Status synchronized();

    std::unique_ptr<QSettings> m_user;
    QVariantMap m_arguments;
    QVariantMap m_registered;
};

/// What arguments of the form "-key value" set, for the top layer: `-TWScanOnLaunch YES`. Others
/// are passed over. `arguments` without the program's name.
QVariantMap argumentDefaults(const QStringList& arguments);

} // namespace tidewright
